// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/preferences/PropertyListCodec.h"
#include "tests/fuzz/FuzzSupport.h"

using namespace dorvane;
using dorvane::testing::require;

// Whatever can be read can be written and read again: preferences that hold it are not stuck.
int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const PropertyListCodec format;
    const auto parsed = format.parse(QByteArrayView(data, static_cast<qsizetype>(size)));
    if (!parsed)
        return 0;
    const auto written = format.binary(*parsed);
    require(written.has_value());
    require(format.parse(*written).has_value());
    return 0;
}
