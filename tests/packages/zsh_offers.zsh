# zsh_offers.zsh FOLDER LINE: what zsh would offer behind the line, in order. Completion works at a terminal alone, so that
# a second zsh gets one, in which matches are printed in place of being shown.
zmodload zsh/zpty
zpty shell zsh -f -i
zpty -w shell "PS1= PROMPT_EOL_MARK= fpath=($1 \$fpath); autoload -Uz compinit; compinit -u -D"
zpty -w shell 'compadd() {
  if [[ ${@[(r)-[OAD]]} ]]; then builtin compadd "$@"; return; fi
  local -a all; builtin compadd -O all "$@"; print -l ${all/#/offer:}; builtin compadd "$@"
}'
zpty -w shell "offers() { zle complete-word; print ready:; }; zle -N offers; bindkey '^X' offers; print set:up"
local line text
while zpty -r shell line; do [[ $line != *set:up* || $line == *print* ]] || break; done
zpty -w -n shell "$2"$'\C-X'
while zpty -r shell line; do
  text+=$line
  [[ $line != *ready:* ]] || break
done
zpty -d shell
# The first offer stands behind what the line editor wrote.
print -r -- ${(ou)${(M)${(f)text//$'\r'/}:#*offer:*}#*offer:}
