// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "editor/SoundPreview.h"
#include "platform/Lifeline.h"
#include "sounds/AlarmSoundMenuContructor.h"
#include "sounds/SoundMenuTarget.h"

#include <QWidget>

#include <functional>
#include <memory>

namespace Ui {
class RingChoices;
}

namespace dorvane {

class AudioStorageController;
class Bundle;
class ReminderController;
class RingPreferences;

// The rows of the preferences window for what rings: the sound and the snooze of new alarms, and
// how loud all are. What is chosen counts at once, and is heard. Main thread only.
class RingChoices final : public QWidget, private SoundMenuTarget {
public:
    // All must outlive the rows.
    struct Surroundings {
        RunLoop& runLoop;
        SoundPlayer& player;
        const AudioStorageController& library;
        const Bundle& bundle;
        RingPreferences& preferences;
        // A window in which reminders are recorded, not yet shown.
        std::function<std::shared_ptr<ReminderController>()> makeReminders;
    };
    explicit RingChoices(Surroundings surroundings);
    ~RingChoices() override;

protected:
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;

private:
    void connectControls();
    void soundSelected(const QString& path) override;
    void manageReminders() override;
    [[nodiscard]] QString soundPath() const;
    void showSound();
    void showVolume(int hundredths);
    void play();
    void previewChanged(SoundPreview::State state);

    Surroundings m_surroundings;
    std::unique_ptr<Ui::RingChoices> m_form;
    AlarmSoundMenuContructor m_asmc;
    SoundPreview m_preview;
    std::weak_ptr<ReminderController> m_reminders; // which lives while its window is shown
    Lifeline<RingChoices> m_lifeline{*this};
};

} // namespace dorvane
