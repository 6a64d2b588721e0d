// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/AlarmArchive.h"
#include "platform/linux/preferences/PropertyListCodec.h"
#include "tests/fuzz/FuzzSupport.h"

using namespace dorvane;
using dorvane::testing::require;

// Alarms that could be read, however odd, know when they are due and survive being stored again.
int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const PropertyListCodec format;
    const AlarmArchive archive(format);
    const auto read = archive.unarchive(
        QByteArray(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size)));
    for (const AlarmPtr& alarm : read.alarms)
        (void)alarm->time(Instant());
    const QByteArray stored = archive.archivedData(read.alarms);
    const auto again = archive.unarchive(stored);
    require(again.isComplete && again.alarms.size() == read.alarms.size());
    require(archive.archivedData(again.alarms) == stored);
    return 0;
}
