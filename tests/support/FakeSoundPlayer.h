// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/Sound.h"
#include "tests/support/Trace.h"

#include <QFileInfo>
#include <QMap>

#include <vector>

namespace dorvane::testing {

class FakeSound;

// Sounds that only take time, on the loop that the test gives. What is heard goes to the trace as
// "<ms> <path> <event>", with these events:
//
//   play        play() answered true; the sound is heard as soon as it is loaded
//   refused     play() answered false
//   stop        stop() of a playing sound
//   pause, resume, seek 1.500, volume 0.99
//   finished    heard to its end
//   failed      a play that a file that cannot be read brought to its end
//   dropped     destroyed while it was playing
//
//   VirtualRunLoop loop(start);
//   Trace trace(loop);
//   FakeSoundPlayer player(loop, trace);
//   player.setFile(u"/rings/Ping.aiff"_qs, {.duration = 2s});
//   ...
//   EXPECT_THAT(trace.events(), ElementsAre("0 /rings/Ping.aiff play",
//                                           "2000 /rings/Ping.aiff finished"));
//
// Like the real player it never knows a duration at once: a file with no load delay is loaded in
// the next turn of the loop. Sounds must not outlive the player.
class FakeSoundPlayer final : public SoundPlayer {
public:
    struct File {
        Sound::Seconds duration{1.0};
        RunLoop::Milliseconds loadDelay{0};
        bool isPlayable = true;              // otherwise it is not there
        RunLoop::Milliseconds startDelay{0}; // before the first play is heard
        bool isSilent = false;
        bool isDelayedEachTime = false; // not only the first play
    };

    FakeSoundPlayer(RunLoop& loop, Trace& trace) : m_loop(loop), m_trace(trace) {}

    [[nodiscard]] std::unique_ptr<Sound> soundWithContentsOfFile(const QString& path) override;
    [[nodiscard]] QStringList soundUnfilteredTypes() const override { return types; }

    void lookFor(const QString& path, std::function<void(bool isThere)> found) override {
        m_loop.defer([isThere = QFileInfo::exists(path), found] { found(isThere); });
    }

    [[nodiscard]] bool canPlay(const QString& path) const override {
        return m_files.value(path).isPlayable;
    }

    // What sounds made from now on find at `path`; files that were never set are playable and one
    // second long.
    void setFile(const QString& path, File file) { m_files[path] = file; }

    // With no server play() answers false.
    bool hasServer = true;

    QStringList types = {u"audio/x-aiff"_qs, u"audio/mpeg"_qs, u"audio/x-wav"_qs,
                         u"audio/x-vorbis+ogg"_qs, u"audio/mp4"_qs};

    // The server goes: what plays is cut off.
    void breakAll();

    // The sounds that exist, oldest first: what is left here at the end has leaked.
    [[nodiscard]] const std::vector<Sound*>& sounds() const { return m_sounds; }

private:
    friend class FakeSound;

    RunLoop& m_loop;
    Trace& m_trace;
    QMap<QString, File> m_files;
    std::vector<Sound*> m_sounds;
};

} // namespace dorvane::testing
