# bash ask.bash SCRIPT LINES: what bash offers at the end of each line, as it breaks it into words.
source "$1"
while IFS= read -r line; do
    echo "> $line"
    mapfile -t COMP_WORDS < <(sed 's/=/\n=\n/; s/ /\n/g' <<<"$line" | sed '1!{/^$/d}')
    [[ $line != *' ' ]] || COMP_WORDS+=('')
    COMP_CWORD=$((${#COMP_WORDS[@]} - 1))
    _kvstation
    printf '%s\n' "${COMPREPLY[@]}"
done <"$2"
