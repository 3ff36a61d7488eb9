"""Dumps of SFDP as other programs print them."""


def as_words(dump, between=" ", base="x", size=2, order="little", start=0, width=7, behind=""):
    """As `hexdump` prints it without options: numbers of two bytes; a star stands for lines that are as the last one. With
    base "o" as `od -x`, with more bytes and another order as boot loaders and other options of `od`; without width, without
    offsets, and no star."""
    offset = lambda at: f"{start + at:0{width}{base}}" if width else ""  # noqa: E731
    lines = []
    last = None
    for at in range(0, len(dump), 16):
        piece = dump[at:at + 16]
        if piece != last or not width:
            numbers = [piece[i:i + size][::-1 if order == "little" else 1].hex() for i in range(0, len(piece), size)]
            lines.append(between.join(filter(None, [offset(at) + behind, *numbers])))
        elif lines[-1] != "*":
            lines.append("*")
        last = piece
    return lines + [offset(len(dump))]
