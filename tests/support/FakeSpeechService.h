// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/SpeechService.h"
#include "tests/support/Trace.h"

namespace dorvane::testing {

// Voices that only take time: a second for every text. What is spoken goes to the trace as
// "<ms> Anna says tea" and "<ms> Anna said tea",
// what is made ready as "<ms> Anna learns tea". Like the real service it lists its voices only
// after somebody has asked, a moment later.
class FakeSpeechService final : public SpeechService {
public:
    FakeSpeechService(RunLoop& loop, Trace& trace) : m_loop(loop), m_trace(trace) {}

    [[nodiscard]] QStringList voiceNames() const override { return m_known; }
    void whenVoicesKnown(std::function<void()> callback) override {
        if (!m_known.isEmpty()) {
            callback();
            return;
        }
        m_loop.defer([this, callback = std::move(callback)] {
            m_known = voices;
            callback();
        });
    }
    void prepare(const QString& text, int voice) override {
        if (const QString name = m_known.value(voice - 1); !name.isEmpty())
            m_trace.add(name + u" learns "_qs + text);
    }
    void speak(const QString& text, int voice, std::function<void()> done) override {
        const QString name = m_known.value(voice - 1);
        if (name.isEmpty())
            return;
        m_trace.add(name + u" says "_qs + text);
        const auto said = [this, name, text, done = std::move(done)] {
            m_trace.add(name + u" said "_qs + text);
            done();
        };
        m_timers.push_back(m_loop.scheduleOnce(std::chrono::seconds(1), said));
    }

    // What is installed; for the next question about voices.
    QStringList voices = {u"Anna"_qs, u"Tom & Tim"_qs, u"Zoe"_qs};

private:
    RunLoop& m_loop;
    Trace& m_trace;
    QStringList m_known;
    std::vector<RunLoopTimer> m_timers;
};

} // namespace dorvane::testing
