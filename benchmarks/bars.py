"""Bars with a logarithmic scale, as SVG."""

import math
from xml.sax.saxutils import escape

WIDTH, LABEL_WIDTH, TEXT_WIDTH = 860, 390, 90
BAR_HEIGHT, GAP, MARGIN = 15, 9, 24
OWN, OTHER, INK, LINE = "#1f6f8b", "#b8c4cc", "#222222", "#dddddd"
DECADES = {1: "1 ns", 10: "10 ns", 100: "100 ns", 1e3: "1 µs", 1e4: "10 µs", 1e5: "100 µs", 1e6: "1 ms", 1e7: "10 ms",
           1e8: "100 ms", 1e9: "1 s"}


def text(x, y, content, anchor="start", weight="normal"):
    return (f'<text x="{x:.0f}" y="{y:.0f}" text-anchor="{anchor}" font-weight="{weight}" fill="{INK}">'
            f"{escape(content)}</text>")


def plot(title, rows, value_text):
    """`rows` are lists of (label, value) that belong together, of which the first is one's own."""
    values = [value for bars in rows for _, value in bars]
    low, high = math.floor(math.log10(min(values))), math.ceil(math.log10(max(values)))
    room = WIDTH - LABEL_WIDTH - TEXT_WIDTH
    scale = room / max(high - low, 1)
    height = 2 * MARGIN + sum(len(bars) * BAR_HEIGHT + GAP for bars in rows) + MARGIN
    parts = [f'<svg xmlns="http://www.w3.org/2000/svg" viewBox="0 0 {WIDTH} {height}" font-family="sans-serif" '
             'font-size="11">', f'<rect width="{WIDTH}" height="{height}" fill="#ffffff"/>',
             text(MARGIN / 2, MARGIN - 6, title, weight="bold")]
    for power in range(low, high + 1):
        x = LABEL_WIDTH + (power - low) * scale
        parts.append(f'<path d="M{x:.0f} {MARGIN}V{height - MARGIN}" stroke="{LINE}"/>')
        parts.append(text(x, height - MARGIN + 14, DECADES.get(10.0 ** power, ""), "middle"))
    y = MARGIN + GAP
    for bars in rows:
        for place, (label, value) in enumerate(bars):
            length = max((math.log10(value) - low) * scale, 1)
            parts.append(text(LABEL_WIDTH - 8, y + BAR_HEIGHT - 4, label, "end", "normal" if place else "bold"))
            parts.append(f'<rect x="{LABEL_WIDTH}" y="{y + 1}" width="{length:.1f}" height="{BAR_HEIGHT - 2}" '
                         f'fill="{OTHER if place else OWN}"/>')
            parts.append(text(LABEL_WIDTH + length + 4, y + BAR_HEIGHT - 4, value_text(value)))
            y += BAR_HEIGHT
        y += GAP
    return "\n".join(parts) + "\n</svg>\n"
