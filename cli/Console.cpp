// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/Console.h"

#include <cstdio>

namespace dorvane {

bool writeLine(const QString& line) {
    const QByteArray text = line.toLocal8Bit() + '\n';
    return std::fputs(text.constData(), stdout) >= 0 && std::fflush(stdout) == 0;
}

void writeFault(const QString& line) {
    std::fprintf(stderr, "dorvane: %s\n", line.toLocal8Bit().constData());
}

} // namespace dorvane
