// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/CommandLine.h"

#include <cstdio>

namespace dorvane {

namespace {

constexpr const char* help = R"(Usage: dorvane [option] [address]

An alarm clock, one-click timers and a break reminder behind a clock icon in the status area.
While it runs, a second start opens its menu.

Options:
  -h, --help     shows this text and ends
  -v, --version  shows the version and ends

An address such as dorvane:create-alarm opens the alarm editor.
)";

} // namespace

std::optional<QString> announcementIn(const QStringList& arguments) {
    if (arguments.size() == 2 && arguments.at(0) == QStringLiteral("--announce"))
        return arguments.at(1);
    return std::nullopt;
}

std::optional<int> answerCommandLine(const QStringList& arguments) {
    if (announcementIn(arguments))
        return std::nullopt;
    for (const QString& argument : arguments) {
        if (argument == QStringLiteral("--version") || argument == QStringLiteral("-v")) {
            std::puts("Dorvane " DORVANE_VERSION);
            return 0;
        }
        if (argument == QStringLiteral("--help") || argument == QStringLiteral("-h")) {
            std::fputs(help, stdout);
            return 0;
        }
        if (argument.startsWith(QLatin1Char('-'))) {
            std::fprintf(stderr, "dorvane: unknown option %s; see --help\n", qPrintable(argument));
            return 2;
        }
    }
    return std::nullopt;
}

} // namespace dorvane
