# Completion for fish. What may stand where tells "qly __complete", and the others' help which options there are.
function __fish_qly_complete
    set -l words (commandline -opc)
    set -l typed (commandline -ct)
    # An open quote is part of the word as it stands.
    set -l current (string unescape -- $typed; or string unescape -- $typed"'"; or string unescape -- $typed'"')
    set -l answer (qly __complete -- $words[2..] "$current" 2>/dev/null)
    switch "$answer[1]"
        case 'files *.*'
            __fish_complete_suffix (string replace 'files ' '' -- $answer[1])
        case 'files *'
            __fish_complete_path $typed
        case words
            string join \n -- $answer[2..]
    end
end

function __fish_quillary_complete
    set -l words (commandline -opc)
    set -l typed (commandline -ct)
    if string match -q -- '-*' "$typed"
        $words[1] --help 2>/dev/null | string replace -rf '^ +(?:-h, ?)?(--[a-z-]+)(?: [A-Z]\S*)? *' '$1\t'
        return
    end
    switch $words[-1]
        case --folder
            __fish_complete_directories $typed
        case --picture
            __fish_complete_suffix .png
        case '--*' quillary-catalogue '*/quillary-catalogue'
        case '*'
            __fish_complete_suffix .pdb
    end
end

complete -c qly -f -a '(__fish_qly_complete)'
complete -c quillary -c quillary-catalogue -f -a '(__fish_quillary_complete)'
