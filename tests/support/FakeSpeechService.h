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
    void whenVoicesKnown(std::function<void()> callback) override;
    void prepare(const QString& text, int voice) override;
    void speak(const QString& text, int voice, std::function<void()> done) override;

    // What is installed; for the next question about voices.
    QStringList voices = {QStringLiteral("Anna"), QStringLiteral("Tom & Tim"),
                          QStringLiteral("Zoe")};

private:
    RunLoop& m_loop;
    Trace& m_trace;
    QStringList m_known;
    std::vector<RunLoopTimer> m_timers;
};

} // namespace dorvane::testing
