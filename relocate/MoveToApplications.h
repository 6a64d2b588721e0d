// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/Lifeline.h"
#include "relocate/MoveOffer.h"

#include <functional>

class QMessageBox;

namespace dorvane {

class RunLoop;
class UserDefaults;

// Offers, once in a start, to move the program to where programs live, when it was started from
// elsewhere: from the folder for downloads, say, or from a disk image. Main thread only; the copy
// is made on a thread of its own.
class MoveToApplications final {
public:
    struct Surroundings {
        RunLoop& runLoop;
        UserDefaults& defaults;
        Relocator& relocator;
        // Called after a copy was made and before the old bundle goes, for what refers to it.
        std::function<void(const QString& destination)> moved;
        // Ends the process with status 0; another one takes its place.
        std::function<void()> end;
    };

    // All of the surroundings must outlive the object.
    explicit MoveToApplications(Surroundings surroundings);

    // Calls `stay`, at once where there is nothing to offer, or when the program is to go on
    // starting from where it is; or else `end` of the surroundings. The loop must run, or be about
    // to.
    void offer(const QString& bundlePath, std::function<void()> stay);

private:
    enum class Outcome { Copied, Switched, Refused, Failed };

    void ask();
    void answer(const QMessageBox& alert);
    void move();
    [[nodiscard]] static Outcome copy(Relocator& relocator, const MoveOffer& offer);
    [[nodiscard]] static Outcome copyHere(Relocator& relocator, const MoveOffer& offer);
    void conclude(Outcome outcome);
    void leave();

    Surroundings m_surroundings;
    MoveOffer m_offer;
    std::function<void()> m_stay;
    Lifeline<MoveToApplications> m_lifeline{*this};
};

} // namespace dorvane
