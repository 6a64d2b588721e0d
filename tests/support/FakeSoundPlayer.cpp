// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/support/FakeSoundPlayer.h"

#include "platform/Lifeline.h"

#include <algorithm>
#include <utility>

namespace dorvane::testing {

class FakeSound final : public Sound {
public:
    FakeSound(FakeSoundPlayer& player, QString path, FakeSoundPlayer::File file)
        : m_player(player), m_path(std::move(path)), m_file(file), m_startDelay(file.startDelay) {
        m_player.m_sounds.push_back(this);
        m_loading = m_player.m_loop.scheduleOnce(
            m_file.loadDelay, [this] { loaded(); }, RunLoopMode::Common);
    }
    ~FakeSound() override {
        if (m_isPlaying)
            record(u"dropped"_qs);
        std::erase(m_player.m_sounds, this);
    }

    bool play() override {
        const bool isUnplayable = m_isLoaded && !m_file.isPlayable;
        if (m_isPlaying || isUnplayable || !m_player.hasServer) {
            record(u"refused"_qs);
            return false;
        }
        record(u"play"_qs);
        m_isPlaying = true;
        if (m_isLoaded)
            run();
        return true;
    }
    void stop() override {
        if (m_isPlaying)
            end(u"stop"_qs, false);
        m_position = Seconds(0);
    }
    [[nodiscard]] bool isPlaying() const override { return m_isPlaying; }
    void pause() override {
        if (!m_isPlaying || m_isPaused)
            return;
        record(u"pause"_qs);
        hold();
        m_isPaused = true;
    }
    void resume() override {
        if (!m_isPaused)
            return;
        record(u"resume"_qs);
        m_isPaused = false;
        if (m_isLoaded)
            run();
    }
    [[nodiscard]] Seconds duration() const override {
        return m_isLoaded && m_file.isPlayable ? m_file.duration : Seconds(0);
    }
    [[nodiscard]] bool isSilent() const override { return m_isLoaded && m_file.isSilent; }
    [[nodiscard]] SoundFault fault() const override {
        return m_isLoaded && !m_file.isPlayable ? SoundFault::Gone : SoundFault::None;
    }
    [[nodiscard]] Seconds currentTime() const override {
        const Seconds heard = m_player.m_loop.uptime() - m_runningSince;
        return m_running ? m_position + std::max(heard, Seconds(0)) : m_position;
    }
    void setCurrentTime(Seconds position) override {
        record(u"seek %1"_qs.arg(position.count(), 0, 'f', 3));
        const bool wasRunning = static_cast<bool>(m_running);
        hold();
        m_position = position;
        if (wasRunning)
            run();
    }
    [[nodiscard]] float volume() const override { return m_volume; }
    void setVolume(float volume) override {
        record(u"volume %1"_qs.arg(static_cast<double>(volume), 0, 'f', 2));
        m_volume = volume;
    }
    void whenLoaded(std::function<void()> callback) override {
        if (m_isLoaded)
            callback();
        else
            m_whenLoaded.push_back(std::move(callback));
    }
    void setFinished(std::function<void(bool)> callback) override {
        m_finished = std::move(callback);
    }

    void end(const QString& event, bool completed) {
        hold();
        m_position = Seconds(0);
        m_isPlaying = false;
        m_isPaused = false;
        record(event);
        m_player.m_loop.defer(m_lifeline.guard([completed](FakeSound& self) {
            const auto finished = self.m_finished; // may destroy the sound, or set another
            if (finished)
                finished(completed);
        }));
    }

private:
    void loaded() {
        m_isLoaded = true;
        if (m_isPlaying && !m_file.isPlayable)
            end(u"failed"_qs, false);
        else if (m_isPlaying && !m_isPaused)
            run();
        const auto callbacks = std::move(m_whenLoaded);
        for (const auto& callback : callbacks)
            callback(); // may destroy this sound: nothing of it is used afterwards
    }
    void run() {
        const RunLoop::Milliseconds delay = m_startDelay;
        if (!m_file.isDelayedEachTime)
            m_startDelay = {};
        m_runningSince = m_player.m_loop.uptime() + delay;
        const auto left = std::chrono::ceil<RunLoop::Milliseconds>(m_file.duration - m_position);
        m_running = m_player.m_loop.scheduleOnce(
            delay + left, [this] { end(u"finished"_qs, true); }, RunLoopMode::Common);
    }
    void hold() {
        m_position = currentTime();
        m_running.cancel();
    }
    void record(const QString& event) { m_player.m_trace.add(m_path + u' ' + event); }

    FakeSoundPlayer& m_player;
    const QString m_path;
    const FakeSoundPlayer::File m_file;
    RunLoop::Milliseconds m_startDelay;
    bool m_isLoaded = false;
    bool m_isPlaying = false;
    bool m_isPaused = false;
    float m_volume = 1.0F;
    Seconds m_position{0};
    RunLoop::Milliseconds m_runningSince{0};
    RunLoopTimer m_loading;
    RunLoopTimer m_running;
    std::vector<std::function<void()>> m_whenLoaded;
    std::function<void(bool)> m_finished;
    Lifeline<FakeSound> m_lifeline{*this};
};

std::unique_ptr<Sound> FakeSoundPlayer::soundWithContentsOfFile(const QString& path) {
    return std::make_unique<FakeSound>(*this, path, m_files.value(path));
}

void FakeSoundPlayer::breakAll() {
    for (Sound* const sound : std::vector(m_sounds))
        if (sound->isPlaying())
            static_cast<FakeSound*>(sound)->end(u"broken"_qs, false);
}

} // namespace dorvane::testing
