# fish completion of qmdb: the command itself tells what may stand on its line.

function __qmdb_candidates
    set -l words (commandline -opc)
    set -l typed (commandline -ct)
    # What is typed may have an open quote.
    set -l word (string unescape -- $typed; or string unescape -- $typed'"'; or string unescape -- $typed"'"; or echo -- $typed)
    set -l lines (command $words[1] complete -- $words[2..-1] "$word" 2>/dev/null)
    switch "$lines[1]"
        case files directories
            set -l given (string match -r -- '^--[^=]*=' $word)
            set -l begin (string replace -r -- '^--[^=]*=' '' $word)
            if test $lines[1] = files
                __fish_complete_path $begin | string replace -r '^' -- "$given"
            else
                __fish_complete_directories $begin | string replace -r '^' -- "$given"
            end
        case '*'
            string join \n -- $lines[2..-1]
    end
end

complete -c qmdb -f -a '(__qmdb_candidates)'
