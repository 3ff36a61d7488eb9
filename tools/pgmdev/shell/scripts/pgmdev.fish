# Completion of pgmdev for fish: the command itself tells what may stand in place of a word. Where it tells nothing, fish
# offers names of files.

function __pgmdev_complete
    set -l words (commandline -opc) (commandline -ct)
    set -l found ($words[1] __complete $words[2..-1] 2>/dev/null)
    if test (count $found) -gt 0
        string join \n -- $found
    else
        __fish_complete_path (commandline -ct)
    end
end

complete -c pgmdev -f -a '(__pgmdev_complete)'
