#!/usr/bin/env bash
# Inserts a column into a source table, for a member that the record is to have:
#
#     data/insert_column.sh TABLE AFTER NAME TYPE CELL
#
# behind the column AFTER, called NAME, of TYPE (as the type row spells it), with CELL in every data row. The table is
# replaced when all of it has been written. Whether it compiles tells `pgmdev flash check` or `pgmdev profile check`.
set -euo pipefail

if [ $# -ne 5 ]; then
    sed -n '2,4s/^# \{0,1\}//p' "${BASH_SOURCE[0]}" >&2
    exit 2
fi
if [[ $3$4$5 == *[,$'\n\r']* ]]; then
    echo "a name, a type and a cell have no commas and no line breaks" >&2
    exit 2
fi
table=$(realpath -- "$1")  # also since awk takes t=1.csv for a variable
new=$(mktemp "$table.XXXXXX")
trap 'rm -f "$new"' EXIT

after=$2 name=$3 type=$4 cell=$5 awk '
    function trimmed(text) { gsub(/^[ \t]+|[ \t\r]+$/, "", text); return text }
    function new_cell(line) {
        return line == 0 ? type : line == 1 ? name : line < header_lines ? "-" : cell
    }
    BEGIN {                         # no arguments of -v, whose backslashes would be escapes
        FS = ","
        after = ENVIRON["after"]; name = ENVIRON["name"]; type = ENVIRON["type"]; cell = ENVIRON["cell"]
    }
    { line_end = sub(/\r$/, "") ? "\r" : "" }
    FNR == 1 { line = -1 }          # lines that hold something are counted from 0
    trimmed($0) != "" { ++line }
    NR == FNR {                     # the first time through: where the column goes, and how wide it is
        if (line == 0) { columns = NF; padded = /,[ \t]/; header_lines = 2 }
        if (line == 1) for (i = 1; i <= NF; ++i) {
            if (tolower(trimmed($i)) == tolower(name)) { print "there is a column " name > "/dev/stderr"; exit 1 }
            if (tolower(trimmed($i)) == tolower(after)) place = i
        }
        if (line == 2 && NF != columns) header_lines = 8   # a table with comments between the names and the rows
        next
    }
    FNR == 1 {
        if (!place) { print "there is no column " after > "/dev/stderr"; exit 1 }
        width = length(type) > length(name) ? length(type) : length(name)
        if (length(cell) > width) width = length(cell)
    }
    trimmed($0) == "" || NF != columns { print $0 line_end; next }
    {
        text = new_cell(line)
        row = ""
        for (i = 1; i <= NF; ++i) {
            field = $i
            if (padded && i == place + 1) {   # the blanks before this cell align the new one, and it gets its own
                sub(/^[ \t]+/, "", field)
                field = sprintf("%" (width - length(text) + 1) "s", "") field
            }
            row = row (i > 1 ? "," : "") field
            if (i == place) {
                match($(i + 1), /^[ \t]*/)
                row = row "," (i < NF ? substr($(i + 1), 1, RLENGTH) : padded ? " " : "") text
            }
        }
        print row line_end
    }
' "$table" "$table" > "$new"

chmod --reference="$table" "$new"
mv -f "$new" "$table"
