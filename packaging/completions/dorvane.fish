# SPDX-License-Identifier: GPL-3.0-or-later
# Completion of dorvane for fish. What may come next the program itself knows: one a line, with its
# help behind a tab. An empty line stands for files.

function __dorvane_complete
    set -l words (commandline -opc)
    for line in ($words[1] --complete $words[2..] (commandline -ct) 2>/dev/null)
        if test -z "$line"
            __fish_complete_path (commandline -ct)
        else
            echo $line
        end
    end
end

complete -c dorvane -f -a '(__dorvane_complete)'
