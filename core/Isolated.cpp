// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/Isolated.h"

#include <algorithm>

namespace dorvane {

namespace {

constexpr QChar firstStrongIsolate(0x2068);
constexpr QChar popDirectionalIsolate(0x2069);

// Also the halves of letters beyond the first plane, among which such scripts are.
bool mayTurnAround(QChar character) {
    switch (character.direction()) {
    case QChar::DirR:
    case QChar::DirAL:
    case QChar::DirAN:
    case QChar::DirLRE:
    case QChar::DirLRO:
    case QChar::DirRLE:
    case QChar::DirRLO:
    case QChar::DirPDF:
    case QChar::DirLRI:
    case QChar::DirRLI:
    case QChar::DirFSI:
    case QChar::DirPDI:
        return true;
    default:
        return character.isSurrogate();
    }
}

bool beginsOrEndsIsolation(QChar character) {
    return character >= QChar(0x2066) && character <= popDirectionalIsolate;
}

} // namespace

QString isolated(const QString& text) {
    if (std::none_of(text.begin(), text.end(), mayTurnAround))
        return text;
    QString inner = text;
    inner.removeIf(beginsOrEndsIsolation); // one too many would end ours
    return firstStrongIsolate + inner + popDirectionalIsolate;
}

} // namespace dorvane
