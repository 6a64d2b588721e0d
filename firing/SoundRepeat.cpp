// SPDX-License-Identifier: GPL-3.0-or-later
#include "firing/SoundRepeat.h"

#include "platform/Log.h"

namespace dorvane {

namespace {

// More at once would be heard as nothing but noise.
constexpr std::size_t mostAtOnce = 16;

// A first play that is later than this has met a fault, not a slow start.
constexpr RunLoop::Milliseconds latestStart(250);

} // namespace

SoundRepeat::SoundRepeat(RunLoop& runLoop, SoundPlayer& player)
    : m_runLoop(runLoop), m_player(player), m_self(std::make_shared<SoundRepeat*>(this)) {}

SoundRepeat::~SoundRepeat() = default;

void SoundRepeat::playSoundAtPath(const QString& path, int times) {
    if (m_plays.size() >= mostAtOnce) {
        qCDebug(logFiring).noquote() << "enough sounds play already; left out" << path;
        return;
    }
    const auto play = m_plays.emplace(m_plays.end());
    play->sound = m_player.soundWithContentsOfFile(path);
    play->count = times;
    // Only a loaded sound starts without delay, and each start is to be like the others.
    play->sound->whenLoaded([this, play] {
        play->firstStart = m_runLoop.uptime();
        playAgain(play);
    });
}

// The starts lie on a grid from the first one, so that small delays do not add up; and they go on
// while a menu is open.
void SoundRepeat::playAgain(Plays::iterator play) {
    if (!settle(play))
        return;
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
    if (!play->sound->isPlaying() || late < RunLoop::Milliseconds(1) || late > latestStart)
        return true;
    play->firstStart += late;
    play->timer = m_runLoop.scheduleOnce(
        late, [this, play] { playAgain(play); }, RunLoopMode::Common);
    return false;
}

// Later, since this may run inside a callback of the very sound.
void SoundRepeat::drop(Plays::iterator play) {
    m_runLoop.defer([weak = std::weak_ptr(m_self), play] {
        if (const auto self = weak.lock())
            (*self)->m_plays.erase(play);
    });
}

} // namespace dorvane
