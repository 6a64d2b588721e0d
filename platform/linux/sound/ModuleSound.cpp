// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/sound/ModuleSound.h"

#include "platform/Log.h"

#include <QFileInfo>

#include <algorithm>
#include <new>
#include <utility>

namespace dorvane {

namespace {

// A damaged file may ask for more memory than there is: false with the reason then.
bool withMemory(QString& error, const std::function<bool()>& job) {
    try {
        return job();
    } catch (const std::bad_alloc&) {
        error = QStringLiteral("there is not enough memory");
        return false;
    }
}

} // namespace

// Brings an answer from another thread to the sound, if it is still there by then.
class ModuleSound::Reply {
public:
    explicit Reply(const ModuleSound& sound)
        : m_loop(sound.m_loop), m_sound(sound.m_lifeline.weak()) {}

    [[nodiscard]] bool isUnwanted() const { return m_sound.isCut(); }

    void post(std::function<void(ModuleSound&)> answer) const {
        m_loop.post([sound = m_sound, answer = std::move(answer)] {
            if (ModuleSound* const alive = sound.get())
                answer(*alive);
        });
    }

private:
    RunLoop& m_loop;
    Lifeline<ModuleSound>::Weak m_sound;
};

ModuleSound::ModuleSound(RunLoop& loop, std::shared_ptr<SoundLoader> loader, SoundUse use,
                         const QString& name, Open open)
    : m_loop(loop), m_loader(std::move(loader)), m_use(use), m_name(name) {
    load(std::move(open));
}

ModuleSound::ModuleSound(RunLoop& loop, std::shared_ptr<SoundLoader> loader,
                         std::shared_ptr<const KeptSound> kept)
    : m_loop(loop), m_loader(std::move(loader)), m_use(SoundUse::Ring), m_kept(std::move(kept)) {
    Reply(*this).post([](ModuleSound& sound) {
        sound.loaded(Load::Done, {sound.m_kept->duration(), false});
    });
}

ModuleSound::~ModuleSound() = default;

void ModuleSound::load(Open open) {
    m_loader->run(
        m_use, m_name,
        [source = m_loader->source(), name = m_name, open = std::move(open), reply = Reply(*this)] {
            if (reply.isUnwanted())
                return;
            const auto cancelled = [&reply] { return reply.isUnwanted(); };
            QString error;
            SoundFault fault = SoundFault::Unplayable;
            const bool isLoaded = withMemory(error, [&] {
                const File file = open(error);
                if (!file && !QFileInfo::exists(name))
                    fault = SoundFault::Gone;
                const SoundModule* module = file ? source->load(error) : nullptr;
                if (file && !module)
                    fault = SoundFault::NoEngine;
                const Decoder decoder =
                    module ? module->decoder(file, Seconds(0), cancelled, error) : nullptr;
                if (!decoder)
                    return false;
                // The sound may start now; how long it is may take a while to find out.
                reply.post([file, decoder](ModuleSound& sound) { sound.opened(file, decoder); });
                const auto extent = module->measure(file, cancelled);
                reply.post([extent](ModuleSound& sound) { sound.loaded(Load::Done, extent); });
                return true;
            });
            if (isLoaded || reply.isUnwanted())
                return;
            qCWarning(logPlatform).noquote()
                << "cannot play" << name + QStringLiteral(":") << error;
            reply.post([fault](ModuleSound& sound) { sound.loaded(Load::Failed, {}, fault); });
        });
}

void ModuleSound::opened(File file, Decoder atBeginning) {
    m_file = std::move(file);
    m_reserve = std::move(atBeginning);
    if (m_playing)
        start();
}

void ModuleSound::loaded(Load result, SoundModule::Extent extent, SoundFault fault) {
    m_load = result;
    m_fault = fault;
    m_extent = extent;
    if (result == Load::Failed && m_playing) {
        end();
        postFinished();
    }
    const auto self = m_lifeline.weak();
    const auto callbacks = std::exchange(m_whenLoaded, {});
    for (const auto& callback : callbacks) {
        if (self.isCut()) // the one before destroyed the sound
            return;
        callback();
    }
}

bool ModuleSound::play() {
    if (m_playing || m_load == Load::Failed)
        return false;
    m_playing = true;
    m_asked = m_loop.uptime();
    start();
    return true;
}

// Gets the play going from m_position as soon as the file has been read.
void ModuleSound::start() {
    const std::uint64_t number = ++m_playNumber;
    if (!m_file && !m_kept)
        return;
    if (m_position == Seconds(0) && m_reserve) {
        begin(std::exchange(m_reserve, nullptr));
        return;
    }
    requestDecoder(m_position, [number](ModuleSound& sound, Decoder decoder) {
        if (number != sound.m_playNumber)
            return;
        if (decoder)
            sound.begin(std::move(decoder));
        else
            sound.voiceFinished(number, false);
    });
}

void ModuleSound::requestDecoder(Seconds at, std::function<void(ModuleSound&, Decoder)> receive) {
    if (m_kept) {
        receive(*this, std::make_shared<KeptDecoder>(m_kept, at));
        return;
    }
    m_loader->run(m_use, m_name,
                  [source = m_loader->source(), file = m_file, at, receive = std::move(receive),
                   reply = Reply(*this)] {
                      if (reply.isUnwanted())
                          return;
                      QString error;
                      Decoder decoder;
                      (void)withMemory(error, [&] {
                          decoder = source->module()->decoder(
                              file, at, [&reply] { return reply.isUnwanted(); }, error);
                          return decoder != nullptr;
                      });
                      if (!decoder && !reply.isUnwanted())
                          qCWarning(logPlatform).noquote() << "cannot go on with a sound:" << error;
                      reply.post(
                          [receive, decoder](ModuleSound& sound) { receive(sound, decoder); });
                  });
}

void ModuleSound::begin(Decoder decoder) {
    const std::uint64_t number = ++m_playNumber;
    const auto finished = [number, reply = Reply(*this)](bool completed) {
        reply.post(
            [number, completed](ModuleSound& sound) { sound.voiceFinished(number, completed); });
    };
    const Seconds waited = m_loop.uptime() - m_asked;
    m_voice = m_loader->module()->play(std::move(decoder), {m_volume, m_paused, waited, finished});
    if (m_reserve)
        return;
    requestDecoder(Seconds(0), [](ModuleSound& sound, Decoder atBeginning) {
        sound.m_reserve = std::move(atBeginning);
    });
}

void ModuleSound::voiceFinished(std::uint64_t playNumber, bool completed) {
    if (playNumber != m_playNumber)
        return;
    end();
    if (const auto callback = m_finished) // a copy: the callback may destroy the sound
        callback(completed);
}

void ModuleSound::stop() {
    m_position = Seconds(0);
    if (!m_playing)
        return;
    end();
    postFinished();
}

void ModuleSound::end() {
    ++m_playNumber;
    m_playing = false;
    m_paused = false;
    m_position = Seconds(0);
    m_voice.reset();
}

void ModuleSound::postFinished() {
    Reply(*this).post([](ModuleSound& sound) {
        if (const auto callback = sound.m_finished)
            callback(false);
    });
}

void ModuleSound::setPaused(bool paused) {
    if (!m_playing)
        return;
    m_paused = paused;
    if (m_voice)
        m_voice->setPaused(paused);
}

Sound::Seconds ModuleSound::currentTime() const {
    if (!m_voice)
        return m_position;
    const Seconds heard = m_voice->position();
    return m_load == Load::Done ? std::min(heard, m_extent.duration) : heard;
}

void ModuleSound::setCurrentTime(Seconds position) {
    m_position = std::max(position, Seconds(0));
    if (m_load == Load::Done)
        m_position = std::min(m_position, m_extent.duration);
    if (!m_playing)
        return;
    m_voice.reset();
    m_asked = m_loop.uptime();
    start();
}

void ModuleSound::setVolume(float volume) {
    m_volume = std::clamp(volume, 0.0F, 1.0F);
    if (m_voice)
        m_voice->setVolume(m_volume);
}

void ModuleSound::whenLoaded(std::function<void()> callback) {
    if (m_load == Load::Running)
        m_whenLoaded.push_back(std::move(callback));
    else
        callback();
}

void ModuleSound::setFinished(std::function<void(bool)> callback) {
    m_finished = std::move(callback);
}

} // namespace dorvane
