// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/sound/ModuleSoundPlayer.h"

#include "platform/linux/sound/ModuleSound.h"
#include "platform/linux/sound/SoundFile.h"
#include "platform/linux/sound/SoundLoader.h"
#include "platform/linux/sound/SoundModule.h"
#include "platform/linux/sound/SoundTypes.h"

namespace dorvane {

ModuleSoundPlayer::ModuleSoundPlayer(RunLoop& loop, const QString& modulePath)
    : m_loop(loop), m_loader(std::make_shared<SoundLoader>(modulePath)) {}

ModuleSoundPlayer::~ModuleSoundPlayer() = default;

std::unique_ptr<Sound> ModuleSoundPlayer::soundWithContentsOfFile(const QString& path) {
    return std::make_unique<ModuleSound>(
        m_loop, m_loader, SoundUse::Other, path,
        [path](QString& error) { return SoundFile::open(path, error); });
}

std::unique_ptr<Sound> ModuleSoundPlayer::ringWithContentsOfFile(const QString& path) {
    return std::make_unique<ModuleSound>(
        m_loop, m_loader, SoundUse::Ring, path,
        [path](QString& error) { return SoundFile::open(path, error); });
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
