# zsh ask.zsh SCRIPT LINES: what zsh offers at the end of each line. It completes on a terminal only, of which it gets one.
zmodload zsh/zpty
answers=$(mktemp)
zpty shell zsh -f -i
zpty -w shell "script=${(q)1} lines=${(q)2} answers=${(q)answers}; source ${(q)0:h}/terminal.zsh"
zpty -w -n shell $'\C-x'
while zpty -r shell text; do :; done
cat $answers
rm $answers
