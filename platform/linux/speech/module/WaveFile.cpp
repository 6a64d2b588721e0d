// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/speech/module/WaveFile.h"

#include <QtEndian>

namespace dorvane {

namespace {

template<typename Integer>
void append(QByteArray& file, Integer value) {
    const Integer little = qToLittleEndian(value);
    file.append(reinterpret_cast<const char*>(&little), sizeof little);
}

} // namespace

QByteArray waveFile(const std::vector<std::int16_t>& samples, std::uint32_t rate) {
    constexpr std::uint16_t integerPcm = 1;
    constexpr std::uint16_t channels = 1;
    constexpr std::uint16_t frameBytes = sizeof(std::int16_t);
    constexpr std::uint32_t headerBytes = 36; // what follows the file's own size
    const auto dataBytes = static_cast<std::uint32_t>(samples.size() * frameBytes);

    QByteArray file;
    file.reserve(static_cast<qsizetype>(dataBytes) + headerBytes + 8);
    file += "RIFF";
    append(file, headerBytes + dataBytes);
    file += "WAVEfmt ";
    append(file, std::uint32_t{16});
    append(file, integerPcm);
    append(file, channels);
    append(file, rate);
    append(file, rate * frameBytes);
    append(file, frameBytes);
    append(file, static_cast<std::uint16_t>(frameBytes * 8));
    file += "data";
    append(file, dataBytes);
    for (const std::int16_t sample : samples)
        append(file, sample);
    return file;
}

} // namespace dorvane
