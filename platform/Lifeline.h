// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <memory>
#include <utility>

namespace dorvane {

// Lets callbacks that come later find out whether the object that asked for them is still there. A
// member of that object, made with `*this`; what was taken from it expires with the object.
template<typename Owner>
class Lifeline {
public:
    // Copied and destroyed on any thread.
    class Weak {
    public:
        explicit Weak(std::weak_ptr<Owner*> owner) : m_owner(std::move(owner)) {}

        // Null when the owner is gone. On the owner's thread only. Nothing is kept alive meanwhile:
        // whoever asks again sees that a callback destroyed the owner.
        [[nodiscard]] Owner* get() const {
            const auto owner = m_owner.lock();
            return owner ? *owner : nullptr;
        }

        // Any thread: true once the owner is gone.
        [[nodiscard]] bool isCut() const { return m_owner.expired(); }

    private:
        std::weak_ptr<Owner*> m_owner;
    };

    explicit Lifeline(Owner& owner) : m_owner(std::make_shared<Owner*>(&owner)) {}
    Lifeline(const Lifeline&) = delete;
    Lifeline& operator=(const Lifeline&) = delete;

    [[nodiscard]] Weak weak() const { return Weak(m_owner); }

    // A function that calls `callback(owner)`, or does nothing when the owner is gone by then.
    template<typename Callback>
    [[nodiscard]] auto guard(Callback callback) const {
        return [weak = weak(), callback = std::move(callback)] {
            if (Owner* const owner = weak.get())
                callback(*owner);
        };
    }

private:
    std::shared_ptr<Owner*> m_owner;
};

} // namespace dorvane
