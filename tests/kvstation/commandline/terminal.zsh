# Read by the zsh on the terminal of ask.zsh: at a key, it completes the lines and writes the offers down.
autoload -U compinit
compinit -D -u
source $script

# Each offer passes here. With -O, -A and -D it is only asked what would match.
compadd() {
    if [[ " $* " != *\ -[OAD]\ * ]]; then
        local -a matches
        builtin compadd -O matches "$@"
        (( ! $#matches )) || print -rl -- $matches >>$answers
    fi
    builtin compadd "$@"
}

ask() {
    local line
    for line in ${(f)"$(<$lines)"}; do
        print -r -- "> $line" >>$answers
        BUFFER=$line CURSOR=$#line
        zle list-choices
    done
    exit
}
zle -N ask
bindkey '\C-x' ask
