// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/Lifeline.h"
#include "platform/RunLoop.h"
#include "platform/Sound.h"

#include <QByteArray>
#include <QString>

#include <functional>
#include <map>
#include <memory>

namespace dorvane {

enum class SoundUse;
class SoundLoader;
struct KeptSound;

// The sound player on FFmpeg and PulseAudio, which live in a module that the first sound brings
// into the process, on a loading thread. Where that fails, the sound is empty, the reason is
// logged, and the next sound tries again. The run loop must outlive the player and its sounds.
class ModuleSoundPlayer final : public SoundPlayer {
public:
    ModuleSoundPlayer(RunLoop& loop, const QString& modulePath);
    ~ModuleSoundPlayer() override;

    [[nodiscard]] std::unique_ptr<Sound> soundWithContentsOfFile(const QString& path) override;

    [[nodiscard]] std::unique_ptr<Sound> ringWithContentsOfFile(const QString& path) override;

    [[nodiscard]] bool canPlay(const QString& path) const override;

    void lookFor(const QString& path, std::function<void(bool isThere)> found) override;

    // Where it cannot be read, or is longer than some seconds, nothing is kept; the next call tries
    // again.
    void keepInMemory(const QString& path) override;

    // A ring whose file is held in memory already; the name stands for it in the log.
    [[nodiscard]] std::unique_ptr<Sound> soundWithData(const QByteArray& file, const QString& name);

    // Where else the file of a path may lie, when it is gone: asked on loading threads, from then
    // on. Empty for nowhere.
    using Elsewhere = std::function<QString(const QString& path)>;
    void setElsewhere(Elsewhere elsewhere) { m_elsewhere = std::move(elsewhere); }

    // Every type that is known, less those that the installed libraries turn out to lack once they
    // are loaded: listing sound files must not bring them in.
    [[nodiscard]] QStringList soundUnfilteredTypes() const override;

    // For what else needs the module.
    [[nodiscard]] const std::shared_ptr<SoundLoader>& loader() const { return m_loader; }

private:
    [[nodiscard]] std::unique_ptr<Sound> sound(SoundUse use, const QString& path);

    RunLoop& m_loop;
    Elsewhere m_elsewhere;
    std::shared_ptr<SoundLoader> m_loader; // its sounds may outlive the player
    // Null while it is being read.
    std::map<QString, std::shared_ptr<const KeptSound>> m_kept;
    Lifeline<ModuleSoundPlayer> m_lifeline{*this};
};

} // namespace dorvane
