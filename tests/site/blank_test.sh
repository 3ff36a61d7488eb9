#!/usr/bin/env bash
# That Doxygen reads the headers through the filter also where the sources have a blank in their path.
set -euo pipefail
sources=$(cd "$(dirname "${BASH_SOURCE[0]}")/../.." && pwd)/site
root=$(mktemp -d)
trap 'rm -rf "$root"' EXIT
site="$root/with a blank"
mkdir -p "$site/h" "$site/doxygen"
cp "$sources/mark_shared_comments.py" "$site"
printf '/// \\file\n\n/// One comment for both.\nint one();\nint two();\n' >"$site/h/both.h"
sed -e "s|@documented_dirs@|\"$site/h\"|; s|@site_dir@|$site|g; s|@CMAKE_CURRENT_SOURCE_DIR@|$site|g" \
    -e "s|@PROJECT_SOURCE_DIR@|$site|g; s|@PGMDEV_SITE_PYTHON@|/usr/bin/python3|g" "$sources/Doxyfile.in" >"$site/Doxyfile"
doxygen "$site/Doxyfile"
grep -q SHARES_THE_COMMENT_ABOVE "$site/doxygen/xml/both_8h.xml" || { cat "$site/doxygen/xml/both_8h.xml" >&2; exit 1; }
