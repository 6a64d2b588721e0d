// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/Sound.h"
#include "platform/SoundOutput.h"

#include <QString>

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>

namespace dorvane {

// What every sound is decoded to: interleaved stereo floats.
inline constexpr int soundRate = 48000;
inline constexpr std::size_t soundChannels = 2;

// The bytes of a sound's file. Any thread, several at a time.
class SoundInput {
public:
    virtual ~SoundInput() = default;

    [[nodiscard]] virtual std::int64_t size() const = 0;

    // Whether all of it is in memory, so that read() never waits for a disk.
    [[nodiscard]] virtual bool isHeld() const = 0;

    // Copies up to `count` bytes from `position` on; 0 at the end, negative when they cannot be
    // read.
    [[nodiscard]] virtual std::int64_t read(std::int64_t position, void* out,
                                            std::int64_t count) const = 0;
};

// Reads one sound from a position onwards. Belongs to one thread at a time.
class SoundDecoder {
public:
    virtual ~SoundDecoder() = default;

    // The position of the first frame that read() gives.
    [[nodiscard]] virtual Sound::Seconds start() const = 0;

    // Writes up to `frames` frames; fewer only at the end of the sound.
    [[nodiscard]] virtual std::size_t read(float* out, std::size_t frames) = 0;

    // Whether read() ended because the disk has given nothing for too long.
    [[nodiscard]] virtual bool isStarved() const { return false; }
};

// One play on its way to the speakers. Main thread only; nothing here waits for the audio thread.
class SoundVoice {
public:
    // Ends the play with a short fade, so much later as the sound was heard later than asked for:
    // the time that is heard is the time that it was played.
    virtual ~SoundVoice() = default;

    virtual void setPaused(bool paused) = 0;
    virtual void setVolume(float volume) = 0;

    // The position in the sound that is being heard.
    [[nodiscard]] virtual Sound::Seconds position() const = 0;
};

// How a play begins, and who hears of its end.
struct SoundVoiceStart {
    float volume = 1.0F;
    bool paused = false;
    // How long ago the play was asked for.
    Sound::Seconds waited{0};
    // Called once, on the audio thread: true after the last sample was heard, false when the sound
    // server is not there or went away. May still arrive just after the voice is gone.
    std::function<void(bool completed)> finished;
};

// Something that is asked of the sound server for as long as this is kept. Main thread only.
class SoundWatch {
public:
    // What it calls back may still arrive just afterwards.
    virtual ~SoundWatch() = default;
};

// What the loadable module gives: decoding and output. The libraries behind it are large, so they
// come into the process with the first sound only. Members may be called on any thread.
class SoundModule {
public:
    // No voice is left by then.
    virtual ~SoundModule() = default;

    // Asked between blocks: whether nobody waits for the answer any longer.
    using Cancelled = std::function<bool()>;

    // A decoder that stands at `at` and has the first second ready, or null with the reason in
    // `error`. Of an input that is not held it reads ahead on a thread of its own.
    [[nodiscard]] virtual std::shared_ptr<SoundDecoder>
    decoder(std::shared_ptr<const SoundInput> file, Sound::Seconds at, const Cancelled& cancelled,
            QString& error) const = 0;

    // How long the sound is heard, exact where that is not stated exactly by the file and can be
    // found out in a fraction of a second; and whether nothing of its first minute can be heard.
    struct Extent {
        Sound::Seconds duration{0};
        bool isSilent = false;
    };
    // Gives up with nothing when `cancelled` says so.
    [[nodiscard]] virtual Extent measure(std::shared_ptr<const SoundInput> file,
                                         const Cancelled& cancelled) const = 0;

    [[nodiscard]] virtual std::unique_ptr<SoundVoice> play(std::shared_ptr<SoundDecoder> decoder,
                                                           SoundVoiceStart start) = 0;

    // Calls back on the audio thread with the state of the output that our sounds are heard on,
    // and after each change; where no server answers, one is looked for every second.
    [[nodiscard]] virtual std::unique_ptr<SoundWatch>
    watch(std::function<void(const SoundOutputState& state)> changed) = 0;

    // Calls back on the audio thread with what the default output plays, mono at soundRate; once
    // without samples when it begins, and never where it cannot be listened to.
    [[nodiscard]] virtual std::unique_ptr<SoundWatch>
    listen(std::function<void(const float* samples, std::size_t count)> heard) = 0;

    // Whether the installed libraries have a demuxer and a decoder of these names.
    [[nodiscard]] virtual bool supports(const char* demuxer, const char* decoder) const = 0;
};

// The module's one entry point, a function of this type and name. The caller owns the result.
using SoundModuleEntry = SoundModule* (*)();
inline constexpr const char* soundModuleEntryName = "dorvaneSoundModule";

} // namespace dorvane
