"""What Doxygen reads of a header: declarations that share the comment above them are marked.

A comment is for all declarations that follow it without a blank line; Doxygen takes it for that of the first one. The
pages show them together again (extensions/shared_comments.py). In comments, backslashes and percent signs are no
commands, but for \\file.
"""

import re
import sys

MARK = "/** SHARES_THE_COMMENT_ABOVE */ "


def plain(comment):
    return re.sub(r"%", "%%", re.sub(r"\\(?!file\b)", r"\\\\", comment))


def marked(lines):
    commented = False  # the declaration before has a comment, its own or a shared one
    complete = False  # nothing of that declaration is left
    indentation = ""
    for line in lines:
        text = line.strip()
        if text.startswith("///"):
            commented, complete, indentation = True, False, line[:len(line) - len(line.lstrip())]
            line = plain(line)
        elif commented:
            if not text or text.startswith(("#", "//", "}")) or not re.match(rf"{indentation}\S", line):
                commented = bool(text) and not complete and not text.startswith("#")
            elif complete and re.search(r";$|[(,]$", text) and not text.startswith(("class", "struct", "enum")):
                line = indentation + MARK + line.lstrip()
            commented = commented and not re.search(r"\{$", text)
            complete = text.endswith(";")
        yield line


def main():
    with open(sys.argv[1], encoding="utf-8") as header:
        sys.stdout.writelines(marked(header))


if __name__ == "__main__":
    main()
