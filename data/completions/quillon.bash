# bash completion for quillon

_quillon() {
    # One option at most.
    [ "$COMP_CWORD" -eq 1 ] || return
    mapfile -t COMPREPLY < <(compgen -W '--toggle --show --preferences --rebuild --quit
        --background --version --help' -- "${COMP_WORDS[1]}")
}

complete -F _quillon quillon
