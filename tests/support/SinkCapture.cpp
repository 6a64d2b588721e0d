// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/support/SinkCapture.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <pulse/simple.h>

namespace dorvane::testing {

namespace {

constexpr std::size_t blockFrames = 240; // 5 ms
constexpr float audible = 0.005F;

pa_simple* connect() {
    const pa_sample_spec spec{PA_SAMPLE_FLOAT32NE, static_cast<std::uint32_t>(SinkCapture::rate),
                              2};
    constexpr auto any = std::numeric_limits<std::uint32_t>::max();
    const pa_buffer_attr buffer{any, any, any, any, blockFrames * 2 * sizeof(float)};
    return pa_simple_new(nullptr, "capture", PA_STREAM_RECORD, "out.monitor", "capture", &spec,
                         nullptr, &buffer, nullptr);
}

} // namespace

SinkCapture::SinkCapture() : m_server(connect()) {
    if (m_server)
        m_thread = std::thread([this] { record(); });
}

SinkCapture::~SinkCapture() {
    m_ended = true;
    if (m_thread.joinable())
        m_thread.join();
    if (m_server)
        pa_simple_free(m_server);
}

void SinkCapture::record() {
    std::array<float, blockFrames * 2> block{};
    while (!m_ended && pa_simple_read(m_server, block.data(), sizeof block, nullptr) >= 0) {
        const std::lock_guard lock(m_lock);
        for (std::size_t i = 0; i < blockFrames; ++i)
            m_samples.push_back((block[2 * i] + block[2 * i + 1]) / 2);
    }
}

double SinkCapture::now() const {
    const std::lock_guard lock(m_lock);
    return static_cast<double>(m_samples.size()) / rate;
}

std::vector<SinkCapture::Burst> SinkCapture::bursts(double from, double gap) const {
    const std::vector<float> heard = samples(from, now());
    std::vector<Burst> found;
    for (std::size_t i = 0; i < heard.size(); ++i) {
        if (std::abs(heard[i]) < audible)
            continue;
        const double moment = from + static_cast<double>(i) / rate;
        if (found.empty() || moment - found.back().end > gap)
            found.push_back({moment, moment});
        found.back().end = moment;
    }
    return found;
}

double SinkCapture::level(double begin, double end) const {
    const std::vector<float> heard = samples(begin, end);
    double energy = 0;
    for (const float sample : heard)
        energy += static_cast<double>(sample) * static_cast<double>(sample);
    return std::sqrt(2 * energy / static_cast<double>(std::max<std::size_t>(heard.size(), 1)));
}

double SinkCapture::largestStep(double begin, double end) const {
    const std::vector<float> heard = samples(begin, end);
    double largest = 0;
    for (std::size_t i = 1; i < heard.size(); ++i)
        largest = std::max(largest, static_cast<double>(std::abs(heard[i] - heard[i - 1])));
    return largest;
}

std::vector<float> SinkCapture::samples(double begin, double end) const {
    const std::lock_guard lock(m_lock);
    const auto index = [&](double moment) {
        const auto frame = static_cast<std::ptrdiff_t>(std::max(moment, 0.0) * rate);
        return m_samples.begin() + std::min(frame, static_cast<std::ptrdiff_t>(m_samples.size()));
    };
    return {index(begin), index(std::max(begin, end))};
}

} // namespace dorvane::testing
