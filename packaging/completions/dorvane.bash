# SPDX-License-Identifier: GPL-3.0-or-later
# Completion of dorvane for bash. What may come next the program itself knows.

_dorvane() {
  local cur=${COMP_WORDS[COMP_CWORD]} line quote=""
  [[ $cur == [\"\']* ]] && quote=1 cur=${cur:1}
  cur=${cur//\\/}
  COMPREPLY=()
  # One a line, with its help behind a tab; names have blanks, and are quoted as they have to be
  # typed. An empty line stands for files.
  while IFS= read -r line; do
    line=${line%%$'\t'*}
    if [[ -z $line ]]; then
      compopt -o filenames
      mapfile -t -O "${#COMPREPLY[@]}" COMPREPLY < <(compgen -f -- "$cur")
    elif [[ $line == "$cur"* ]]; then
      [[ $quote || $line != *[^[:alnum:]_,./:@%+-]* ]] || printf -v line %q "$line"
      COMPREPLY+=("$line")
    fi
  done < <("${COMP_WORDS[0]}" --complete "${COMP_WORDS[@]:1:COMP_CWORD-1}" "$cur" 2>/dev/null)
}
complete -F _dorvane dorvane
