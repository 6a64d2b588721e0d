// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/sound/ModuleSoundPlayer.h"

#include "platform/linux/sound/KeptSound.h"
#include "platform/linux/sound/ModuleSound.h"
#include "platform/linux/sound/SoundFile.h"
#include "platform/linux/sound/SoundLoader.h"
#include "platform/linux/sound/SoundModule.h"
#include "platform/linux/sound/SoundTypes.h"

#include <QFileInfo>

#include <utility>

namespace dorvane {

namespace {

constexpr std::size_t longestKept = 10 * soundRate; // frames

std::shared_ptr<const SoundInput> opened(const QString& path) {
    QString error;
    return SoundFile::open(path, error);
}

std::shared_ptr<SoundDecoder> decoderOf(SoundModuleSource& source,
                                        const std::shared_ptr<const SoundInput>& file) {
    QString error;
    SoundModule* const module = source.load(error);
    return module ? module->decoder(
                        file, Sound::Seconds(0), [] { return false; }, error)
                  : nullptr;
}

// Null where it is not for keeping.
std::shared_ptr<const KeptSound> decodedWhole(SoundModuleSource& source, const QString& path) {
    const auto file = opened(path);
    const auto decoder = file && file->isHeld() ? decoderOf(source, file) : nullptr;
    if (!decoder)
        return nullptr;
    const auto kept = std::make_shared<KeptSound>();
    kept->samples.resize(longestKept * soundChannels);
    const std::size_t frames = decoder->read(kept->samples.data(), longestKept);
    kept->samples.resize(frames * soundChannels);
    kept->samples.shrink_to_fit();
    return frames > 0 && frames < longestKept ? kept : nullptr;
}

} // namespace

ModuleSoundPlayer::ModuleSoundPlayer(RunLoop& loop, const QString& modulePath)
    : m_loop(loop), m_loader(std::make_shared<SoundLoader>(loop, modulePath)) {}

ModuleSoundPlayer::~ModuleSoundPlayer() = default;

std::unique_ptr<Sound> ModuleSoundPlayer::sound(SoundUse use, const QString& path) {
    return std::make_unique<ModuleSound>(
        m_loop, m_loader, use, path, [path, elsewhere = m_elsewhere](QString& error) {
            auto file = SoundFile::open(path, error);
            const QString other = file || !elsewhere ? QString() : elsewhere(path);
            QString ignored;
            auto found = other.isEmpty() ? nullptr : SoundFile::open(other, ignored);
            if (!found)
                return file;
            error.clear();
            return found;
        });
}

std::unique_ptr<Sound> ModuleSoundPlayer::soundWithContentsOfFile(const QString& path) {
    return sound(SoundUse::Other, path);
}

std::unique_ptr<Sound> ModuleSoundPlayer::ringWithContentsOfFile(const QString& path) {
    if (const auto kept = m_kept.find(path); kept != m_kept.end() && kept->second)
        return std::make_unique<ModuleSound>(m_loop, m_loader, kept->second);
    return sound(SoundUse::Ring, path);
}

bool ModuleSoundPlayer::canPlay(const QString& path) const {
    const auto file = opened(path);
    return file && decoderOf(*m_loader->source(), file);
}

void ModuleSoundPlayer::lookFor(const QString& path, std::function<void(bool isThere)> found) {
    m_loader->run(SoundUse::Other, path,
                  [path, found = std::move(found), &loop = m_loop, self = m_lifeline.weak()] {
                      const bool isThere = QFileInfo::exists(path);
                      if (self.isCut())
                          return;
                      loop.post([self, found, isThere] {
                          if (!self.isCut())
                              found(isThere);
                      });
                  });
}

void ModuleSoundPlayer::keepInMemory(const QString& path) {
    if (!m_kept.try_emplace(path).second)
        return;
    m_loader->run(SoundUse::Ring, path,
                  [source = m_loader->source(), &loop = m_loop, path, self = m_lifeline.weak()] {
                      const auto kept = decodedWhole(*source, path);
                      if (self.isCut())
                          return;
                      loop.post([self, path, kept] {
                          ModuleSoundPlayer* const player = self.get();
                          if (player && kept)
                              player->m_kept[path] = kept;
                          else if (player)
                              player->m_kept.erase(path);
                      });
                  });
}

std::unique_ptr<Sound> ModuleSoundPlayer::soundWithData(const QByteArray& file,
                                                        const QString& name) {
    return std::make_unique<ModuleSound>(m_loop, m_loader, SoundUse::Ring, name, [file](QString&) {
        return std::make_shared<SoundFile>(file);
    });
}

QStringList ModuleSoundPlayer::soundUnfilteredTypes() const {
    const SoundModule* module = m_loader->module();
    QStringList types;
    for (const SoundType& type : soundTypes)
        if (!module || module->supports(type.demuxer, type.decoder))
            types << QString::fromLatin1(type.mimeType);
    return types;
}

} // namespace dorvane
