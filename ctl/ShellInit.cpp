#include "ctl/ShellInit.h"

// A path may hold any byte but NUL. A command substitution drops line feeds at the end, so bash and
// zsh have a letter printed after the path, and fish splits at NUL. Paths are always absolute, so
// none is taken for an option of "cd" or for a name in CDPATH. A file that was chosen stands for
// its folder.

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

constexpr std::string_view BASH = R"sh(# Ctrl+G: inserts a path at the cursor.
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

constexpr std::string_view ZSH = R"sh(# Ctrl+G: inserts a path at the cursor.
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
