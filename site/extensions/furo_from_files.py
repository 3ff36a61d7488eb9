"""Makes Debian's Furo work from files, without a web server.

As packaged, its style sheet imports another one from the root of a web server and has no dark colours unless they are
chosen by hand, and its script is a module, which browsers load from servers only, and fails on a page of one heading.
"""

import pathlib
import re

NORMALIZE = pathlib.Path("/usr/share/javascript/normalize.css/normalize.css")
IMPORT = "@import url(/javascript/normalize.css/normalize.css);"
DARK = re.compile(r'body\[data-theme="dark"\] \{\n(?P<colours>(?:\s+--[^;]+;\n?)+)')
MODULE = 'import Gumshoe from "./gumshoe-patched.js";'
LAST = "var last = contents[contents.length - 1];"


def only(text, part):
    if text.count(part) != 1:
        raise ValueError(f"the theme has changed: {part!r} is in it {text.count(part)} times")
    return part


def style(text):
    text = text.replace(only(text, IMPORT), NORMALIZE.read_text(encoding="utf-8"))
    colours = DARK.search(text)["colours"]
    return text + (f'\n@media not print {{ @media (prefers-color-scheme: dark) {{ body[data-theme="auto"] {{\n{colours}}} }} }}\n')


def script(text, gumshoe):
    gumshoe = gumshoe.replace(only(gumshoe, LAST), f"{LAST} if (!last) return;")
    return gumshoe + text.replace(only(text, MODULE), "")


def change(app, error):
    if error:
        return
    static = pathlib.Path(app.outdir) / "_static"
    sheet = static / "styles" / "furo.css"
    sheet.write_text(style(sheet.read_text(encoding="utf-8")), encoding="utf-8")
    main, gumshoe = static / "scripts" / "furo.js", static / "scripts" / "gumshoe-patched.js"
    main.write_text(script(main.read_text(encoding="utf-8"), gumshoe.read_text(encoding="utf-8")), encoding="utf-8")
    gumshoe.unlink()


def setup(app):
    app.connect("build-finished", change)
    return {"parallel_read_safe": True}
