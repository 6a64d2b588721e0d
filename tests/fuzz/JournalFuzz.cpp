// SPDX-License-Identifier: GPL-3.0-or-later
#include "journal/JournalFormat.h"
#include "platform/linux/preferences/PropertyListCodec.h"
#include "tests/fuzz/FuzzSupport.h"

using namespace dorvane;
using dorvane::testing::require;

// What could be read of a journal is written and read again as it was.
int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const PropertyListCodec propertyLists;
    const JournalFormat format(propertyLists);
    const auto read = format.decode(
        QByteArray(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size)));
    const QByteArray written = format.encode(read.contents);
    const auto again = format.decode(written);
    require(again.isComplete && again.contents.running.size() == read.contents.running.size());
    require(format.encode(again.contents) == written);
    return 0;
}
