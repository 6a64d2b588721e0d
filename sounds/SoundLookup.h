// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

#include <functional>
#include <variant>

namespace dorvane {

class AudioStorageController;

// Why a sound cannot be had, in words for the user.
struct SoundProblem {
    QString text;
};

// Finds the full path of a sound of the library by its name, in capital or small letters, or of a
// file by its full path, which is added to the library first as a dropped one is. Calls back once,
// at once or when the file was copied. The library must outlive that.
void findSound(AudioStorageController& library, const QString& nameOrPath,
               const std::function<void(const std::variant<QString, SoundProblem>& sound)>& found);

} // namespace dorvane
