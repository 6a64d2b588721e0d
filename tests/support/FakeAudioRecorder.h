// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/AudioRecorder.h"
#include "platform/RunLoop.h"
#include "tests/support/Trace.h"

#include <QFile>

namespace dorvane::testing {

// Writes an empty file when a recording is stopped, a moment later. What is asked of it goes to
// the trace as "<ms> record <path>", "<ms> stop" and "<ms> cancel".
class FakeAudioRecorder final : public AudioRecorder {
public:
    FakeAudioRecorder(RunLoop& loop, Trace& trace) : m_loop(loop), m_trace(trace) {}

    [[nodiscard]] bool record(const QString& path, Finished finished) override {
        if (isRecording())
            return false;
        m_trace.add(u"record "_qs + path);
        m_path = path;
        m_finished = std::move(finished);
        return true;
    }
    [[nodiscard]] bool isRecording() const override { return m_finished != nullptr; }
    void stop() override {
        m_trace.add(u"stop"_qs);
        m_loop.defer([this] {
            QFile file(m_path);
            (void)file.open(QIODevice::WriteOnly);
            end({});
        });
    }
    void cancel() override {
        m_trace.add(u"cancel"_qs);
        m_finished = nullptr;
    }
    [[nodiscard]] float takeLevel() override { return 0.5F; }

    // The recording comes to an end by itself.
    void end(const std::optional<AudioError>& error) {
        if (m_finished)
            std::exchange(m_finished, nullptr)(error);
    }

private:
    RunLoop& m_loop;
    Trace& m_trace;
    QString m_path;
    Finished m_finished;
};

} // namespace dorvane::testing
