// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/speech/ModuleSpeechService.h"

#include "platform/linux/sound/ModuleSoundPlayer.h"
#include "platform/Log.h"

#include <QLibrary>

#include <utility>

namespace dorvane {

ModuleSpeechService::ModuleSpeechService(RunLoop& loop, ModuleSoundPlayer& player,
                                         QString modulePath)
    : m_loop(loop)
    , m_player(player)
    , m_modulePath(std::move(modulePath))
    , m_self(std::make_shared<ModuleSpeechService*>(this)) {
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
    const std::weak_ptr<ModuleSpeechService*> self = m_self;
    const auto callbacks = std::exchange(m_waiting, {});
    for (const auto& callback : callbacks) {
        if (self.expired())
            return;
        callback();
    }
}

void ModuleSpeechService::speak(const QString& text, int voice, std::function<void()> done) {
    if (voice < 1 || static_cast<std::size_t>(voice) > m_voices.size())
        return;
    const SpeechVoice& chosen = m_voices[static_cast<std::size_t>(voice) - 1];
    m_worker.start([this, text, chosen, done = std::move(done)] {
        QString error;
        const QByteArray wave = m_module->render(text, chosen, m_ending, error);
        if (!error.isEmpty())
            qCWarning(logPlatform).noquote()
                << "cannot speak as" << chosen.name + QStringLiteral(":") << error;
        post([wave, done](ModuleSpeechService& self) { self.play(wave, done); });
    });
}

void ModuleSpeechService::play(const QByteArray& wave, Done done) {
    if (wave.isEmpty()) {
        done();
        return;
    }
    const std::uint64_t number = m_nextNumber++;
    auto sound = m_player.soundWithData(wave, QStringLiteral("speech"));
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
    m_loop.post([self = std::weak_ptr(m_self), answer = std::move(answer)] {
        // Not kept alive meanwhile: whoever looks must see that an answer destroyed it.
        ModuleSpeechService* const* const alive = self.lock().get();
        if (alive)
            answer(**alive);
    });
}

} // namespace dorvane
