// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/Lifeline.h"
#include "platform/linux/sound/KeptSound.h"
#include "platform/linux/sound/SoundLoader.h"
#include "platform/RunLoop.h"
#include "platform/Sound.h"

#include <QString>

#include <cstdint>
#include <functional>
#include <memory>
#include <vector>

namespace dorvane {

// A sound whose file is read on a loading thread and played by the sound module. This class is
// the main thread's side: it keeps what the user of the sound sees, and never waits.
//
// A play needs a decoder that stands at the right position. One at the beginning is kept in
// reserve, so that a repeated play starts without delay; for any other position one is made on a
// loading thread, because a seek in a long file takes long.
class ModuleSound final : public Sound {
public:
    using File = std::shared_ptr<const SoundInput>;
    // Gives the file on a loading thread; null with the reason in `error`.
    using Open = std::function<File(QString& error)>;

    // The name stands for the sound in the log.
    ModuleSound(RunLoop& loop, std::shared_ptr<SoundLoader> loader, SoundUse use,
                const QString& name, Open open);
    // Of what was decoded before.
    ModuleSound(RunLoop& loop, std::shared_ptr<SoundLoader> loader,
                std::shared_ptr<const KeptSound> kept);
    ~ModuleSound() override;

    bool play() override;
    void stop() override;
    [[nodiscard]] bool isPlaying() const override { return m_playing; }
    void pause() override { setPaused(true); }
    void resume() override { setPaused(false); }
    [[nodiscard]] Seconds duration() const override { return m_extent.duration; }
    [[nodiscard]] bool isSilent() const override { return m_extent.isSilent; }
    [[nodiscard]] SoundFault fault() const override { return m_fault; }
    [[nodiscard]] Seconds currentTime() const override;
    void setCurrentTime(Seconds position) override;
    [[nodiscard]] float volume() const override { return m_volume; }
    void setVolume(float volume) override;
    void whenLoaded(std::function<void()> callback) override;
    void setFinished(std::function<void(bool completed)> callback) override;

private:
    class Reply;
    enum class Load { Running, Done, Failed };
    using Decoder = std::shared_ptr<SoundDecoder>;

    void load(Open open);
    void opened(File file, Decoder atBeginning);
    void loaded(Load result, SoundModule::Extent extent, SoundFault fault = SoundFault::None);
    void start();
    void requestDecoder(Seconds at, std::function<void(ModuleSound&, Decoder)> receive);
    void begin(Decoder decoder);
    void voiceFinished(std::uint64_t playNumber, bool completed);
    void end();
    void postFinished();
    void setPaused(bool paused);

    RunLoop& m_loop;
    std::shared_ptr<SoundLoader> m_loader;
    const SoundUse m_use;
    const QString m_name;
    const std::shared_ptr<const KeptSound> m_kept; // in place of a file

    Load m_load = Load::Running;
    SoundFault m_fault = SoundFault::None;
    File m_file;       // null until it is known to be playable
    Decoder m_reserve; // at the beginning
    SoundModule::Extent m_extent;
    std::vector<std::function<void()>> m_whenLoaded;

    bool m_playing = false;
    bool m_paused = false;
    float m_volume = 1.0F;
    RunLoop::Milliseconds m_asked{0}; // the uptime at which the play or the seek was asked for
    Seconds m_position{0}; // where the next play starts, or the running one is about to go
    std::unique_ptr<SoundVoice> m_voice;
    // Grows with every voice, seek and stop: replies that carry an older number are dropped.
    std::uint64_t m_playNumber = 0;
    std::function<void(bool)> m_finished;
    Lifeline<ModuleSound> m_lifeline{*this};
};

} // namespace dorvane
