"""Draws the flowcharts of the guides, which are written in Mermaid's language, by Graphviz: no script, no network.

What the guides use of the language is understood, a line an arrow; anything else is an error.
"""

import html
import re
import subprocess
import textwrap

from docutils import nodes

NODE = r'(\w+)(?:\["([^"]*)"\])?'
ARROW = re.compile(rf'{NODE} (?:(-->)|-- "([^"]*)" -->|(-\.) "?([^".]*?)"? \.->) {NODE}')
STYLE = """rankdir=TB; bgcolor=transparent; node [shape=box, style=rounded, fontname="sans-serif", fontsize=12];
edge [fontname="sans-serif", fontsize=11];"""


def quoted(text):
    """Several short lines: the chart is as wide as the page at most."""
    lines = textwrap.wrap(text, 22) or [""]
    return '"' + "\\n".join(line.replace("\\", "\\\\").replace('"', '\\"') for line in lines) + '"'


def read(text):
    """The names of the nodes, and the arrows: from, to, label, whether dotted."""
    first, *lines = text.strip().splitlines()
    if first != "flowchart TD":
        raise ValueError(f"not a flowchart from top to bottom: {first}")
    names, arrows = {}, []
    for line in lines:
        match = ARROW.fullmatch(line.strip())
        if not match:
            raise ValueError(f"not an arrow of a flowchart: {line}")
        begin, begin_name, _, label, dots, dotted_label, end, end_name = match.groups()
        for node, name in ((begin, begin_name), (end, end_name)):
            names[node] = name or names.get(node, node)
        arrows.append((begin, end, label or dotted_label or "", bool(dots)))
    return names, arrows


def graph(names, arrows):
    lines = [f"{node} [label={quoted(name)}];" for node, name in names.items()]
    lines += [f"{begin} -> {end} [label={quoted(label)}{', style=dashed' if dotted else ''}];"
              for begin, end, label, dotted in arrows]
    return f"digraph {{ {STYLE} {' '.join(lines)} }}"


def told(names, arrows):
    """The same in words, for those who do not see it."""
    return "; ".join(f"{names[begin]} {label or 'to'} {names[end]}" for begin, end, label, _ in arrows)


def drawn(text):
    names, arrows = read(text)
    picture = subprocess.run(["dot", "-Tsvg"], input=graph(names, arrows), capture_output=True, text=True, check=True)
    svg = picture.stdout[picture.stdout.index("<svg"):]
    svg = re.sub(r"<!--.*?-->|<title>.*?</title>", "", svg, flags=re.DOTALL)
    return f'<div class="flowchart" role="img" aria-label="{html.escape(told(names, arrows))}">{svg}</div>'


def draw(app, doctree):
    for block in list(doctree.findall(nodes.literal_block)):
        if block.get("language") == "mermaid":
            block.replace_self(nodes.raw("", drawn(block.astext()), format="html"))


def setup(app):
    app.connect("doctree-read", draw)
    return {"parallel_read_safe": True}
