// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/SpeechService.h"
#include "tests/support/Trace.h"

namespace dorvane::testing {

// Voices that only take time: a second for every text. What is spoken goes to the trace as
// "<ms> Anna says tea" and "<ms> Anna said tea", or "<ms> Anna breaks off tea" when it was ended,
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
    std::unique_ptr<Utterance> speak(const QString& text, int voice, std::function<void()> begun,
                                     std::function<void(bool)> done) override {
        const QString name = m_known.value(voice - 1);
        auto spoken = std::make_unique<Spoken>(m_trace, name + u" breaks off "_qs + text);
        if (name.isEmpty() || text == endless)
            return spoken;
        if (text == unspeakable) {
            m_loop.defer([done = std::move(done)] { done(false); });
            return spoken;
        }
        m_trace.add(name + u" says "_qs + text);
        m_loop.defer(std::move(begun));
        spoken->timer = m_loop.scheduleOnce(
            std::chrono::seconds(1),
            [this, spoken = spoken.get(), said = name + u" said "_qs + text, done] {
                spoken->timer.cancel();
                m_trace.add(said);
                done(true); // may destroy what was spoken
            },
            RunLoopMode::Common);
        return spoken;
    }

    // A text of which the synthesiser makes nothing, and one with which it does not get done.
    QString unspeakable;
    QString endless;

    // What is installed; for the next question about voices.
    QStringList voices = {u"Anna"_qs, u"Tom & Tim"_qs, u"Zoe"_qs};

private:
    struct Spoken final : Utterance {
        Spoken(Trace& trace_, QString brokenOff_)
            : trace(trace_), brokenOff(std::move(brokenOff_)) {}
        ~Spoken() override {
            if (timer)
                trace.add(brokenOff);
        }
        void setVolume(float) override {}

        Trace& trace;
        QString brokenOff;
        RunLoopTimer timer; // while it is spoken
    };

    RunLoop& m_loop;
    Trace& m_trace;
    QStringList m_known;
};

} // namespace dorvane::testing
