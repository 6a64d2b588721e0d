# SPDX-License-Identifier: GPL-3.0-or-later
# Completion of dorvane for bash.

# Titles have blanks: one a line, each quoted as it has to be typed.
_dorvane_titles() {
  local titles title
  mapfile -t titles < <(dorvane list ${1:+"$1"} --json 2>/dev/null |
    grep -o '"title":"[^"\\]*"' | cut -d '"' -f 4)
  for title in "${titles[@]}"; do
    [[ $title == "$cur"* ]] && COMPREPLY+=("$(printf '%q' "$title")")
  done
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
        compopt -o filenames
        mapfile -t COMPREPLY < <(compgen -f -- "$cur")
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
