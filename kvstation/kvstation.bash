# Completion of kvstation's command line for bash: source this file, or put it as "kvstation" among bash-completion's.
# The tool itself tells its verbs, options and fields; what it says of a mistyped verb does not belong into the prompt.

_kvstation_verbs() { "$1" --help 2>/dev/null | sed -n '/^Subcommands:/,/^$/ s/^  \([a-z]\+\) .*/\1/p'; }

_kvstation_options() { "$1" "$2" --help 2>/dev/null | sed -n 's/^  \(-[a-z],\)\?\(--[a-z-]\+\).*/\2/p'; }

_kvstation_fields() { "$1" layout 2>/dev/null | awk 'NR > 1 && $6 !~ /^reserved/ { print $6 }'; }

_kvstation() {
    local tool=${COMP_WORDS[0]} verb=${COMP_WORDS[1]}
    local typed=${COMP_WORDS[COMP_CWORD]} before=${COMP_WORDS[COMP_CWORD - 1]}
    local words
    # bash breaks "--field=szOS" into three words.
    if [ "$COMP_CWORD" -gt 2 ] && [ "$before" = = ]; then
        before=${COMP_WORDS[COMP_CWORD - 2]}
    elif [ "$typed" = = ]; then
        typed=
    fi
    if [ "$COMP_CWORD" -eq 1 ]; then
        words="$(_kvstation_verbs "$tool") --help --version"
    elif [ "$before" = --field ]; then
        words=$(_kvstation_fields "$tool")
    elif [[ $typed == -* ]]; then
        words=$(_kvstation_options "$tool" "$verb")
    elif [ "$verb" = explain ] && [ "$COMP_CWORD" -eq 2 ]; then
        words=$(_kvstation_fields "$tool")
    else
        COMPREPLY=()
        return
    fi
    mapfile -t COMPREPLY < <(compgen -W "$words" -- "$typed")
}

complete -o default -F _kvstation kvstation kvstation.exe
