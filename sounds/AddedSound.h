// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

#include <vector>

namespace dorvane {

// What became of a file that was to be added to the user's sounds.
struct AddedSound {
    QString name;         // as the menus show it
    QString path = {};    // of the file in the library
    QString problem = {}; // why it was not added, in words for the user; empty when it was
};

// What to tell the user about them, in a few plain lines.
[[nodiscard]] QString messageAbout(const std::vector<AddedSound>& sounds);

} // namespace dorvane
