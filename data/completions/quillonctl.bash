# bash completion for quillonctl

_quillonctl() {
    local current=${COMP_WORDS[COMP_CWORD]} previous=${COMP_WORDS[COMP_CWORD - 1]}
    local command=${COMP_WORDS[1]} options folders=
    if [ "$COMP_CWORD" -eq 1 ]; then
        mapfile -t COMPREPLY < <(compgen -W 'match find pick open use init crawl watch status --version --help' -- "$current")
        return
    fi
    case $previous in
        --in)
            compopt -o filenames
            mapfile -t COMPREPLY < <(compgen -d -- "$current")
            return
            ;;
        --counts)
            compopt -o filenames
            mapfile -t COMPREPLY < <(compgen -f -- "$current")
            return
            ;;
        --order)
            mapfile -t COMPREPLY < <(compgen -W 'path names' -- "$current")
            return
            ;;
        -n | --top | --height | --repeat | --threads | --budget | --latency | --window | --sweep | --exclude | --ext)
            return
            ;;
    esac
    case $command in
        match) options='--top -n --order --words --counts --repeat -0 --scores --json --stats --help' ;;
        find) options='--in --hidden --top -n --order --no-words -0 --json --relative --crawl --stats --help' ;;
        pick) options='--height --best -0 --help' ;;
        open | use)
            options='--help'
            folders=yes
            ;;
        init)
            if [[ $current != -* ]]; then
                mapfile -t COMPREPLY < <(compgen -W 'bash zsh fish' -- "$current")
                return
            fi
            options='--help'
            ;;
        crawl)
            options='--exclude --no-default-excludes --no-builtin-excludes --ext --hidden --threads -0
                --stats --help'
            folders=yes
            ;;
        watch)
            options='--latency --window --sweep --budget --hidden --dump -0 --help'
            folders=yes
            ;;
        status) options='--json --help' ;;
        *) return ;;
    esac
    if [[ $current == -* ]]; then
        mapfile -t COMPREPLY < <(compgen -W "$options" -- "$current")
    elif [ -n "$folders" ]; then
        compopt -o filenames
        mapfile -t COMPREPLY < <(compgen -d -- "$current")
    fi
}

complete -F _quillonctl quillonctl
