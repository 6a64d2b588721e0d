// SPDX-License-Identifier: GPL-3.0-or-later
#include "control/AlarmRequest.h"
#include "core/AlarmBuilding.h"
#include "tests/fuzz/FuzzSupport.h"

#include <QDataStream>
#include <QIODevice>

using namespace dorvane;
using dorvane::testing::require;

namespace {

const char* const names[]{"title", "minutes",   "hours",    "repeat",     "time",
                          "date",  "every-day", "weekdays", "every-week", "sound",
                          "fade",  "voice",     "snooze",   "other"};

QString text(QDataStream& bytes) {
    quint8 size = 0;
    bytes >> size;
    QByteArray data(size, '\0');
    const auto read = bytes.readRawData(data.data(), size);
    return QString::fromUtf8(data.left(std::max<qsizetype>(read, 0)));
}

template<typename T>
QVariant number(QDataStream& bytes) {
    T value{};
    bytes >> value;
    return QVariant::fromValue(value);
}

QVariant valueOf(QDataStream& bytes) {
    quint8 type = 0;
    bytes >> type;
    switch (type % 10) {
    case 0:
        return number<quint8>(bytes);
    case 1:
        return number<qint16>(bytes);
    case 2:
        return number<quint32>(bytes);
    case 3:
        return number<qint64>(bytes);
    case 4:
        return number<quint64>(bytes);
    case 5:
        return number<double>(bytes);
    case 6:
        return type > 127;
    case 7:
        return QStringList{text(bytes), text(bytes)};
    case 8:
        return QVariantList{text(bytes)};
    default:
        return text(bytes);
    }
}

} // namespace

// Whatever is said of an alarm is refused by name, or makes one that the editor would take too and
// that is still to come.
int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    QDataStream bytes(QByteArray(reinterpret_cast<const char*>(data), qsizetype(size)));
    QVariantMap description;
    while (!bytes.atEnd()) {
        quint8 name = 0;
        bytes >> name;
        description.insert(QString::fromLatin1(names[name % std::size(names)]), valueOf(bytes));
    }
    const QDateTime now({2026, 11, 24}, {10, 0, 0, 250});
    const auto request = readRequest(description, now);
    if (const auto* const refusal = std::get_if<Refusal>(&request)) {
        require(!refusal->name.isEmpty() && !refusal->reason.isEmpty());
        return 0;
    }
    const AlarmForm& form = std::get<AlarmRequest>(request).form;
    require(faultsOf(form).message.isEmpty());
    const AlarmPtr alarm = alarmBuiltFrom(form, now, weekdayName(now.date()), nullptr);
    const auto due = alarm->due(instantOf(now));
    require(due && *due >= instantOf(now) - std::chrono::seconds(1));
    return 0;
}
