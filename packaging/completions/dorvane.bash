# SPDX-License-Identifier: GPL-3.0-or-later
# Completion of dorvane for bash.

# Names have blanks: one a line, each quoted as it has to be typed.
_dorvane_offer() {
  local name
  while read -r name; do
    [[ $name == "$cur"* ]] && COMPREPLY+=("$(printf '%q' "$name")")
  done
}

# Of several alarms that have one title, the identities.
_dorvane_titles() {
  _dorvane_offer < <(dorvane list ${1:+"$1"} --json 2>/dev/null |
    grep -oE '"(id|title)":"[^"\\]*"' | awk -F '"' '
      $2 == "id" { id = $4 }
      $2 == "title" { count[$4]++; ids[$4] = ids[$4] id "\n" }
      END { for (title in count) if (count[title] == 1 || id == "") print title
                                 else printf "%s", ids[title] }')
}

# By the names of their files, or any file.
_dorvane_sounds() {
  local folder
  for folder in "${XDG_DATA_HOME:-$HOME/.local/share}/Dorvane/Sounds" \
    "${XDG_CACHE_HOME:-$HOME/.cache}/Dorvane/Rings"; do
    [[ -d $folder ]] && find "$folder" -maxdepth 1 -type f -name '[^.]*' -printf '%f\n'
  done | sed 's/\.[^.]*$//' | sort -u
  echo none
}

_dorvane() {
  local cur=${COMP_WORDS[COMP_CWORD]} previous=${COMP_WORDS[COMP_CWORD - 1]}
  local words=""
  COMPREPLY=()
  if ((COMP_CWORD == 1)); then
    words="timer add list start snooze clear delete breaks status check missed --help --version"
  else
    case $previous in
      --sound)
        if [[ $cur == */* ]]; then
          compopt -o filenames
          mapfile -t COMPREPLY < <(compgen -f -- "$cur")
        else
          _dorvane_offer < <(_dorvane_sounds)
        fi
        return
        ;;
      --on)
        # Each day after a comma, with those before it.
        local before=""
        [[ $cur == *,* ]] && before=${cur%,*},
        mapfile -t COMPREPLY < <(compgen -P "$before" \
          -W "mon tue wed thu fri sat sun weekdays weekend" -- "${cur##*,}")
        return
        ;;
      --date) words="today tomorrow mon tue wed thu fri sat sun" ;;
      --snooze) words="1 2 3 5 7 9 10 15 20 30 45 60" ;;
      --for) words="1 5 10 15 30 60" ;;
      --in | --at | --voice) return ;;
      *)
        case ${COMP_WORDS[1]} in
          timer) ((COMP_CWORD > 2)) || words="1 2 3 4 5 10 15 20 30 45" ;;
          add) words="--in --repeat --at --date --every-day --on --every-week --sound --fade
            --voice --snooze --store" ;;
          list) words="--stored --json" ;;
          start) _dorvane_titles --stored ;;
          snooze | clear)
            words="--ringing"
            [[ ${COMP_WORDS[1]} == snooze ]] && words+=" --for"
            _dorvane_titles
            ;;
          delete)
            words="--ringing --stored"
            _dorvane_titles
            _dorvane_titles --stored
            ;;
          breaks) words="start stop skip status" ;;
          status) words="--json --follow" ;;
          check) words="--json --quiet" ;;
        esac
        words+=" --help"
        ;;
    esac
  fi
  mapfile -t -O "${#COMPREPLY[@]}" COMPREPLY < <(compgen -W "$words" -- "$cur")
}
complete -F _dorvane dorvane
