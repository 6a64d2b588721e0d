// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QStringList>

class QMenu;

namespace dorvane {

// The voices as the editor sees them. Main thread only.
class VoiceService {
public:
    virtual ~VoiceService() = default;

    // In the order of the voices' numbers, which begin with 1.
    [[nodiscard]] virtual QStringList voiceNames() const = 0;

    // Keeps the menu's first item and puts one item a voice behind it, each with the voice's name
    // as its data.
    virtual void fillMenuWithVoices(QMenu& menu) = 0;

    // Starts speaking and returns; a number that no voice has says nothing.
    virtual void speakText(const QString& text, int voiceNumber) = 0;
};

} // namespace dorvane
