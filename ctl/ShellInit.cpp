#include "ctl/ShellInit.h"

// A path may hold any byte but NUL. A command substitution drops line feeds at the end, so bash and
// zsh have a letter printed after the path, and fish splits at NUL. Paths are always absolute, so
// none is taken for an option of "cd" or for a name in CDPATH. A file that was chosen stands for
// its folder.

namespace quillon {

namespace {

constexpr std::string_view BASH =
    R"sh(# Quillon in bash. In ~/.bashrc: eval "$(quillonctl init bash)"

# q [TERMS]: changes to the best folder, or shows the panel when it is in doubt.
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

constexpr std::string_view ZSH = R"sh(# Quillon in zsh. In ~/.zshrc: eval "$(quillonctl init zsh)"

# q [TERMS]: changes to the best folder, or shows the panel when it is in doubt.
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

std::optional<std::string_view> shellInit(std::string_view shell)
{
    if (shell == "bash")
        return BASH;
    if (shell == "zsh")
        return ZSH;
    if (shell == "fish")
        return FISH;
    return std::nullopt;
}

} // namespace quillon
