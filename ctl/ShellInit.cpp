#include "ctl/ShellInit.h"

// A path may hold any byte but NUL. A command substitution drops line feeds at the end, so bash and
// zsh have a letter printed after the path, and fish splits at NUL. Paths are always absolute, so
// none is taken for an option of "cd" or for a name in CDPATH. A file that was chosen stands for
// its folder.
//
// The Tab key completes the first term of "q" to paths. They need not begin with what was typed,
// which each shell has to be told in its own way.

namespace quillon {

namespace {

/// The function is the same in bash and in zsh.
constexpr std::string_view CHANGE_FOLDER =
    R"sh(# q [TERMS]: changes to the best folder, or shows the panel when it is in doubt.
q() {
    local picked
    picked=$(command quillonctl pick --best --height 15 -- "$@" && printf x) || return
    picked=${picked%$'\n'x}
    if [ -d "$picked" ]; then
        builtin cd -- "$picked" || return
    else
        builtin cd -- "${picked%/*}/" || return
    fi
    command quillonctl use -- "$picked"
}

)sh";

constexpr std::string_view BASH_HINT =
    R"sh(# Quillon in bash. In ~/.bashrc: eval "$(quillonctl init bash)"

)sh";

// Readline would put what all paths begin with in place of what was typed, unless that is empty. It
// quotes names of files itself, but shows only their last components where there are several.
constexpr std::string_view BASH =
    R"sh(# q TERM<Tab>: completes the term to the paths that are found.
__quillon_complete() {
    local path query=${2//[\\\"\']/}
    COMPREPLY=()
    [ "$COMP_CWORD" -eq 1 ] && [ -n "$query" ] || return
    while IFS= read -r -d '' path; do
        COMPREPLY+=("$path")
    done < <(command quillonctl find -0 -- "$query" 2>/dev/null)
    if [ "${#COMPREPLY[@]}" -eq 1 ]; then
        compopt -o filenames
    elif [ "${#COMPREPLY[@]}" -gt 1 ]; then
        COMPREPLY=("" "${COMPREPLY[@]@Q}")
    fi
}
complete -o nosort -F __quillon_complete q

# Ctrl+G: inserts a path at the cursor.
__quillon_insert() {
    local picked
    picked=$(command quillonctl pick --height 15 && printf x) || return
    picked=${picked%$'\n'x}
    command quillonctl use -- "$picked"
    printf -v picked '%q ' "$picked"
    READLINE_LINE=${READLINE_LINE:0:READLINE_POINT}$picked${READLINE_LINE:READLINE_POINT}
    READLINE_POINT=$((READLINE_POINT + ${#picked}))
}
if [[ $- == *i* ]]; then
    bind -m emacs-standard -x '"\C-g": __quillon_insert'
    bind -m vi-insert -x '"\C-g": __quillon_insert'
fi
)sh";

constexpr std::string_view ZSH_HINT =
    R"sh(# Quillon in zsh. In ~/.zshrc: eval "$(quillonctl init zsh)"

)sh";

constexpr std::string_view ZSH =
    R"sh(# q TERM<Tab>: completes the term to the paths that are found, the best one first.
__quillon_complete() {
    local query=${(Q)PREFIX}${(Q)SUFFIX}
    [[ $CURRENT -eq 2 && -n $query ]] || return
    local -a paths
    paths=(${(0)"$(command quillonctl find -0 -- "$query" 2>/dev/null)"})
    compadd -U -V quillon -a paths
    compstate[insert]=menu
}
if (( $+functions[compdef] )); then
    compdef __quillon_complete q
fi

# Ctrl+G: inserts a path at the cursor.
__quillon_insert() {
    local picked
    if picked=$(command quillonctl pick --height 15 && printf x); then
        picked=${picked%$'\n'x}
        command quillonctl use -- "$picked"
        LBUFFER+="${(q)picked} "
    fi
    zle reset-prompt
}
if [[ -o interactive ]]; then
    zle -N __quillon_insert
    bindkey -M emacs '^G' __quillon_insert
    bindkey -M viins '^G' __quillon_insert
fi
)sh";

constexpr std::string_view FISH =
    R"sh(# Quillon in fish. In ~/.config/fish/config.fish: quillonctl init fish | source

# Puts the path that is picked into __quillon_picked.
function __quillon_pick
    set --global __quillon_picked (command quillonctl pick -0 $argv | string split0)
    test -n "$__quillon_picked"
    and command quillonctl use -- $__quillon_picked
end

function q --description 'Change to the best folder, or show the panel when it is in doubt'
    __quillon_pick --best --height 15 -- $argv
    or return
    if test -d $__quillon_picked
        builtin cd $__quillon_picked
    else
        builtin cd (string replace --regex '[^/]*\z' '' -- $__quillon_picked | string collect)
    end
end

# q TERM<Tab>: completes the term to the paths that are found, the best one first.
function __quillon_complete
    test (count (commandline --cut-at-cursor --tokenize)) -eq 1
    and command quillonctl find -0 -- (commandline --current-token --tokenize) 2>/dev/null | string split0
end
complete --command q --no-files --keep-order --arguments '(__quillon_complete)'

function __quillon_insert --description 'Insert a path at the cursor'
    __quillon_pick --height 15
    and commandline --insert -- (string escape -- $__quillon_picked)' '
    commandline --function repaint
end

if status is-interactive
    bind \cg __quillon_insert
    bind --mode insert \cg __quillon_insert
end
)sh";

} // namespace

std::optional<std::string> shellInit(std::string_view shell)
{
    std::string code;
    if (shell == "bash")
        return code.append(BASH_HINT).append(CHANGE_FOLDER).append(BASH);
    if (shell == "zsh")
        return code.append(ZSH_HINT).append(CHANGE_FOLDER).append(ZSH);
    if (shell == "fish")
        return code.append(FISH);
    return std::nullopt;
}

} // namespace quillon
