// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/Lifeline.h"
#include "platform/RunLoop.h"
#include "relocate/MoveOffer.h"

#include <functional>

class QMessageBox;

namespace dorvane {

class UserDefaults;

// Offers, once for each place, to move the program to where programs live, when it was started from
// elsewhere: from the folder for downloads, say, or from a disk image. The program goes on
// meanwhile. Main thread only; the copy is made on a thread of its own.
class MoveToApplications final {
public:
    struct Surroundings {
        RunLoop& runLoop;
        UserDefaults& defaults;
        Relocator& relocator;
        // Called after a copy was made and before the old bundle goes, for what refers to it.
        std::function<void(const QString& destination)> moved;
        // Ends the process in order; another one takes its place.
        std::function<void()> end;
    };

    // All of the surroundings must outlive the object.
    explicit MoveToApplications(Surroundings surroundings);

    // Asks, unless there is nothing to offer or that was answered before. Once the program has
    // moved, calls `end` of the surroundings.
    void offer(const QString& bundlePath);

    // How long the question has no default button.
    static constexpr std::chrono::seconds noDefault{1};

private:
    struct Outcome {
        enum What { Copied, Switched, Refused, Failed } what;
        QString reason = {}; // of a failure, for the user
    };

    void ask();
    void answer(const QMessageBox& alert);
    void remember(const QString& key, const QVariant& value);
    void move();
    [[nodiscard]] static Outcome copy(Relocator& relocator, const MoveOffer& offer);
    [[nodiscard]] static Outcome copyHere(Relocator& relocator, const MoveOffer& offer);
    void conclude(const Outcome& outcome);
    void leave();

    Surroundings m_surroundings;
    MoveOffer m_offer;
    RunLoopTimer m_default;
    Lifeline<MoveToApplications> m_lifeline{*this};
};

} // namespace dorvane
