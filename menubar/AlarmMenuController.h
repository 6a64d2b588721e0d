// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/AlarmDelegate.h"
#include "core/RingEvent.h"
#include "editor/AlarmEditorDelegate.h"
#include "editor/AlarmSetPreController.h"
#include "firing/AlarmRinger.h"
#include "firing/SnoozeWindowControllerDelegate.h"
#include "firing/TextSpeaker.h"
#include "menubar/MainMenuConstructor.h"
#include "menubar/StatusMenu.h"
#include "menubar/StatusView.h"
#include "platform/NotificationCenter.h"

#include <functional>
#include <memory>
#include <optional>
#include <vector>

namespace dorvane {

class AlarmSetController;
class AlarmPause;
class Appearance;
class BreakCycle;
class Bundle;
class Clock;
class LastDeletion;
class PendixRespitoWindowsController;
class QuickWindow;
class SleepInhibitor;
class SoundOutput;
class SpeechService;
class StatusItem;
class StoredAlarms;

// Joins the status area to the rest: answers the menu, is the delegate of every alarm, of the
// snooze windows and of the presets, and carries out what becomes of an alarm after it rang. Main
// thread only.
class AlarmMenuController final : public AlarmDelegate,
                                  public AlarmEditorDelegate,
                                  public AlarmPresetDelegate,
                                  public SnoozeWindowControllerDelegate {
public:
    // What it joins; all of it must outlive the controller.
    struct Surroundings {
        RunLoop& runLoop;
        NotificationCenter& notifications;
        Clock& clock;
        StoredAlarms& storedAlarms;
        StatusItem& statusItem;
        Appearance& appearance;
        const Bundle& bundle;
        SoundPlayer& player;
        SoundRepeat& repeat;
        SpeechService& speech;
        SoundOutput& soundOutput;
        SleepInhibitor& sleepInhibitor;
        // See AlarmRinger.
        std::function<bool(const QString& path)> isSystemSound;
        // Makes an editor window, not shown yet.
        std::function<std::unique_ptr<AlarmSetController>()> makeEditor;
        // Called before another window is made here. May be empty.
        std::function<void()> prepareWindow = {};
        // What quick alarms have.
        std::function<RingDefaults()> ringDefaults;
        // The break reminder: its window, made when it is first needed, its cycle, and whether it
        // runs. Empty where there is none.
        std::function<PendixRespitoWindowsController&()> sharedRespito;
        std::function<BreakCycle&()> breakCycle;
        std::function<bool()> breaksRun;
        // Commands of the menu that are not about alarms; an empty one shows its entry disabled.
        std::function<void()> showAlarms;
        std::function<void()> openPrefs;
        std::function<void()> showGoogleHelp;
        std::function<void()> terminate;
        // Told what befalls each alarm that rings; must not touch the clock's list. May be empty.
        std::function<void(RingEvent event, const AlarmPtr& alarm)> ringing = {};
        // Told when an alarm that rang moves on and had been due again before it was answered, with
        // the last such due time. May be empty.
        std::function<void(const AlarmPtr& alarm, const QDateTime& due)> cameRoundAgain = {};
        // What comes next of the breaks, and whether the menu has an entry for them; empty where
        // there are none.
        std::function<BreakOutlook()> breakOutlook = {};
        std::function<bool()> showsBreaks = {};
        // The pause of what comes again; null where there is none. Must outlive the controller.
        AlarmPause* pause = nullptr;
        // Keeps what is deleted; null where nothing does. Must outlive the controller.
        LastDeletion* lastDeletion = nullptr;
        // See SnoozeWindowStack.
        MakeNotice makeNotice = {};
        // See AlarmRinger.
        std::function<float()> volume = {};
    };

    // Shows the icon with its menu.
    explicit AlarmMenuController(Surroundings surroundings);
    ~AlarmMenuController() override;
    AlarmMenuController(const AlarmMenuController&) = delete;
    AlarmMenuController& operator=(const AlarmMenuController&) = delete;

    // The one instance of the application.
    static AlarmMenuController& mainMenuController();

    // Opens an editor for a new alarm.
    void createAlarm();
    // Opens an editor for a running or a stored alarm.
    void editAlarm(const AlarmPtr& alarm);
    // A running alarm goes on as what it was edited to, and no longer rings.
    void replaceAlarm(const AlarmPtr& old, const AlarmPtr& alarm);
    // Starts a quick alarm.
    void createPreAlarm(int minutes);
    // Opens the window that reads a timer or an alarm from one line.
    void quick();
    // Starts a stored alarm; one that is past and does not repeat is offered in the editor.
    void setAlarm(const AlarmPtr& alarm);
    // The same, by the decision of rearmAtStart(), and answers the alarm that runs: a copy of the
    // stored one, in the place of one that was started from it before. Null, and nothing happens,
    // when its moment has passed.
    [[nodiscard]] AlarmPtr startStored(const Alarm& stored);
    // Ends a running alarm, even one that repeats, and takes its window along.
    void clearFromMenu(const AlarmPtr& alarm);
    // Puts a running alarm into the library, once.
    void saveFromMenu(const AlarmPtr& alarm);
    // Answers an alarm that rings, as the buttons of its window do.
    void snoozeAlarm(const AlarmPtr& alarm, qint64 minutes);
    void clearAlarm(const AlarmPtr& alarm);
    // Clears every alarm that rings.
    void clearAll();
    // Has a running alarm go on from what it is due for next as if it had rung and been cleared, in
    // silence. False, and nothing happens, when that cannot be: see canSkip().
    bool skipNext(const AlarmPtr& alarm);
    // Pauses what comes again, until so many days from today begin, or with 0 until it is resumed.
    void pauseAlarms(int days);
    void resumeAlarms();
    // Deletes a stored alarm from the library, or ends a running one with its window.
    void deleteAlarm(const AlarmPtr& alarm);
    // Both together, either of which may be null.
    void deleteAlarms(const AlarmPtr& running, const AlarmPtr& stored);
    // Takes a running alarm out of the clock and keeps it in the library, listed; a timer of the
    // menu, of which nothing is kept, is deleted.
    void switchOff(const AlarmPtr& alarm);
    // Answers the title of a copy in the library; empty when there is no room, which is told.
    [[nodiscard]] QString duplicate(const AlarmPtr& alarm);

    void scheduleAlarm(const AlarmPtr& alarm);
    // After it rang: removes it or moves it on to its next occurrence.
    void unscheduleAlarm(const AlarmPtr& alarm);
    void removeAlarm(const AlarmPtr& alarm);

    // Opens the break reminder's window.
    void createRespito();
    // Starts the reminder, counting its breaks from the first.
    void startRespito();
    void stopRespito();
    // A break is hidden by other windows, or no longer.
    void breakIsUnseen(bool isUnseen);

    // Stops the flashing and shows the nearest alarm.
    void updateStatusView();

    // Opens the menu as a click on the icon does, for somebody who may not be there: it makes way
    // for an alarm at once.
    void openMenu() { m_statusView.openMenuUnasked(); }

    // See StatusView.
    [[nodiscard]] const QString& summary() const { return m_statusView.summary(); }

    void alarmIsNear(const AlarmPtr& alarm) override;
    void alarmTriggered(const AlarmPtr& alarm) override;
    void acceptedAlarm(AlarmSetController& editor, const AlarmPtr& alarm) override;
    void acceptedPreAlarm(AlarmSetPreController& controller, const AlarmPtr& alarm) override;
    void snoozeWindowDidSnooze(SnoozeWindowController& window) override;
    void snoozeWindowDidClear(SnoozeWindowController& window) override;
    void snoozeWindowDidClearAll(SnoozeWindowController& window) override;
    void snoozeWindowWasNotAnswered(SnoozeWindowController& window) override;

private:
    [[nodiscard]] MenuCommands menuCommands();
    void tellNoRoom() const;
    [[nodiscard]] bool isCurrent(const Alarm& alarm) const;
    void menuWillAppear();
    void darkModeChanged();
    void showBreaks();
    void showPause();
    enum class EditorPurpose { Edit, Start };
    void showEditor(const AlarmPtr& alarm, EditorPurpose purpose);
    [[nodiscard]] AlarmSetController* editorOf(const Alarm& alarm) const;
    void editorClosed(const AlarmSetController* editor);
    void silence(const AlarmPtr& alarm, RingEvent event);
    void endRinging(const AlarmPtr& alarm);
    void finishRinging(const AlarmPtr& alarm, RingEvent event);
    void closeWindow(const AlarmPtr& alarm);
    void tell(RingEvent event, const AlarmPtr& alarm) const;

    Surroundings m_surroundings;
    std::optional<StatusMenu> m_ourMenu;
    StatusView m_statusView;
    MainMenuConstructor m_menuConstructor;
    TextSpeaker m_textSpeaker;
    AlarmRinger m_ringer;
    std::vector<std::unique_ptr<AlarmSetController>> m_editors;
    std::unique_ptr<QuickWindow> m_quick;
    NotificationCenter::Observation m_menuObservation;
    NotificationCenter::Observation m_breaksObservation;
    NotificationCenter::Observation m_alarmsObservation;
    bool m_isBreakUnseen = false;
};

} // namespace dorvane
