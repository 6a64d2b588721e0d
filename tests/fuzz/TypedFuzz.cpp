// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/IntervalRule.h"
#include "core/WrittenDate.h"
#include "core/WrittenInterval.h"
#include "core/WrittenTime.h"
#include "core/WrittenWeekdays.h"
#include "editor/TypedText.h"
#include "tests/fuzz/FuzzSupport.h"

#include <fuzzer/FuzzedDataProvider.h>

using namespace dorvane;
using dorvane::testing::require;

namespace {

void typeInterval(const QString& text) {
    require(!isValidInterval(text) || (canBecomeInterval(text) && intervalValue(text) > 0));
    require(intervalValue(text) >= 0);
    if (const auto interval = intervalRead(text))
        require(interval->length.count() > 0 && interval->length <= std::chrono::hours(365 * 24));
}

// What is typed key by key always leaves a field whose parts lie inside it.
QString keyedIn(const QString& shown, const QString& text, const auto& type) {
    TypedText field{shown, partAt(shown, 0)};
    for (const QChar character : text) {
        field = type(field, character);
        for (const TextPart& part : {field.selection, partAt(field.text, field.selection.start)})
            require(part.start >= 0 && part.length >= 0 &&
                    part.start + part.length <= field.text.size());
    }
    return field.text;
}

// A time that was read is shown, and read again as the same.
void typeTime(const QString& text, QTime before, bool isTwelveHours) {
    for (const QString& typed : {text, keyedIn(timeShown(before, isTwelveHours), text, timeTyped)})
        if (const auto time = timeRead(typed, before, isTwelveHours).time)
            require(time->isValid() &&
                    timeRead(timeShown(*time, isTwelveHours), before, isTwelveHours).time == time);
}

// And so is a date.
void typeDate(const QString& text, const QLocale& territory, QTime time) {
    const QDateTime now({2026, 11, 24}, {10, 0});
    const QString order = dateOrder(territory);
    const auto type = [&order](const TypedText& field, QChar character) {
        return dateTyped(field, character, order);
    };
    if (const auto days = weekdaysRead(text, territory))
        require(!days->isEmpty());
    for (const QString& typed : {text, keyedIn(dateShown(now.date(), territory), text, type)})
        if (const auto date = dateRead(typed, territory, now, time).date)
            require(date->isValid() &&
                    dateRead(dateShown(*date, territory), territory, now, time).date == date);
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    FuzzedDataProvider bytes(data, size);
    const bool isTwelveHours = bytes.ConsumeBool();
    const char* const territory =
        bytes.PickValueInArray({"en_US", "en_GB", "de_DE", "ja_JP", "hu_HU", "C"});
    const QTime before =
        QTime(0, 0).addSecs(60 * bytes.ConsumeIntegralInRange<int>(0, 24 * 60 - 1));
    const QString text = QString::fromStdString(bytes.ConsumeRemainingBytesAsString()).left(200);
    typeInterval(text);
    typeTime(text, before, isTwelveHours);
    typeDate(text, QLocale(QLatin1String(territory)), before);
    return 0;
}
