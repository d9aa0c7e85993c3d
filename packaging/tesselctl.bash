# Completion for tesselctl.
_tesselctl() {
    local current=${COMP_WORDS[COMP_CWORD]} previous=${COMP_WORDS[COMP_CWORD - 1]}
    local word command="" i
    COMPREPLY=()
    for ((i = 1; i < COMP_CWORD; i++)); do
        word=${COMP_WORDS[i]}
        case $word in
        --pid | --socket) ((i++)) ;;
        -*) ;;
        *)
            command=$word
            break
            ;;
        esac
    done
    case $previous in
    --pid)
        mapfile -t COMPREPLY < <(compgen -W "$(pgrep -x tessel)" -- "$current")
        return
        ;;
    --socket)
        compopt -o filenames
        mapfile -t COMPREPLY < <(compgen -f -- "$current")
        return
        ;;
    esac
    local words=""
    case $command in
    "") words="--pid --socket --help --version $(tesselctl --help | sed -n '/^Commands:/,/^$/s/^  \([a-z-]\+\).*/\1/p')" ;;
    launch | screenshot | play-script | record)
        compopt -o filenames
        mapfile -t COMPREPLY < <(compgen -f -- "$current")
        return
        ;;
    key) words="back more home" ;;
    rotate) words="0 90 180 270" ;;
    missed) words="video audio" ;;
    event) words="low-battery low-memory language region" ;;
    clock) words="12 24" ;;
    screen-reader) words="on off" ;;
    battery) words="none low critical action charging discharging" ;;
    error) words="out-of-memory invalid-parameter no-such-file invalid-operation no-space permission-denied feature-not-supported seek-failed invalid-state not-supported-file invalid-uri sound-policy connection-failed resource-limit" ;;
    widget) words="add resize update force pause resume remove" ;;
    focus) words="take give-back none no-resume fading both" ;;
    device) words="connect disconnect earjack bluetooth hdmi usb" ;;
    interrupt) words="completed media call earjack-unplug resource-conflict alarm" ;;
    esac
    mapfile -t COMPREPLY < <(compgen -W "$words" -- "$current")
}
complete -F _tesselctl tesselctl
