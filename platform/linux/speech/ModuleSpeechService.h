// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/Lifeline.h"
#include "platform/linux/speech/SpeechModule.h"
#include "platform/RunLoop.h"
#include "platform/SpeechService.h"

#include <QThreadPool>

#include <atomic>
#include <cstdint>
#include <map>
#include <memory>
#include <vector>

namespace dorvane {

class ModuleSoundPlayer;
class Sound;

// Speech by a synthesiser in a module, which the first question about voices brings into the
// process. Texts are rendered one after the other on a thread of its own and played by the sound
// engine, several at a time where they overlap. The run loop and the player must outlive it.
class ModuleSpeechService final : public SpeechService {
public:
    ModuleSpeechService(RunLoop& loop, ModuleSoundPlayer& player, QString modulePath);
    // Ends the rendering that runs and waits for that; what is being spoken falls silent.
    ~ModuleSpeechService() override;

    [[nodiscard]] QStringList voiceNames() const override;
    void whenVoicesKnown(std::function<void()> callback) override;
    void prepare(const QString& text, int voice) override;
    [[nodiscard]] std::unique_ptr<Utterance>
    speak(const QString& text, int voice, std::function<void()> begun,
          std::function<void(bool isSpoken)> done) override;

private:
    class NumberedUtterance;

    using Done = std::function<void(bool isSpoken)>;
    using Cancelled = std::shared_ptr<std::atomic<bool>>; // set when nobody waits for it any more
    using Text = std::pair<QString, int>;                 // in a voice, by its number

    // What waits to be spoken; let go of when nobody asks for it.
    struct Prepared {
        std::unique_ptr<Sound> sound;
        RunLoopTimer expiry;
    };

    // What is being heard, or rendered for that.
    struct Announcement {
        std::function<void()> begun;
        Done done;
        Cancelled cancelled;
        std::unique_ptr<Sound> sound; // null until it is rendered
        float volume = 1;
    };

    // Worker thread.
    [[nodiscard]] std::vector<SpeechVoice> loadVoices(QString& error);

    // Main thread.
    void post(std::function<void(ModuleSpeechService&)> answer) const;
    void setVoices(std::vector<SpeechVoice> voices);
    void render(const Text& text, const Cancelled& cancelled,
                std::function<void(ModuleSpeechService&, std::unique_ptr<Sound>)> receive);
    void play(std::uint64_t number, std::unique_ptr<Sound> sound);
    void finish(std::uint64_t number, bool isSpoken);
    void breakOff(std::uint64_t number);

    RunLoop& m_loop;
    ModuleSoundPlayer& m_player;
    const QString m_modulePath;
    std::vector<SpeechVoice> m_voices;
    std::vector<std::function<void()>> m_waiting; // for the voices; not empty while they load
    std::map<Text, Prepared> m_prepared;
    std::map<std::uint64_t, Announcement> m_announcements;
    std::uint64_t m_nextNumber = 1;
    std::vector<std::weak_ptr<std::atomic<bool>>> m_rendering;
    std::unique_ptr<SpeechModule> m_module; // worker thread
    Lifeline<ModuleSpeechService> m_lifeline{*this};
    QThreadPool m_worker; // one thread; last, so that nothing of the above goes before its jobs
};

} // namespace dorvane
