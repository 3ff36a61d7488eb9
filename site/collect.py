"""Collects what the site is made of: the guides as they are, and a page for each header.

    collect.py PROJECT DIRECTORY
"""

import pathlib
import re
import shutil
import sys

GUIDES = ["*.md", "docs/*.md", "data/*/README.md", "tests/data/sfdp/README.md"]
HEADERS = {"reference/library": "h", "reference/host": "host/h"}


def copy_guides(project, directory):
    for pattern in GUIDES:
        for guide in project.glob(pattern):
            copy = directory / guide.relative_to(project)
            copy.parent.mkdir(parents=True, exist_ok=True)
            shutil.copyfile(guide, copy)


def write_header_pages(project, directory):
    for place, headers in HEADERS.items():
        (directory / place).mkdir(parents=True)
        for header in (project / headers).glob("*.h"):
            page = f"# {header.name}\n\n```{{doxygenfile}} {header.name}\n```\n"
            (directory / place / f"{header.stem}.md").write_text(page, encoding="utf-8")


def write_start_page(project, directory):
    """Lists the guides that it does not name, too."""
    text = (project / "site" / "index.md").read_text(encoding="utf-8")
    guides = sorted(guide.stem for guide in (directory / "docs").glob("*.md"))
    others = "\n".join(f"docs/{guide}" for guide in guides if not re.search(rf"^docs/{guide}$", text, re.MULTILINE))
    (directory / "index.md").write_text(text.replace("OTHER_GUIDES", others), encoding="utf-8")


def main():
    project, directory = map(pathlib.Path, sys.argv[1:])
    shutil.rmtree(directory, ignore_errors=True)
    copy_guides(project, directory)
    write_header_pages(project, directory)
    write_start_page(project, directory)


main()
