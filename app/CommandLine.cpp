// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/CommandLine.h"

#include <cstdio>

namespace dorvane {

namespace {

constexpr const char* help = R"(Usage: dorvane [option]

An alarm clock and one-click timers behind a clock icon in the status area.
While it runs, a second start opens its menu.

Options:
  --help     shows this text and ends
  --version  shows the version and ends
)";

} // namespace

std::optional<int> answerCommandLine(const QStringList& arguments) {
    for (const QString& argument : arguments) {
        if (argument == QStringLiteral("--version")) {
            std::puts("Dorvane " DORVANE_VERSION);
            return 0;
        }
        if (argument == QStringLiteral("--help")) {
            std::fputs(help, stdout);
            return 0;
        }
        if (argument.startsWith(QLatin1String("--"))) {
            std::fprintf(stderr, "dorvane: unknown option %s; see --help\n", qPrintable(argument));
            return 2;
        }
    }
    return std::nullopt;
}

} // namespace dorvane
