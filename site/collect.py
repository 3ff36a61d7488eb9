"""Collects what the site is made of: the guides as they are, and a page for each header.

    collect.py PROJECT DIRECTORY
"""

import pathlib
import re
import shutil
import sys

GUIDES = ["*.md", "docs/*.md", "data/*/README.md", "tests/data/sfdp/README.md"]
# What they show and lead to.
BESIDE_GUIDES = ["docs/performance/*.svg", "examples/*.py"]
# Where their pages are, where they are, and what the list of pages calls them.
HEADERS = [
    ("reference/library", "h", "The library's headers"),
    ("reference/c", "c/include", "The library's headers for C"),
    ("reference/host", "host/h", "The host's headers"),
]


def copy_guides(project, directory):
    for pattern in GUIDES + BESIDE_GUIDES:
        for guide in project.glob(pattern):
            copy = directory / guide.relative_to(project)
            copy.parent.mkdir(parents=True, exist_ok=True)
            shutil.copyfile(guide, copy)


def write_header_pages(project, directory):
    """Returns their lists for the start page."""
    lists = ""
    for place, headers, caption in HEADERS:
        found = sorted((project / headers).glob("*.h"))
        if found:
            (directory / place).mkdir(parents=True)
            pages = "\n".join(f"{place}/{header.stem}" for header in found)
            lists += f"```{{toctree}}\n:hidden:\n:caption: {caption}\n\n{pages}\n```\n\n"
        for header in found:
            page = f"# {header.name}\n\n```{{doxygenfile}} {header.name}\n```\n"
            (directory / place / f"{header.stem}.md").write_text(page, encoding="utf-8")
    return lists


def write_start_page(project, directory, lists_of_headers):
    """Lists the guides that it does not name, too."""
    text = (project / "site" / "index.md").read_text(encoding="utf-8")
    guides = sorted(guide.stem for guide in (directory / "docs").glob("*.md"))
    others = "\n".join(f"docs/{guide}" for guide in guides if not re.search(rf"^docs/{guide}$", text, re.MULTILINE))
    text = text.replace("OTHER_GUIDES", others).replace("LISTS_OF_HEADERS", lists_of_headers)
    (directory / "index.md").write_text(text, encoding="utf-8")


def main():
    project, directory = map(pathlib.Path, sys.argv[1:])
    shutil.rmtree(directory, ignore_errors=True)
    copy_guides(project, directory)
    write_start_page(project, directory, write_header_pages(project, directory))


main()
