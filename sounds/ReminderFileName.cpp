// SPDX-License-Identifier: GPL-3.0-or-later
#include "sounds/ReminderFileName.h"

#include <QByteArray>
#include <QCryptographicHash>

#include <optional>

namespace dorvane {

namespace {

// Leaves room for extensions in the 255 bytes that file systems allow.
constexpr qsizetype longestName = 200;
constexpr int hashDigits = 8;

// What stands before the number of a cut name, and for an empty text. Neither occurs otherwise:
// a percent sign of the text's own is written in digits.
const QByteArray cutMark = QByteArrayLiteral("%~");
const QByteArray emptyMark = QByteArrayLiteral("%_");

bool isUnsafe(const QByteArray& text, qsizetype at) {
    const char byte = text.at(at);
    const bool isControl = (byte >= 0 && byte < ' ') || byte == '\x7f';
    const bool isEdge = at == 0 || at == text.size() - 1;
    return isControl || byte == '/' || byte == '%' || (at == 0 && byte == '.') ||
           (isEdge && byte == ' ');
}

QByteArray escaped(const QByteArray& text) {
    QByteArray name;
    for (qsizetype i = 0; i < text.size(); ++i) {
        if (isUnsafe(text, i))
            name += '%' + text.mid(i, 1).toHex().toUpper();
        else
            name += text.at(i);
    }
    return name;
}

// At most so many bytes, without half a character or half an escape at the end.
QByteArray cut(QByteArray name, qsizetype length) {
    const auto isContinuation = [](char byte) { return (byte & 0xC0) == 0x80; };
    while (length > 0 && isContinuation(name.at(length)))
        --length;
    name.truncate(length);
    const qsizetype escape = name.lastIndexOf('%');
    if (escape >= 0 && escape > name.size() - 3)
        name.truncate(escape);
    return name;
}

std::optional<QByteArray> unescaped(const QByteArray& name) {
    QByteArray text;
    for (qsizetype i = 0; i < name.size(); ++i) {
        if (name.at(i) != '%') {
            text += name.at(i);
            continue;
        }
        const QByteArray byte = QByteArray::fromHex(name.mid(i + 1, 2));
        if (byte.size() != 1 || byte.toHex().toUpper() != name.mid(i + 1, 2))
            return {};
        text += byte;
        i += 2;
    }
    return text;
}

} // namespace

QString reminderFileName(const QString& text) {
    const QByteArray utf8 = text.toUtf8();
    QByteArray name = utf8.isEmpty() ? emptyMark : escaped(utf8);
    if (name.size() > longestName) {
        const QByteArray hash = QCryptographicHash::hash(utf8, QCryptographicHash::Sha256).toHex();
        name =
            cut(name, longestName - cutMark.size() - hashDigits) + cutMark + hash.left(hashDigits);
    }
    return QString::fromUtf8(name);
}

QString reminderText(const QString& fileName) {
    QByteArray name = fileName.toUtf8();
    if (name == emptyMark)
        return {};
    const qsizetype mark = name.size() - hashDigits - cutMark.size();
    const bool isCut = mark >= 0 && name.mid(mark, cutMark.size()) == cutMark;
    if (isCut)
        name.truncate(mark);
    const auto text = unescaped(name);
    if (!text)
        return fileName;
    return QString::fromUtf8(*text) + (isCut ? QStringLiteral("…") : QString());
}

} // namespace dorvane
