// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <QStringList>

#include <functional>
#include <optional>
#include <vector>

class QCommandLineParser;

namespace dorvane {

// What a command ends with; documented in the manual page.
enum class ExitStatus : int {
    Done = 0,
    Refused = 1,     // asked for rightly, and not done; the reason is on the standard error
    Usage = 2,       // not understood
    Unreachable = 3, // the program does not run, or does not answer
};

// What a shell offers for a word of which so much is typed; it leaves out itself what does not
// begin so. An empty text stands for the names of files.
using Offer = std::function<QStringList(const QString& typed)>;
[[nodiscard]] Offer oneOf(const char* wordsWithBlanksBetween);

// A word that stands after a command beside its options.
struct CommandWord {
    const char* name;
    const char* help;
    bool isNeeded = true;
    Offer offer = {};
};

struct CommandOption {
    const char* name; // without its dashes
    const char* help;
    const char* value = ""; // what its value is called; empty when it takes none
    Offer offer = {};
};

// A word after the program's name, and all that is known of it: help, completion, the page of the
// terminal in the manual, and the synopsis and the list of commands of the man page come from here
// (cli/CommandPages). Commands work without a display.
struct Command {
    const char* name;
    const char* example; // what follows the name, for somebody who sees it for the first time
    const char* help;    // one line, for lists of commands
    const char* description;
    std::vector<CommandWord> words = {};
    std::vector<CommandOption> options = {};
    // Given the words and options, which have been read and counted; called with a
    // QCoreApplication, on its thread.
    std::function<ExitStatus(const QCommandLineParser& parser)> run = {};
};

// Reads what follows the command's name and runs it; or tells what is wrong with it, or its help.
[[nodiscard]] ExitStatus runCommand(const Command& command, const QStringList& arguments);

// Runs the command that the first of the arguments names, with an application object of its own,
// and gives the exit status; nothing when none of the table is named so. After --complete it writes
// what may stand in the place of the last argument, a line each, with its help behind a tab.
[[nodiscard]] std::optional<int> runCommand(const std::vector<Command>& table,
                                            const QStringList& arguments);

// The lines of --complete; `words` are those after the program's name, the last of them unfinished.
[[nodiscard]] QStringList completions(const std::vector<Command>& table, const QStringList& words);

} // namespace dorvane
