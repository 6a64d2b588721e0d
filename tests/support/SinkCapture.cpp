// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/support/SinkCapture.h"

#include "tests/support/Files.h"

#include <QTest>

#include <algorithm>
#include <cmath>
#include <cstring>

namespace dorvane::testing {

SinkCapture::SinkCapture() {
    (void)m_recording.open();
    m_recorder.setStandardOutputFile(m_recording.fileName());
    m_recorder.startCommand(u"parec --raw --latency-msec=5 --format=float32le --rate=48000 "
                            "--channels=1 --device=out.monitor"_qs);
}

SinkCapture::~SinkCapture() {
    m_recorder.kill();
    m_recorder.waitForFinished();
}

bool SinkCapture::isRunning() const {
    return QTest::qWaitFor([this] { return now() > 0; });
}

std::vector<SinkCapture::Burst> SinkCapture::bursts(double from, double gap) const {
    const std::vector<float> heard = samples(from, now());
    std::vector<Burst> found;
    for (std::size_t i = 0; i < heard.size(); ++i) {
        if (std::abs(heard[i]) < 0.005F) // what can be heard
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
    const QByteArray frames = contentsOf(m_recording.fileName());
    const auto index = [&](double moment) {
        const auto frame = static_cast<qsizetype>(std::max(moment, 0.0) * rate);
        return std::min(frame, frames.size() / qsizetype(sizeof(float)));
    };
    const qsizetype first = index(begin);
    std::vector<float> heard(static_cast<std::size_t>(index(std::max(begin, end)) - first));
    if (heard.empty())
        return heard;
    std::memcpy(heard.data(), frames.data() + first * qsizetype(sizeof(float)),
                heard.size() * sizeof(float));
    return heard;
}

} // namespace dorvane::testing
