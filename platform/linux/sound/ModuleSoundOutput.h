// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/RunLoop.h"
#include "platform/SoundOutput.h"

#include <memory>

namespace dorvane {

class SoundLoader;

// The output as the sound module tells of it. Asking brings the module into the process, on a
// loading thread.
class ModuleSoundOutput final : public SoundOutput {
public:
    // The loop must outlive the output and its watches.
    ModuleSoundOutput(RunLoop& loop, std::shared_ptr<SoundLoader> loader);

    [[nodiscard]] std::unique_ptr<Watch> watch(Changed changed) override;

private:
    class ModuleWatch;

    RunLoop& m_loop;
    std::shared_ptr<SoundLoader> m_loader;
};

} // namespace dorvane
