// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/RunLoop.h"
#include "platform/SoundOutput.h"

#include <memory>
#include <vector>

namespace dorvane {

class ModuleSoundPlayer;
class SoundTrial;

// The output as the sound module tells of it. Asking brings the module into the process, on a
// loading thread.
class ModuleSoundOutput final : public SoundOutput {
public:
    // Both must outlive the output; the loop its watches, too.
    ModuleSoundOutput(RunLoop& loop, ModuleSoundPlayer& player);
    ~ModuleSoundOutput() override;

    [[nodiscard]] std::unique_ptr<Watch> watch(Changed changed) override;
    void prove(const QString& path, std::function<void(SoundProof)> done) override;

private:
    class ModuleWatch;

    RunLoop& m_loop;
    ModuleSoundPlayer& m_player;
    std::vector<std::function<void(SoundProof)>> m_asking;
    std::unique_ptr<SoundTrial> m_trial;
};

} // namespace dorvane
