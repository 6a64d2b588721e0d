// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/CommandLine.h"

#include "app/Commands.h"
#include "app/OwnAddress.h"

#include <QMap>

#include <cstdio>

namespace dorvane {

namespace {

constexpr const char* help = R"(Usage: dorvane [option] [address]
       dorvane command [--help] ...

An alarm clock, one-click timers and a break reminder behind a clock icon in the status area.
While it runs, a second start opens its menu.

Options:
  -h, --help     shows this text and ends
  -v, --version  shows the version and ends

An address such as dorvane:create-alarm opens the alarm editor.
)";

constexpr const char* exitStatuses = R"(
A command ends with the status
  0  when it is done
  1  when it was understood and refused: a moment that has passed; an alarm, a sound or a voice
     that is not there; nothing that rings; no room; or what check found is a failure
  2  when it was not understood: a command, an option, or the value of one
  3  when Dorvane does not run, or does not answer
)";

int showVersion() {
    std::puts("Dorvane " DORVANE_VERSION);
    return 0;
}

int showHelp() {
    std::fputs(help, stdout);
    if (!commands().empty())
        std::fputs("\nCommands:\n", stdout);
    for (const Command& command : commands())
        std::printf("  %-14s %s\n", command.name, command.help);
    if (!commands().empty())
        std::fputs(exitStatuses, stdout);
    return 0;
}

const QMap<QString, int (*)()> options{{QStringLiteral("-h"), showHelp},
                                       {QStringLiteral("--help"), showHelp},
                                       {QStringLiteral("-v"), showVersion},
                                       {QStringLiteral("--version"), showVersion}};

} // namespace

// Units of earlier versions name an announcement after it.
std::optional<AnnounceAt> announcingIn(const QStringList& arguments) {
    if (arguments.isEmpty() || arguments.constFirst() != QStringLiteral("--announce"))
        return std::nullopt;
    return arguments.contains(loginOption) ? AnnounceAt::Login : AnnounceAt::DueTime;
}

std::optional<int> answerCommandLine(const QStringList& arguments, const QStringList& schemes) {
    if (announcingIn(arguments))
        return std::nullopt;
    for (const QString& argument : arguments) {
        if (options.contains(argument) || argument == loginOption || verbOf(argument, schemes))
            continue;
        const char* what = argument.startsWith(u'-') ? "option" : "command";
        std::fprintf(stderr, "dorvane: unknown %s %s; see --help\n", what, qPrintable(argument));
        return 2;
    }
    for (const QString& argument : arguments)
        if (const auto answer = options.value(argument))
            return answer();
    return std::nullopt;
}

} // namespace dorvane
