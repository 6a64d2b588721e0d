// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/RunLoop.h"
#include "platform/SleepInhibitor.h"
#include "platform/SoundOutput.h"

#include <utility>
#include <vector>

namespace dorvane::testing {

// An output whose state the test sets. Like the real one it tells nothing from inside watch().
class FakeSoundOutput final : public SoundOutput {
public:
    explicit FakeSoundOutput(RunLoop& loop) : m_loop(loop) {}

    [[nodiscard]] std::unique_ptr<Watch> watch(Changed changed) override {
        auto watch = std::make_unique<FakeWatch>(*this, std::move(changed));
        m_loop.defer([this, asked = watch.get()] {
            for (FakeWatch* const each : std::vector(m_watches))
                if (each == asked)
                    each->changed(m_state);
        });
        return watch;
    }

    void prove(const QString&, std::function<void(SoundProof)> done) override {
        m_loop.defer([this, done = std::move(done)] { done(proof); });
    }

    SoundProof proof = SoundProof::Heard;

    void setState(const SoundOutputState& state) {
        m_state = state;
        for (FakeWatch* const watch : std::vector(m_watches))
            watch->changed(state);
    }

    [[nodiscard]] std::size_t watches() const { return m_watches.size(); }

private:
    struct FakeWatch final : Watch {
        FakeWatch(FakeSoundOutput& output_, Changed changed_)
            : output(output_), changed(std::move(changed_)) {
            output.m_watches.push_back(this);
        }
        FakeWatch(const FakeWatch&) = delete;
        FakeWatch& operator=(const FakeWatch&) = delete;
        ~FakeWatch() override { std::erase(output.m_watches, this); }
        FakeSoundOutput& output;
        Changed changed;
    };

    RunLoop& m_loop;
    SoundOutputState m_state{.obstacle = {}, .detail = {}, .volume = 100};
    std::vector<FakeWatch*> m_watches;
};

struct FakeSleepInhibitor final : SleepInhibitor {
    void setHeld(bool held) override { isHeld = held; }
    bool isHeld = false;
};

} // namespace dorvane::testing
