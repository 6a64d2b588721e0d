// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/support/FakeSoundPlayer.h"

#include <algorithm>
#include <utility>

namespace dorvane::testing {

std::unique_ptr<Sound> FakeSoundPlayer::soundWithContentsOfFile(const QString& path) {
    return std::make_unique<FakeSound>(*this, path, m_files.value(path));
}

void FakeSoundPlayer::finish(const QString& path) {
    for (FakeSound* sound : std::vector(m_sounds)) {
        if (sound->isPlaying() && sound->path() == path)
            sound->end(true);
    }
}

void FakeSoundPlayer::fail() {
    for (FakeSound* sound : std::vector(m_sounds)) {
        if (sound->isPlaying())
            sound->end(false);
    }
}

FakeSound::FakeSound(FakeSoundPlayer& player, QString path, FakeSoundPlayer::File file)
    : m_player(player), m_path(std::move(path)), m_file(file), m_startDelay(file.startDelay) {
    m_player.m_sounds.push_back(this);
    m_loading = m_player.m_loop.scheduleOnce(
        m_file.loadDelay, [this] { loaded(); }, RunLoopMode::Common);
}

FakeSound::~FakeSound() {
    if (m_isPlaying)
        record(QStringLiteral("dropped"));
    std::erase(m_player.m_sounds, this);
}

bool FakeSound::play() {
    const bool isUnplayable = m_isLoaded && !m_file.isPlayable;
    if (m_isPlaying || isUnplayable || !m_player.hasServer) {
        record(QStringLiteral("refused"));
        return false;
    }
    record(QStringLiteral("play"));
    m_isPlaying = true;
    if (m_isLoaded)
        run();
    return true;
}

void FakeSound::stop() {
    hold();
    m_position = Seconds(0);
    if (!m_isPlaying)
        return;
    record(QStringLiteral("stop"));
    m_isPlaying = false;
    m_isPaused = false;
    report(false);
}

void FakeSound::pause() {
    if (!m_isPlaying || m_isPaused)
        return;
    record(QStringLiteral("pause"));
    hold();
    m_isPaused = true;
}

void FakeSound::resume() {
    if (!m_isPaused)
        return;
    record(QStringLiteral("resume"));
    m_isPaused = false;
    if (m_isLoaded)
        run();
}

Sound::Seconds FakeSound::duration() const {
    return m_isLoaded && m_file.isPlayable ? m_file.duration : Seconds(0);
}

Sound::Seconds FakeSound::currentTime() const {
    // Before the play is heard, too.
    return m_running ? std::max(Seconds(m_position + (m_player.m_loop.uptime() - m_runningSince)),
                                m_position)
                     : m_position;
}

void FakeSound::setCurrentTime(Seconds position) {
    record(QStringLiteral("seek %1").arg(position.count(), 0, 'f', 3));
    const bool wasRunning = static_cast<bool>(m_running);
    hold();
    m_position = position;
    if (wasRunning)
        run();
}

void FakeSound::setVolume(float volume) {
    record(QStringLiteral("volume %1").arg(static_cast<double>(volume), 0, 'f', 2));
    m_volume = volume;
}

void FakeSound::whenLoaded(std::function<void()> callback) {
    if (m_isLoaded)
        callback();
    else
        m_whenLoaded.push_back(std::move(callback));
}

void FakeSound::setFinished(std::function<void(bool)> callback) {
    m_finished = std::move(callback);
}

void FakeSound::end(bool completed) {
    hold();
    m_position = Seconds(0);
    m_isPlaying = false;
    m_isPaused = false;
    record(completed ? QStringLiteral("finished") : QStringLiteral("failed"));
    report(completed);
}

void FakeSound::loaded() {
    m_isLoaded = true;
    if (m_isPlaying && !m_file.isPlayable)
        end(false);
    else if (m_isPlaying && !m_isPaused)
        run();
    const auto callbacks = std::move(m_whenLoaded);
    for (const auto& callback : callbacks)
        callback(); // may destroy this sound: nothing of it is used afterwards
}

void FakeSound::run() {
    using std::chrono::ceil;
    const RunLoop::Milliseconds delay = std::exchange(m_startDelay, {});
    m_runningSince = m_player.m_loop.uptime() + delay;
    const auto left = ceil<RunLoop::Milliseconds>(m_file.duration - m_position);
    m_running = m_player.m_loop.scheduleOnce(
        delay + left, [this] { end(true); }, RunLoopMode::Common);
}

void FakeSound::hold() {
    m_position = currentTime();
    m_running.cancel();
}

void FakeSound::record(const QString& event) {
    m_player.m_trace.add(m_path + QLatin1Char(' ') + event);
}

void FakeSound::report(bool completed) {
    m_player.m_loop.defer(m_lifeline.guard([completed](FakeSound& self) {
        const auto finished = self.m_finished; // may destroy the sound, or set another
        if (finished)
            finished(completed);
    }));
}

} // namespace dorvane::testing
