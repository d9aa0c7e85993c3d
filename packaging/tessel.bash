# Completion for tessel.
_tessel() {
    local current=${COMP_WORDS[COMP_CWORD]} previous=${COMP_WORDS[COMP_CWORD - 1]} words=""
    COMPREPLY=()
    case $previous in
    --frame) words="none watch" ;;
    --profile) words="watch" ;;
    --log) words="verbose debug info warn error fatal off" ;;
    --scale) words="1 1.5 2 3" ;;
    --operation | --mime | --extra | --screen) return ;;
    *)
        if [[ $current != -* ]]; then
            compopt -o filenames
            mapfile -t COMPREPLY < <(compgen -f -- "$current")
            return
        fi
        words=$(tessel --help | sed -n 's/^  \(--[a-z-]\+\).*/\1/p')
        ;;
    esac
    mapfile -t COMPREPLY < <(compgen -W "$words" -- "$current")
}
complete -F _tessel tessel
