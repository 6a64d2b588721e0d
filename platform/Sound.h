// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <QStringList>

#include <chrono>
#include <functional>
#include <memory>

namespace dorvane {

// Why a sound cannot be played: its file is not there, or cannot be read or decoded; or what
// decodes and plays sounds cannot be loaded.
enum class SoundFault { None, Gone, Unplayable, NoEngine };

// One sound, made from a file's contents. Loading and decoding happen on other threads; every
// member is called on, and every callback arrives on, the main thread. Destroying it stops it and
// drops its callbacks.
class Sound {
public:
    using Seconds = std::chrono::duration<double>;

    // By how much stop() makes up for a late start at most.
    static constexpr std::chrono::milliseconds latestStart{250};

    virtual ~Sound() = default;

    // Starts at the current position (the beginning, unless setCurrentTime() moved it), as soon as
    // the file is loaded. False when the sound is already playing or is known to be unplayable.
    // What turns out later (an unreadable file, no sound server) is logged, and finished(false)
    // follows; the next play() looks for a server again.
    virtual bool play() = 0;

    // Ends the play and goes back to the beginning; finished(false) follows when it was playing.
    // It is heard for as long as it was played, pauses left out: a sound that the server let start
    // late, by up to latestStart, ends as much later, with a fade of a few milliseconds.
    // One that is stopped when its duration is over is therefore heard to its end.
    virtual void stop() = 0;

    // From play() until stop() or the end, pauses included.
    [[nodiscard]] virtual bool isPlaying() const = 0;

    virtual void pause() = 0;
    virtual void resume() = 0;

    // Zero until the file is loaded, and for a sound that cannot be played.
    [[nodiscard]] virtual Seconds duration() const = 0;

    // Whether it is known that nothing in its first minute can be heard: a recording of a muted
    // microphone, say. Known when the duration is.
    [[nodiscard]] virtual bool isSilent() const = 0;

    // None until that is known, and for as long as the sound can be played.
    [[nodiscard]] virtual SoundFault fault() const = 0;

    // The position that is being heard.
    [[nodiscard]] virtual Seconds currentTime() const = 0;
    virtual void setCurrentTime(Seconds position) = 0;

    // 0.0 to 1.0, single precision; 1.0 at first. Changes are smoothed over a few milliseconds.
    [[nodiscard]] virtual float volume() const = 0;
    virtual void setVolume(float volume) = 0;

    // Called once when the duration is known, or the sound turned out to be unplayable (its
    // duration is zero then); at once when that is known already.
    virtual void whenLoaded(std::function<void()> callback) = 0;

    // Called after each play: true when the sound was heard to its end, false when it was stopped
    // or the sound server went away. Never called from inside a member of this class.
    virtual void setFinished(std::function<void(bool completed)> callback) = 0;
};

// Makes sounds. Main thread only.
class SoundPlayer {
public:
    virtual ~SoundPlayer() = default;

    // Never null; a file that cannot be read gives an empty sound whose play() answers false, now
    // or once that has turned out, and the reason is logged. Returns before the file is read.
    [[nodiscard]] virtual std::unique_ptr<Sound> soundWithContentsOfFile(const QString& path) = 0;

    // The same for what is to be heard at its moment: it never waits behind other sounds that are
    // being read.
    [[nodiscard]] virtual std::unique_ptr<Sound> ringWithContentsOfFile(const QString& path) {
        return soundWithContentsOfFile(path);
    }

    // Whether the file can be read and decoded. Waits for both, so it is for other threads than the
    // main one; any.
    [[nodiscard]] virtual bool canPlay(const QString& path) const = 0;

    // Calls back once, later, with whether there is such a file: for windows that say so. Never,
    // when its disk does not answer.
    virtual void lookFor(const QString& path, std::function<void(bool isThere)> found) = 0;

    // Has the file read and decoded now, and kept: from when that is done, a sound made of it leans
    // on no disk and on no thread that might be busy. For a short file that stands in for others.
    virtual void keepInMemory(const QString& path) { (void)path; }

    // The MIME types of the files that can be played here.
    [[nodiscard]] virtual QStringList soundUnfilteredTypes() const = 0;
};

} // namespace dorvane
