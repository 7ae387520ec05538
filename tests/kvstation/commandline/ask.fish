# fish ask.fish SCRIPT LINES: what fish offers at the end of each line.
source $argv[1]
while read -l line
    echo "> $line"
    complete -C $line | string replace -r '\t.*' ''
end <$argv[2]
exit 0
