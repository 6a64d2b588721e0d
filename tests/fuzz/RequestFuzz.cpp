// SPDX-License-Identifier: GPL-3.0-or-later
#include "control/AlarmRequest.h"
#include "core/AlarmBuilding.h"
#include "tests/fuzz/FuzzSupport.h"

#include <bit>
#include <fuzzer/FuzzedDataProvider.h>

using namespace dorvane;
using dorvane::testing::require;

namespace {

const char* const names[]{"title", "minutes",   "hours",    "repeat",     "time",
                          "date",  "every-day", "weekdays", "every-week", "sound",
                          "fade",  "voice",     "snooze",   "other"};

QString text(FuzzedDataProvider& bytes) {
    return QString::fromStdString(bytes.ConsumeRandomLengthString(255));
}

QVariant valueOf(FuzzedDataProvider& bytes) {
    switch (bytes.ConsumeIntegralInRange(0, 9)) {
    case 0:
        return QVariant::fromValue(bytes.ConsumeIntegral<quint8>());
    case 1:
        return QVariant::fromValue(bytes.ConsumeIntegral<qint16>());
    case 2:
        return bytes.ConsumeIntegral<quint32>();
    case 3:
        return bytes.ConsumeIntegral<qint64>();
    case 4:
        return bytes.ConsumeIntegral<quint64>();
    case 5: // what is no number, too
        return std::bit_cast<double>(bytes.ConsumeIntegral<quint64>());
    case 6:
        return bytes.ConsumeBool();
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
    FuzzedDataProvider bytes(data, size);
    QVariantMap description;
    while (bytes.remaining_bytes() > 0) {
        const char* const name = bytes.PickValueInArray(names);
        description.insert(QLatin1String(name), valueOf(bytes));
    }
    const QDateTime now({2026, 11, 24}, {10, 0, 0, 250});
    const auto request = readRequest(description, now);
    if (const auto* const refusal = std::get_if<Refusal>(&request)) {
        require(!refusal->name.isEmpty() && !refusal->reason.isEmpty());
        return 0;
    }
    const AlarmForm& form = std::get<AlarmRequest>(request).form;
    require(faultsOf(form).message.isEmpty());
    const AlarmPtr alarm = alarmBuiltFrom(form, now, weekdayName(now.date()));
    const auto due = alarm->due(instantOf(now));
    require(due && *due >= instantOf(now) - std::chrono::seconds(1));
    return 0;
}
