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

// A word after the program's name, and what it does. Commands work without a display.
struct Command {
    QString name;
    QString help; // one line, for the list that --help shows
    // Given the words after the name; called with a QCoreApplication, on its thread.
    std::function<ExitStatus(const QStringList& arguments)> run;
};

// Runs the command that the first of the arguments names, with an application object of its own,
// and gives the exit status; nothing when none of the table is named so.
[[nodiscard]] std::optional<int> runCommand(const std::vector<Command>& table,
                                            const QStringList& arguments);

// How many words may stand after a command beside its options.
struct WordCount {
    qsizetype least = 0;
    qsizetype most = 0;
};

// Reads the words after a command's name into the parser, whose options and positional arguments
// are declared; adds --help. The status to end with when help was asked for or the words are not
// understood, both of which is told then; else nothing.
[[nodiscard]] std::optional<ExitStatus>
readArguments(QCommandLineParser& parser, const QStringList& arguments, WordCount words = {});

} // namespace dorvane
