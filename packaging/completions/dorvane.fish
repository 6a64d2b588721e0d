# SPDX-License-Identifier: GPL-3.0-or-later
# Completion of dorvane for fish.

# The titles of the running alarms, or with --stored of the others; of several that have one title,
# the identities.
function __dorvane_titles
    dorvane list $argv --json 2>/dev/null | grep -oE '"(id|title)":"[^"\\\\]*"' | awk -F '"' '
        $2 == "id" { id = $4 }
        $2 == "title" { count[$4]++; ids[$4] = ids[$4] id "\n" }
        END { for (title in count) if (count[title] == 1 || id == "") print title
                                   else printf "%s", ids[title] }'
end

function __dorvane_sounds
    set -q XDG_DATA_HOME; or set -l XDG_DATA_HOME ~/.local/share
    set -q XDG_CACHE_HOME; or set -l XDG_CACHE_HOME ~/.cache
    for file in $XDG_DATA_HOME/Dorvane/Sounds/* $XDG_CACHE_HOME/Dorvane/Rings/*
        string replace -r '\.[^.]*$' '' (string replace -r '.*/' '' $file)
    end
    echo none
end

function __dorvane_in
    __fish_seen_subcommand_from $argv
end

set -l commands timer add list start snooze clear delete breaks status check missed
complete -c dorvane -f
complete -c dorvane -n "not __dorvane_in $commands" -a timer -d 'Start a timer'
complete -c dorvane -n "not __dorvane_in $commands" -a add -d 'Set an alarm'
complete -c dorvane -n "not __dorvane_in $commands" -a list -d 'List the alarms'
complete -c dorvane -n "not __dorvane_in $commands" -a start -d 'Start a stored alarm'
complete -c dorvane -n "not __dorvane_in $commands" -a snooze -d 'Put an alarm that rings off'
complete -c dorvane -n "not __dorvane_in $commands" -a clear -d 'Answer or end an alarm'
complete -c dorvane -n "not __dorvane_in $commands" -a delete -d 'Delete an alarm'
complete -c dorvane -n "not __dorvane_in $commands" -a breaks -d 'Start, stop or skip breaks'
complete -c dorvane -n "not __dorvane_in $commands" -a status -d 'Tell what is next and what rings'
complete -c dorvane -n "not __dorvane_in $commands" -a check -d 'Tell whether alarms will ring'
complete -c dorvane -n "not __dorvane_in $commands" -a missed -d 'Tell what was missed'
complete -c dorvane -n "not __dorvane_in $commands" -s v -l version -d 'Show the version'
complete -c dorvane -s h -l help -d 'Show the options'

complete -c dorvane -n '__dorvane_in timer' -a '1 2 3 4 5 10 15 20 30 45' -d minutes
complete -c dorvane -n '__dorvane_in add' -l in -x -d 'After so long: 25, 2h, 1h30, 30s'
complete -c dorvane -n '__dorvane_in add' -l repeat -d 'Again each time that much has passed'
complete -c dorvane -n '__dorvane_in add' -l at -x -d 'When the clock shows this time: 07:30'
complete -c dorvane -n '__dorvane_in add' -l date -x -a 'today tomorrow mon tue wed thu fri sat sun' -d 'On this date: 2026-12-24'
complete -c dorvane -n '__dorvane_in add' -l every-day -d 'And every day after'
complete -c dorvane -n '__dorvane_in add' -l on -x -a '(__fish_append , mon tue wed thu fri sat sun weekdays weekend)' -d 'On these days'
complete -c dorvane -n '__dorvane_in add' -l every-week -d 'And every week after'
complete -c dorvane -n '__dorvane_in add' -l sound -r -F -a '(__dorvane_sounds)' -d 'Name or file'
complete -c dorvane -n '__dorvane_in add' -l fade -d 'Play a long sound for 20 seconds'
complete -c dorvane -n '__dorvane_in add' -l store -d 'Keep a copy in the library'
complete -c dorvane -n '__dorvane_in add' -l voice -x -d 'Speak the title first'
complete -c dorvane -n '__dorvane_in add' -l snooze -x -a '1 2 3 5 7 9 10 15 20 30 45 60' -d minutes
complete -c dorvane -n '__dorvane_in list delete' -l stored -d 'The stored alarms'
complete -c dorvane -n '__dorvane_in list status check' -l json -d 'For programs'
complete -c dorvane -n '__dorvane_in check' -l quiet -d 'Without the test sound'
complete -c dorvane -n '__dorvane_in status' -l follow -d 'A line at each change'
complete -c dorvane -n '__dorvane_in snooze' -l for -x -a '1 5 10 15 30 60' -d 'Minutes this once'
complete -c dorvane -n '__dorvane_in snooze clear delete' -l ringing -d 'Every alarm that rings'
complete -c dorvane -n '__dorvane_in snooze clear delete' -a '(__dorvane_titles)'
complete -c dorvane -n '__dorvane_in start delete' -a '(__dorvane_titles --stored)'
complete -c dorvane -n '__dorvane_in breaks' -a 'start stop skip status'
