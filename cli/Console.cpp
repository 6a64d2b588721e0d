// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/Console.h"

#include <QStringList>

#include <cstdio>

namespace dorvane {

namespace {

// Joins letters and the parts of an emoji, or sets a text apart that is read from right to left.
bool isForReading(QChar character) {
    return character == QChar(0x200C) || character == QChar(0x200D) ||
           (character >= QChar(0x2066) && character <= QChar(0x2069));
}

// Titles come from mails and calendars, by way of scripts.
QString harmless(QString line) {
    for (QChar& character : line)
        if (character.isSpace())
            character = u' ';
        else if (character.category() == QChar::Other_Control ||
                 (character.category() == QChar::Other_Format && !isForReading(character)))
            character = QChar::ReplacementCharacter;
    return line;
}

} // namespace

bool writeLine(const QString& line) {
    const QByteArray text = harmless(line).toLocal8Bit() + '\n';
    return std::fwrite(text.constData(), 1, std::size_t(text.size()), stdout) ==
               std::size_t(text.size()) &&
           std::fflush(stdout) == 0;
}

bool isPrinted(const QString& text) {
    return harmless(text) == text;
}

bool writeText(const QString& text) {
    bool isRead = true;
    for (const QString& line : text.split(u'\n'))
        isRead = isRead && writeLine(line);
    return isRead;
}

void writeFault(const QString& line) {
    std::fprintf(stderr, "dorvane: %s\n", harmless(line).toLocal8Bit().constData());
}

} // namespace dorvane
