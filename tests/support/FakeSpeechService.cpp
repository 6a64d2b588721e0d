// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/support/FakeSpeechService.h"

namespace dorvane::testing {

using namespace std::chrono_literals;

void FakeSpeechService::whenVoicesKnown(std::function<void()> callback) {
    if (!m_known.isEmpty()) {
        callback();
        return;
    }
    m_loop.defer([this, callback = std::move(callback)] {
        m_known = voices;
        callback();
    });
}

void FakeSpeechService::prepare(const QString& text, int voice) {
    if (voice >= 1 && voice <= m_known.size())
        m_trace.add(m_known.at(voice - 1) + QStringLiteral(" learns ") + text);
}

void FakeSpeechService::speak(const QString& text, int voice, std::function<void()> done) {
    if (voice < 1 || voice > m_known.size())
        return;
    const QString name = m_known.at(voice - 1);
    m_trace.add(name + QStringLiteral(" says ") + text);
    m_timers.push_back(m_loop.scheduleOnce(1s, [this, name, text, done = std::move(done)] {
        m_trace.add(name + QStringLiteral(" said ") + text);
        done();
    }));
}

} // namespace dorvane::testing
