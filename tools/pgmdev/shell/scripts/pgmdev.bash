# Completion of pgmdev for bash: the command itself tells what may stand in place of a word. Where it tells nothing, bash
# offers names of files.

_pgmdev() {
    local lines word
    COMPREPLY=()
    mapfile -t lines < <("$1" __complete "${COMP_WORDS[@]:1:COMP_CWORD}" 2>/dev/null)
    for word in "${lines[@]%%$'\t'*}"; do
        [[ $word == *= ]] && compopt -o nospace
        printf -v word %q "$word"
        COMPREPLY+=("$word")
    done
}

complete -o bashdefault -o default -F _pgmdev pgmdev
