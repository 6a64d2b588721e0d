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
        if (name.isEmpty())
            return std::make_unique<Spoken>(*this, QString(), nullptr);
        if (text == unspeakable) {
            m_loop.defer([done = std::move(done)] { done(false); });
            return std::make_unique<Spoken>(*this, QString(), nullptr);
        }
        if (text == endless)
            return std::make_unique<Spoken>(*this, QString(), nullptr);
        m_trace.add(name + u" says "_qs + text);
        m_loop.defer(std::move(begun));
        return std::make_unique<Spoken>(*this, name + u" breaks off "_qs + text,
                                        [this, name, text, done = std::move(done)] {
                                            m_trace.add(name + u" said "_qs + text);
                                            done(true);
                                        });
    }

    // A text of which the synthesiser makes nothing, and one with which it does not get done.
    QString unspeakable;
    QString endless;

    // What is installed; for the next question about voices.
    QStringList voices = {u"Anna"_qs, u"Tom & Tim"_qs, u"Zoe"_qs};

private:
    class Spoken final : public Utterance {
    public:
        Spoken(FakeSpeechService& service, QString brokenOff, std::function<void()> said)
            : m_service(service), m_brokenOff(std::move(brokenOff)) {
            if (said)
                m_timer = service.m_loop.scheduleOnce(
                    std::chrono::seconds(1),
                    [this, said = std::move(said)] {
                        m_isOver = true;
                        const auto done = said; // may destroy this
                        done();
                    },
                    RunLoopMode::Common);
        }
        Spoken(const Spoken&) = delete;
        Spoken& operator=(const Spoken&) = delete;
        ~Spoken() override {
            if (m_timer && !m_isOver)
                m_service.m_trace.add(m_brokenOff);
        }
        void setVolume(float) override {}

    private:
        FakeSpeechService& m_service;
        QString m_brokenOff;
        bool m_isOver = false;
        RunLoopTimer m_timer;
    };

    RunLoop& m_loop;
    Trace& m_trace;
    QStringList m_known;
};

} // namespace dorvane::testing
