// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>

#include <cstdint>
#include <vector>

namespace dorvane {

// The contents of a wave file that holds these samples of one channel.
[[nodiscard]] QByteArray waveFile(const std::vector<std::int16_t>& samples, std::uint32_t rate);

} // namespace dorvane
