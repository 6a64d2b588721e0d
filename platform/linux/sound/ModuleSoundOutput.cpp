// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/sound/ModuleSoundOutput.h"

#include "platform/Lifeline.h"
#include "platform/linux/sound/ModuleSoundPlayer.h"
#include "platform/linux/sound/SoundLoader.h"
#include "platform/linux/sound/SoundModule.h"
#include "platform/linux/sound/SoundTrial.h"

#include <utility>

namespace dorvane {

class ModuleSoundOutput::ModuleWatch final : public Watch {
public:
    ModuleWatch(RunLoop& loop, std::shared_ptr<SoundLoader> loader, Changed changed)
        : m_loop(loop), m_loader(std::move(loader)), m_changed(std::move(changed)) {
        m_loader->run(SoundUse::Ring, QString(),
                      [&loop_ = m_loop, source = m_loader->source(), watch = m_lifeline.weak()] {
                          QString error;
                          SoundModule* const module = source->load(error);
                          loop_.post([watch, module, error] {
                              if (ModuleWatch* const self = watch.get())
                                  self->loaded(module, error);
                          });
                      });
    }

private:
    void loaded(SoundModule* module, const QString& error) {
        if (!module) {
            m_changed(
                {.obstacle = SoundOutputState::Obstacle::NoModule, .detail = error, .volume = 0});
            return;
        }
        m_watch = module->watch(
            [&loop = m_loop, watch = m_lifeline.weak()](const SoundOutputState& state) {
                loop.post([watch, state] {
                    if (ModuleWatch* const self = watch.get())
                        self->m_changed(state);
                });
            });
    }

    RunLoop& m_loop;
    const std::shared_ptr<SoundLoader> m_loader;
    const Changed m_changed;
    std::unique_ptr<SoundWatch> m_watch;
    Lifeline<ModuleWatch> m_lifeline{*this};
};

ModuleSoundOutput::ModuleSoundOutput(RunLoop& loop, ModuleSoundPlayer& player)
    : m_loop(loop), m_player(player) {}

ModuleSoundOutput::~ModuleSoundOutput() = default;

std::unique_ptr<SoundOutput::Watch> ModuleSoundOutput::watch(Changed changed) {
    return std::make_unique<ModuleWatch>(m_loop, m_player.loader(), std::move(changed));
}

void ModuleSoundOutput::prove(const QString& path, std::function<void(SoundProof)> done) {
    m_asking.push_back(std::move(done));
    if (m_trial)
        return;
    m_trial = std::make_unique<SoundTrial>(m_loop, m_player, path, [this](SoundProof proof) {
        m_trial.reset();
        for (const auto& asking : std::exchange(m_asking, {}))
            asking(proof);
    });
}

} // namespace dorvane
