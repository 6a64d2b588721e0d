// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <memory>

class QMessageBox;
class QString;

namespace dorvane {

struct MoveOffer;

// The question, with "Do Not Move" on Escape, and a box with which the question goes away for good.
// The caller shows it; main thread only.
[[nodiscard]] std::unique_ptr<QMessageBox> moveAlert(const MoveOffer& offer);

// Once it is shown: whoever is typing as it comes up presses none of its buttons.
void takeDefaultButton(QMessageBox& moveAlert);
// From then on Return means the button that changes nothing.
void giveDefaultButton(QMessageBox& moveAlert);

// What is shown when the program could not be moved, with the reason, a sentence.
[[nodiscard]] std::unique_ptr<QMessageBox> moveFailure(const MoveOffer& offer,
                                                       const QString& reason);

} // namespace dorvane
