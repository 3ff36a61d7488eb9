#!/usr/bin/env bash
# That a column gets into a table as it was said, whatever the table is called, and that a table stays where it cannot.
set -euo pipefail
insert=$(cd "$(dirname "${BASH_SOURCE[0]}")/../.." && pwd)/data/insert_column.sh
root=$(mktemp -d)
trap 'rm -rf "$root"' EXIT
cd "$root"

# expect WHAT FILE LINE...: that the file has these lines.
expect() {
    local what=$1 file=$2
    shift 2
    [ "$(cat "$file")" = "$(printf '%s\n' "$@")" ] || { echo "$what:" >&2; cat -A "$file" >&2; exit 1; }
}
# expect_refusal WHAT ARGUMENT...: that it fails with these arguments and leaves the table alone.
expect_refusal() {
    local what=$1
    shift
    ! "$insert" "$@" 2>/dev/null || { echo "$what: it was taken" >&2; exit 1; }
    expect "$what" table.csv "${table[@]}"
}

table=("TYPE, TYPE" "one,  two" "1,    2")
printf '%s\n' "${table[@]}" | tee table.csv ./-a=b.csv >/dev/null
expect_refusal "no such column" table.csv three NEW T c
expect_refusal "a column that is there" table.csv one TWO T c
expect_refusal "a comma" table.csv one NEW T '3,3'
expect_refusal "a line break" table.csv one NEW T $'3\n3'

"$insert" -a=b.csv one NEW T c
expect "a name that looks like a setting" ./-a=b.csv "TYPE, T,   TYPE" "one,  NEW, two" "1,    c,   2"

chmod 640 table.csv
ln -s table.csv link.csv
"$insert" link.csv two NEW T 'a\tb\\'
expect "backslashes" table.csv "TYPE, TYPE, T" "one,  two, NEW" '1,    2, a\tb\\'
[ -L link.csv ] && [ "$(stat -c %a table.csv)" = 640 ] || { ls -l >&2; exit 1; }

printf '%s\r\n' "TYPE,TYPE" "one,two" "1,2" >dos.csv
"$insert" dos.csv two NEW T c
expect "lines that end as on Windows" dos.csv $'TYPE,TYPE,T\r' $'one,two,NEW\r' $'1,2,c\r'
[ "$(ls -A | wc -l)" = 4 ] || { ls -A >&2; exit 1; }
