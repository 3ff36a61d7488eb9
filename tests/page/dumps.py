"""Dumps of SFDP as other programs print them."""


def as_words(dump, between=" ", base="x"):
    """As `hexdump` prints it without options: numbers of two bytes; a star stands for lines that are as the last one. With
    base "o" as `od -x`."""
    lines = []
    last = None
    for at in range(0, len(dump), 16):
        piece = dump[at:at + 16]
        if piece != last:
            numbers = [f"{piece[i + 1]:02x}{piece[i]:02x}" for i in range(0, len(piece), 2)]
            lines.append(between.join([f"{at:07{base}}", *numbers]))
        elif lines[-1] != "*":
            lines.append("*")
        last = piece
    return lines + [f"{len(dump):07{base}}"]
