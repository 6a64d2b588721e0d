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
    m_ending = true;
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
    render({text, voice}, [key = Text(text, voice)](ModuleSpeechService& self, auto sound) {
        if (!sound)
            return;
        const auto forget = [&self, key] { self.m_prepared.erase(key); };
        self.m_prepared[key] = {std::move(sound), self.m_loop.scheduleOnce(30s, forget)};
    });
}

void ModuleSpeechService::speak(const QString& text, int voice, std::function<void()> done) {
    if (const auto found = m_prepared.find({text, voice}); found != m_prepared.end()) {
        auto sound = std::move(found->second.sound);
        m_prepared.erase(found);
        play(std::move(sound), std::move(done));
        return;
    }
    render({text, voice}, [done = std::move(done)](ModuleSpeechService& self, auto sound) {
        if (sound)
            self.play(std::move(sound), done);
        else
            done();
    });
}

// Gives no sound where there is nothing to be heard.
void ModuleSpeechService::render(
    const Text& text, std::function<void(ModuleSpeechService&, std::unique_ptr<Sound>)> receive) {
    const auto& [words, voice] = text;
    if (voice < 1 || static_cast<std::size_t>(voice) > m_voices.size())
        return;
    const SpeechVoice& chosen = m_voices[static_cast<std::size_t>(voice) - 1];
    m_worker.start([this, words = words, chosen, receive = std::move(receive)] {
        QString error;
        const QByteArray wave = m_module->render(words, chosen, m_ending, error);
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

void ModuleSpeechService::play(std::unique_ptr<Sound> sound, Done done) {
    const std::uint64_t number = m_nextNumber++;
    sound->setFinished([this, number](bool) { finish(number); });
    sound->play();
    m_announcements.emplace(number, Announcement{std::move(sound), std::move(done)});
}

void ModuleSpeechService::finish(std::uint64_t number) {
    // The sound goes later: this is its own callback.
    m_loop.defer([sound = std::shared_ptr(std::move(m_announcements.at(number).sound))] {});
    const Done done = std::move(m_announcements.at(number).done);
    m_announcements.erase(number);
    done();
}

void ModuleSpeechService::post(std::function<void(ModuleSpeechService&)> answer) const {
    m_loop.post(m_lifeline.guard(std::move(answer)));
}

} // namespace dorvane
