// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/speech/ModuleSpeechService.h"

#include "platform/linux/sound/ModuleSoundPlayer.h"
#include "platform/Log.h"

#include <QLibrary>

#include <utility>

namespace dorvane {

using namespace std::chrono_literals;

ModuleSpeechService::ModuleSpeechService(RunLoop& loop, ModuleSoundPlayer& player,
                                         QString modulePath)
    : m_loop(loop), m_player(player), m_modulePath(std::move(modulePath)) {
    m_worker.setMaxThreadCount(1);
    m_worker.setObjectName(QStringLiteral("speech"));
}

ModuleSpeechService::~ModuleSpeechService() {
    for (const auto& rendering : m_rendering)
        if (const Cancelled cancelled = rendering.lock())
            *cancelled = true;
    m_worker.clear();
    m_worker.waitForDone();
}

QStringList ModuleSpeechService::voiceNames() const {
    QStringList names;
    for (const SpeechVoice& voice : m_voices)
        names << voice.name;
    return names;
}

void ModuleSpeechService::whenVoicesKnown(std::function<void()> callback) {
    if (!m_voices.empty()) {
        callback();
        return;
    }
    m_waiting.push_back(std::move(callback));
    if (m_waiting.size() > 1)
        return;
    m_worker.start([this] {
        QString error;
        auto voices = loadVoices(error);
        if (voices.empty())
            qCWarning(logPlatform).noquote() << "there is no speech:" << error;
        post([voices = std::move(voices)](ModuleSpeechService& self) { self.setVoices(voices); });
    });
}

std::vector<SpeechVoice> ModuleSpeechService::loadVoices(QString& error) {
    if (!m_module) {
        QLibrary library(m_modulePath);
        const auto entry =
            reinterpret_cast<SpeechModuleEntry>(library.resolve(speechModuleEntryName));
        if (!entry) {
            error = library.errorString();
            return {};
        }
        m_module.reset(entry());
    }
    return m_module->voices(error);
}

void ModuleSpeechService::setVoices(std::vector<SpeechVoice> voices) {
    m_voices = std::move(voices);
    const auto self = m_lifeline.weak();
    const auto callbacks = std::exchange(m_waiting, {});
    for (const auto& callback : callbacks) {
        if (self.isCut())
            return;
        callback();
    }
}

void ModuleSpeechService::prepare(const QString& text, int voice) {
    render({text, voice}, std::make_shared<std::atomic<bool>>(false),
           [key = Text(text, voice)](ModuleSpeechService& self, auto sound) {
               if (!sound)
                   return;
               const auto forget = [&self, key] { self.m_prepared.erase(key); };
               self.m_prepared[key] = {std::move(sound), self.m_loop.scheduleOnce(30s, forget)};
           });
}

class ModuleSpeechService::NumberedUtterance final : public Utterance {
public:
    NumberedUtterance(ModuleSpeechService& service, std::uint64_t number)
        : m_service(service), m_number(number) {}
    NumberedUtterance(const NumberedUtterance&) = delete;
    NumberedUtterance& operator=(const NumberedUtterance&) = delete;
    ~NumberedUtterance() override { m_service.breakOff(m_number); }

    void setVolume(float volume) override {
        const auto found = m_service.m_announcements.find(m_number);
        if (found == m_service.m_announcements.end())
            return;
        found->second.volume = volume;
        if (found->second.sound)
            found->second.sound->setVolume(volume);
    }

private:
    ModuleSpeechService& m_service;
    const std::uint64_t m_number;
};

std::unique_ptr<SpeechService::Utterance>
ModuleSpeechService::speak(const QString& text, int voice, std::function<void()> begun, Done done) {
    const std::uint64_t number = m_nextNumber++;
    const auto cancelled = std::make_shared<std::atomic<bool>>(false);
    m_announcements[number] = {std::move(begun), std::move(done), cancelled, nullptr};
    if (const auto found = m_prepared.find({text, voice}); found != m_prepared.end()) {
        auto sound = std::move(found->second.sound);
        m_prepared.erase(found);
        play(number, std::move(sound));
    } else {
        render({text, voice}, cancelled, [number](ModuleSpeechService& self, auto sound) {
            if (sound)
                self.play(number, std::move(sound));
            else
                self.finish(number, false);
        });
    }
    return std::make_unique<NumberedUtterance>(*this, number);
}

// Gives no sound where there is nothing to be heard.
void ModuleSpeechService::render(
    const Text& text, const Cancelled& cancelled,
    std::function<void(ModuleSpeechService&, std::unique_ptr<Sound>)> receive) {
    const auto& [words, voice] = text;
    if (voice < 1 || static_cast<std::size_t>(voice) > m_voices.size())
        return;
    const SpeechVoice& chosen = m_voices[static_cast<std::size_t>(voice) - 1];
    std::erase_if(m_rendering, [](const auto& rendering) { return rendering.expired(); });
    m_rendering.push_back(cancelled);
    m_worker.start([this, words = words, chosen, cancelled, receive = std::move(receive)] {
        QString error;
        const bool isToBeHeard = !*cancelled && !words.trimmed().isEmpty();
        const QByteArray wave =
            isToBeHeard ? m_module->render(words, chosen, *cancelled, error) : QByteArray();
        if (!error.isEmpty())
            qCWarning(logPlatform).noquote()
                << "cannot speak as" << chosen.name + QStringLiteral(":") << error;
        post([wave, receive](ModuleSpeechService& self) {
            receive(self, wave.isEmpty()
                              ? nullptr
                              : self.m_player.soundWithData(wave, QStringLiteral("speech")));
        });
    });
}

// Nobody may be waiting for it any more.
void ModuleSpeechService::play(std::uint64_t number, std::unique_ptr<Sound> sound) {
    const auto found = m_announcements.find(number);
    if (found == m_announcements.end())
        return;
    sound->setFinished([this, number](bool completed) { finish(number, completed); });
    sound->setVolume(found->second.volume);
    const bool plays = sound->play();
    found->second.sound = std::move(sound);
    m_loop.defer(m_lifeline.guard([number, plays](ModuleSpeechService& self) {
        if (!plays)
            self.finish(number, false);
        else if (const auto playing = self.m_announcements.find(number);
                 playing != self.m_announcements.end())
            std::exchange(playing->second.begun, {})(); // which may end it
    }));
}

void ModuleSpeechService::finish(std::uint64_t number, bool isSpoken) {
    auto announcement = m_announcements.extract(number);
    if (!announcement)
        return;
    // The sound goes later: this may be its own callback.
    m_loop.defer([sound = std::shared_ptr(std::move(announcement.mapped().sound))] {});
    announcement.mapped().done(isSpoken);
}

void ModuleSpeechService::breakOff(std::uint64_t number) {
    const auto announcement = m_announcements.extract(number);
    if (announcement)
        *announcement.mapped().cancelled = true;
}

void ModuleSpeechService::post(std::function<void(ModuleSpeechService&)> answer) const {
    m_loop.post(m_lifeline.guard(std::move(answer)));
}

} // namespace dorvane
