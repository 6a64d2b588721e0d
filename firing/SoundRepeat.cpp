// SPDX-License-Identifier: GPL-3.0-or-later
#include "firing/SoundRepeat.h"

#include "platform/Log.h"

namespace dorvane {

namespace {

// More at once would be heard as nothing but noise.
constexpr std::size_t mostAtOnce = 16;

// Loudspeakers on a network may be seconds behind; what is later than that has met a fault.
constexpr RunLoop::Milliseconds latestEnd{5000};

} // namespace

SoundRepeat::SoundRepeat(RunLoop& runLoop, SoundPlayer& player)
    : m_runLoop(runLoop), m_player(player) {}

void SoundRepeat::playSoundAtPath(const QString& path, int times, Ended ended) {
    play(m_player.ringWithContentsOfFile(path), times, std::move(ended));
}

void SoundRepeat::play(std::unique_ptr<Sound> sound, int times, Ended ended) {
    if (m_plays.size() >= mostAtOnce) {
        qCDebug(logFiring, "enough sounds play already; one is left out");
        m_runLoop.defer([ended = std::move(ended)] {
            if (ended)
                ended(false);
        });
        return;
    }
    const auto play = m_plays.emplace(m_plays.end());
    play->sound = std::move(sound);
    play->count = times;
    play->ended = std::move(ended);
    play->sound->setFinished([play](bool completed) { play->isOver = completed; });
    // Only a loaded sound starts without delay, and each start is to be like the others.
    play->sound->whenLoaded([this, play] {
        play->firstStart = m_runLoop.uptime();
        playAgain(play);
    });
}

// The starts lie on a grid from the first one, so that small delays do not add up; and they go on
// while a menu is open.
void SoundRepeat::playAgain(Plays::iterator play) {
    if (!settle(play) || isStillHeard(play))
        return;
    play->isHeard = wasHeard(*play);
    play->isOver = false;
    play->sound->stop();
    if (play->done == play->count || !play->sound->play()) {
        drop(play);
        return;
    }
    ++play->done;
    const auto next = play->firstStart + std::chrono::round<RunLoop::Milliseconds>(
                                             play->sound->duration() * play->done);
    play->timer = m_runLoop.scheduleOnce(
        next - m_runLoop.uptime(), [this, play] { playAgain(play); }, RunLoopMode::Common);
}

// The first sound of the process waits for the sound server, the others do not. At the end of the
// first play its position tells how late it was, and the grid moves along, so that the first pause
// is like the others and no end is cut off. False when it is not time for the next play yet.
bool SoundRepeat::settle(Plays::iterator play) {
    if (play->done == 0 || play->isSettled)
        return true;
    play->isSettled = true;
    const auto late = std::chrono::round<RunLoop::Milliseconds>(play->sound->duration() -
                                                                play->sound->currentTime());
    // What is later than that has met a fault, not a slow start.
    if (!play->sound->isPlaying() || late < RunLoop::Milliseconds(1) || late > Sound::latestStart)
        return true;
    play->firstStart += late;
    play->timer = m_runLoop.scheduleOnce(
        late, [this, play] { playAgain(play); }, RunLoopMode::Common);
    return false;
}

// On an output that is behind, every play is heard as much later and no pause is another; only
// whether the last one was heard whole is not known until it has ended by itself.
bool SoundRepeat::isStillHeard(Plays::iterator play) {
    const Sound& sound = *play->sound;
    const auto left =
        std::chrono::round<RunLoop::Milliseconds>(sound.duration() - sound.currentTime());
    const auto end =
        play->firstStart + std::chrono::round<RunLoop::Milliseconds>(sound.duration() * play->done);
    if (play->done < play->count || !sound.isPlaying() || left <= Sound::latestStart ||
        m_runLoop.uptime() >= end + latestEnd)
        return false;
    play->timer = m_runLoop.scheduleOnce(
        left, [this, play] { playAgain(play); }, RunLoopMode::Common);
    return true;
}

// Each play is stopped when its duration is over. What the server never began to play, or dropped,
// does not stand near its end then.
bool SoundRepeat::wasHeard(const Play& play) {
    const Sound& sound = *play.sound;
    return sound.isPlaying() ? sound.duration() - sound.currentTime() <= Sound::latestStart
                             : play.isOver;
}

// Later, since this may run inside a callback of the very sound.
void SoundRepeat::drop(Plays::iterator play) {
    m_runLoop.defer(m_lifeline.guard([play](SoundRepeat& self) {
        const Ended ended = std::move(play->ended);
        const bool isHeard = play->done == play->count && play->isHeard;
        self.m_plays.erase(play);
        if (ended)
            ended(isHeard);
    }));
}

} // namespace dorvane
