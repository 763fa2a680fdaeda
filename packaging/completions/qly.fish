# Completion for fish. What may stand where tells "qly __complete".
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
complete -c qly -f -a '(__fish_qly_complete)'
