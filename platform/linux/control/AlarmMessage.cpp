// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/control/AlarmMessage.h"

#include <cstring>
#include <optional>

namespace dorvane {

namespace {

constexpr int mostKeys = 32;
constexpr std::size_t longestText = 1 << 14; // bytes; as much as a path may be long
constexpr int mostTexts = 32;

Refusal tooLong() {
    return {QStringLiteral("TooLong"), QStringLiteral("no text of an alarm is that long")};
}

Refusal unreadable() {
    return {QStringLiteral("WrongType"), QStringLiteral("this cannot be read")};
}

// Reads a number of the type of D-Bus that the letter names.
template<typename Number>
QVariant readNumber(sd_bus_message* message, char type) {
    Number number{};
    if (sd_bus_message_read_basic(message, type, &number) <= 0)
        return {};
    return QVariant::fromValue(number);
}

QVariant readFlag(sd_bus_message* message) {
    int flag = 0;
    return sd_bus_message_read_basic(message, 'b', &flag) > 0 ? QVariant(flag != 0) : QVariant();
}

std::variant<QVariant, Refusal> readTexts(sd_bus_message* message) {
    QStringList texts;
    sd_bus_message_enter_container(message, 'a', "s");
    while (sd_bus_message_at_end(message, 0) == 0) {
        const auto text = readText(message);
        if (const auto* const refusal = std::get_if<Refusal>(&text))
            return *refusal;
        if (texts.size() == mostTexts)
            return tooLong();
        texts << std::get<QString>(text);
    }
    sd_bus_message_exit_container(message);
    return QVariant(texts);
}

// What stands in the variant that the message is at.
std::variant<QVariant, Refusal> readInside(sd_bus_message* message, const char* contents) {
    if (std::strcmp(contents, "as") == 0)
        return readTexts(message);
    if (std::strlen(contents) == 1)
        switch (*contents) {
        case 's': {
            const auto text = readText(message);
            if (const auto* const refusal = std::get_if<Refusal>(&text))
                return *refusal;
            return QVariant(std::get<QString>(text));
        }
        case 'b':
            return readFlag(message);
        case 'y':
            return readNumber<quint8>(message, 'y');
        case 'n':
            return readNumber<qint16>(message, 'n');
        case 'q':
            return readNumber<quint16>(message, 'q');
        case 'i':
            return readNumber<qint32>(message, 'i');
        case 'u':
            return readNumber<quint32>(message, 'u');
        case 'x':
            return readNumber<qint64>(message, 'x');
        case 't':
            return readNumber<quint64>(message, 't');
        default:
            break;
        }
    if (sd_bus_message_skip(message, contents) < 0)
        return unreadable();
    return QVariant();
}

// Nothing when the entry was read.
std::optional<Refusal> readEntry(sd_bus_message* call, QVariantMap& description) {
    const auto name = readText(call);
    if (const auto* const refusal = std::get_if<Refusal>(&name))
        return *refusal;
    const char* contents = nullptr;
    if (sd_bus_message_peek_type(call, nullptr, &contents) <= 0 ||
        sd_bus_message_enter_container(call, 'v', contents) <= 0)
        return unreadable();
    const auto value = readInside(call, contents);
    if (const auto* const refusal = std::get_if<Refusal>(&value))
        return *refusal;
    description.insert(std::get<QString>(name), std::get<QVariant>(value));
    if (sd_bus_message_exit_container(call) < 0)
        return unreadable();
    return std::nullopt;
}

void writeValue(BusWriter& message, const QVariant& value) {
    switch (value.typeId()) {
    case QMetaType::Bool:
        message.container('v', "b", [&] { message.flag(value.toBool() ? 1 : 0); });
        break;
    case QMetaType::QStringList:
        message.container('v', "as", [&] {
            message.container('a', "s", [&] {
                for (const QString& text : value.toStringList())
                    message.text(text);
            });
        });
        break;
    case QMetaType::QString:
        message.container('v', "s", [&] { message.text(value.toString()); });
        break;
    default:
        message.container('v', "x", [&] { message.moment(value.toLongLong()); });
    }
}

} // namespace

std::variant<QString, Refusal> readText(sd_bus_message* call) {
    const char* utf8 = nullptr;
    if (sd_bus_message_read_basic(call, 's', &utf8) <= 0)
        return unreadable();
    const std::size_t size = std::strlen(utf8);
    if (size > longestText)
        return tooLong();
    return QString::fromUtf8(utf8, qsizetype(size));
}

std::variant<quint32, Refusal> readCount(sd_bus_message* call) {
    quint32 count = 0;
    if (sd_bus_message_read_basic(call, 'u', &count) <= 0)
        return unreadable();
    return count;
}

std::variant<qint64, Refusal> readMoment(sd_bus_message* call) {
    qint64 moment = 0;
    if (sd_bus_message_read_basic(call, 'x', &moment) <= 0)
        return unreadable();
    return moment;
}

std::variant<QVariantMap, Refusal> readDescription(sd_bus_message* call) {
    QVariantMap description;
    if (sd_bus_message_enter_container(call, 'a', "{sv}") < 0)
        return unreadable();
    for (int keys = 0; sd_bus_message_enter_container(call, 'e', "sv") > 0; ++keys) {
        if (keys == mostKeys)
            return Refusal{QStringLiteral("UnknownKey"), QStringLiteral("no alarm has that many")};
        if (const auto refusal = readEntry(call, description))
            return *refusal;
        if (sd_bus_message_exit_container(call) < 0)
            return unreadable();
    }
    return description;
}

void writeReport(BusWriter& message, const QVariantMap& report) {
    message.container('a', "{sv}", [&] {
        for (auto entry = report.begin(); entry != report.end(); ++entry)
            message.container('e', "sv", [&] {
                message.text(entry.key());
                writeValue(message, entry.value());
            });
    });
}

} // namespace dorvane
