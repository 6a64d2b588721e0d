// SPDX-License-Identifier: GPL-3.0-or-later
#include "menubar/AlarmMenuController.h"

#include "breaks/BreakCycle.h"
#include "breaks/PendixRespitoWindowsController.h"
#include "core/AlarmContext.h"
#include "core/AlarmPause.h"
#include "core/Clock.h"
#include "core/LastDeletion.h"
#include "core/LocalTime.h"
#include "core/NotificationNames.h"
#include "core/Rearm.h"
#include "core/SameAlarm.h"
#include "core/StoredAlarms.h"
#include "editor/AlarmSetController.h"
#include "editor/QuickWindow.h"
#include "firing/SnoozeWindowController.h"
#include "platform/Appearance.h"
#include "platform/Bundle.h"
#include "platform/StatusItem.h"
#include "widgets/BringToFront.h"
#include "widgets/Message.h"

#include <algorithm>

namespace dorvane {

AlarmMenuController::AlarmMenuController(Surroundings surroundings)
    : m_surroundings(std::move(surroundings))
    , m_statusView(m_surroundings.runLoop, m_surroundings.clock, m_surroundings.notifications,
                   m_surroundings.statusItem)
    , m_menuConstructor(
          m_surroundings.runLoop, m_surroundings.clock, m_surroundings.notifications,
          m_surroundings.statusItem,
          {.storedAlarms = [this] { return m_surroundings.storedAlarms.alarms(); },
           .breaksRun = m_surroundings.breaksRun,
           .breakOutlook = m_surroundings.breakOutlook,
           .showsBreaks = m_surroundings.showsBreaks,
           .pausedUntil =
               [pause = m_surroundings.pause] { return pause ? pause->until() : std::nullopt; }},
          menuCommands())
    , m_textSpeaker(m_surroundings.speech)
    , m_ringer({.runLoop = m_surroundings.runLoop,
                .player = m_surroundings.player,
                .repeat = m_surroundings.repeat,
                .textSpeaker = m_textSpeaker,
                .icon = m_statusView,
                .place = m_statusView,
                .windowDelegate = *this,
                .isSystemSound = m_surroundings.isSystemSound,
                .output = m_surroundings.soundOutput,
                .inhibitor = m_surroundings.sleepInhibitor,
                // Not the library's, which may have been cleared away with the other caches.
                .standInPath =
                    [this] {
                        return m_surroundings.bundle.resourcePath(
                            QStringLiteral("Sounds/Ping.aiff"));
                    },
                .makeNotice = m_surroundings.makeNotice,
                .volume = m_surroundings.volume}) {
    m_surroundings.appearance.setChanged([this] { darkModeChanged(); });
    darkModeChanged();
    m_menuObservation = m_surroundings.notifications.addObserver(
        mainMenuWillAppearNotification, [this](const void*) { menuWillAppear(); });
    m_breaksObservation = m_surroundings.notifications.addObserver(
        breaksDidChangeNotification, [this](const void*) { showBreaks(); });
    if (!m_surroundings.pause)
        return;
    m_alarmsObservation = m_surroundings.notifications.addObserver(
        alarmsDidChangeNotification, [this](const void*) { showPause(); }, &m_surroundings.clock);
    showPause();
}

AlarmMenuController::~AlarmMenuController() {
    m_surroundings.appearance.setChanged({});
    for (const AlarmPtr& alarm : m_surroundings.clock.allAlarms())
        alarm->setDelegate(nullptr);
}

MenuCommands AlarmMenuController::menuCommands() {
    const auto onAlarm = [this](void (AlarmMenuController::*command)(const AlarmPtr&)) {
        return [this, command](const AlarmPtr& alarm) {
            if (isCurrent(*alarm))
                (this->*command)(alarm);
        };
    };
    const auto onBreaks = [this](void (AlarmMenuController::*command)()) {
        return m_surroundings.sharedRespito
                   ? std::function<void()>([this, command] { (this->*command)(); })
                   : std::function<void()>();
    };
    return {.createAlarm = [this] { createAlarm(); },
            .showAlarms = m_surroundings.showAlarms,
            .createPreAlarm = [this](int minutes) { createPreAlarm(minutes); },
            .quick = [this] { quick(); },
            .editAlarm = onAlarm(&AlarmMenuController::editAlarm),
            .clearFromMenu = onAlarm(&AlarmMenuController::clearFromMenu),
            .saveFromMenu = onAlarm(&AlarmMenuController::saveFromMenu),
            .deleteAlarm = onAlarm(&AlarmMenuController::deleteAlarm),
            .setAlarm = onAlarm(&AlarmMenuController::setAlarm),
            .clearAll = [this] { clearAll(); },
            .skipNext =
                [this](const AlarmPtr& alarm) {
                    if (isCurrent(*alarm))
                        skipNext(alarm);
                },
            .pauseAlarms = m_surroundings.pause
                               ? std::function<void(int)>([this](int days) { pauseAlarms(days); })
                               : nullptr,
            .resumeAlarms = [this] { resumeAlarms(); },
            .createRespito = onBreaks(&AlarmMenuController::createRespito),
            .startRespito = onBreaks(&AlarmMenuController::startRespito),
            .stopRespito = onBreaks(&AlarmMenuController::stopRespito),
            .openPrefs = m_surroundings.openPrefs,
            .showGoogleHelp = m_surroundings.showGoogleHelp,
            .terminate = m_surroundings.terminate};
}

// A row may be out of date: of an alarm that has had its day meanwhile, or of a stored one that was
// changed or deleted.
bool AlarmMenuController::isCurrent(const Alarm& alarm) const {
    if (alarm.isActive())
        return std::ranges::any_of(m_surroundings.clock.allAlarms(),
                                   [&](const AlarmPtr& each) { return each.get() == &alarm; });
    const auto stored = m_surroundings.storedAlarms.alarms().value_or(std::vector<AlarmPtr>());
    return std::ranges::any_of(stored,
                               [&](const AlarmPtr& each) { return each->isStoredLike(alarm); });
}

// The first press pays for the fonts; until then the program needs none. The desktop may have
// others by now.
void AlarmMenuController::menuWillAppear() {
    if (m_ourMenu && !m_ourMenu->isVisible() && m_ourMenu->hasOldFonts()) {
        m_menuConstructor.setObjectMenu(nullptr);
        m_ourMenu.reset();
    }
    if (!m_ourMenu) {
        m_ourMenu.emplace(m_surroundings.runLoop);
        m_menuConstructor.setObjectMenu(&*m_ourMenu);
        m_statusView.setAlarmMenu(&*m_ourMenu);
    }
    m_menuConstructor.constructMenu();
}

void AlarmMenuController::darkModeChanged() {
    m_statusView.setBackgroundImage(m_surroundings.bundle.resourcePath(
        m_surroundings.appearance.isPanelDark() ? QStringLiteral("images/ClockIconWhite.svg")
                                                : QStringLiteral("images/ClockIcon.svg")));
}

void AlarmMenuController::createAlarm() {
    showEditor(nullptr, EditorPurpose::Edit);
}

void AlarmMenuController::editAlarm(const AlarmPtr& alarm) {
    showEditor(alarm, EditorPurpose::Edit);
}

// One alarm has one editor at a time, or the last to be set would undo what the others changed. New
// alarms have not more editors than anybody uses: other programs may ask for them.
void AlarmMenuController::showEditor(const AlarmPtr& alarm, EditorPurpose purpose) {
    constexpr std::size_t most = 20;
    AlarmSetController* open = alarm ? editorOf(*alarm) : nullptr;
    if (!alarm && m_editors.size() >= most)
        open = m_editors.back().get();
    if (open) {
        bringToFront(*open);
        return;
    }
    AlarmSetController* const editor = m_editors.emplace_back(m_surroundings.makeEditor()).get();
    editor->setDelegate(this);
    QObject::connect(editor, &QDialog::finished, editor, [this, editor] { editorClosed(editor); });
    if (purpose == EditorPurpose::Start)
        editor->showToStart(alarm);
    else
        editor->showWithAlarm(alarm);
}

// Each building of the menu has records of its own for what is stored, where the title is the key.
AlarmSetController* AlarmMenuController::editorOf(const Alarm& alarm) const {
    const auto isEdited = [&alarm](const auto& editor) {
        const Alarm* const editing =
            (editor->starting() ? editor->starting() : editor->editingOne()).get();
        return editing == &alarm || (editing && !editing->isActive() && !alarm.isActive() &&
                                     editing->title() == alarm.title());
    };
    const auto found = std::find_if(m_editors.begin(), m_editors.end(), isEdited);
    return found == m_editors.end() ? nullptr : found->get();
}

void AlarmMenuController::editorClosed(const AlarmSetController* editor) {
    const auto found = std::find_if(m_editors.begin(), m_editors.end(),
                                    [&](const auto& open) { return open.get() == editor; });
    if (found == m_editors.end())
        return;                      // it can be closed once more until it is deleted
    found->release()->deleteLater(); // it is what called
    m_editors.erase(found);
}

void AlarmMenuController::acceptedAlarm(AlarmSetController& editor, const AlarmPtr& alarm) {
    if (editor.editingOne())
        return replaceAlarm(editor.editingOne(), alarm);
    m_surroundings.clock.insertAlarm(alarm);
    alarm->setDelegate(this);
}

// A running alarm goes on as the new one, from where it was; a stored one stays stored only.
void AlarmMenuController::replaceAlarm(const AlarmPtr& old, const AlarmPtr& alarm) {
    alarm->setDelegate(this);
    if (!old->isActive())
        return;
    if (old->isTriggered() || old->context())
        endRinging(old);      // or an answer to its window would undo what was set
    alarm->setIsActive(true); // or deleting it would look for it in the library
    if (!m_surroundings.clock.replaceAlarm(old, alarm))
        m_surroundings.clock.insertAlarm(alarm); // it rang its last while it was being edited
}

void AlarmMenuController::createPreAlarm(int minutes) {
    AlarmSetPreController(m_surroundings.runLoop, m_surroundings.storedAlarms,
                          m_surroundings.ringDefaults(), *this)
        .setDefault(minutes);
}

void AlarmMenuController::quick() {
    if (!m_quick && m_surroundings.prepareWindow)
        m_surroundings.prepareWindow();
    if (!m_quick)
        m_quick = std::make_unique<QuickWindow>(
            QuickWindow::Surroundings{m_surroundings.runLoop, m_surroundings.ringDefaults,
                                      [this](const AlarmPtr& alarm) { scheduleAlarm(alarm); }});
    m_quick->showForTyping();
}

void AlarmMenuController::acceptedPreAlarm(AlarmSetPreController&, const AlarmPtr& alarm) {
    scheduleAlarm(alarm);
}

void AlarmMenuController::setAlarm(const AlarmPtr& alarm) {
    if (!startStored(*alarm))
        showEditor(alarm, EditorPurpose::Start);
}

AlarmPtr AlarmMenuController::startStored(const Alarm& stored) {
    const QDateTime now = m_surroundings.runLoop.now();
    const RearmDecision decision = rearmAtStart(stored, now, weekdayName(now.date()));
    if (decision.outcome == RearmDecision::Outcome::Remove)
        return nullptr;
    const AlarmPtr alarm = stored.storedCopy();
    applyRearm(decision, *alarm);
    Clock& clock = m_surroundings.clock;
    if (const AlarmPtr before = runningAs(stored, clock.allAlarms())) {
        endRinging(before);
        static_cast<void>(clock.replaceAlarm(before, alarm));
    }
    scheduleAlarm(alarm);
    return alarm;
}

void AlarmMenuController::scheduleAlarm(const AlarmPtr& alarm) {
    alarm->setDelegate(this);
    m_surroundings.clock.insertAlarm(alarm);
}

void AlarmMenuController::removeAlarm(const AlarmPtr& alarm) {
    m_surroundings.clock.removeAlarm(alarm);
}

void AlarmMenuController::unscheduleAlarm(const AlarmPtr& alarm) {
    const QDateTime now = m_surroundings.runLoop.now();
    const RearmDecision decision = rearmAfterRinging(*alarm, now, weekdayName(now.date()));
    applyRearm(decision, *alarm);
    if (decision.missed.isValid() && m_surroundings.cameRoundAgain)
        m_surroundings.cameRoundAgain(alarm, decision.missed);
    if (decision.outcome == RearmDecision::Outcome::Remove) {
        removeAlarm(alarm);
        return;
    }
    if (decision.outcome == RearmDecision::Outcome::NextWeekday)
        m_surroundings.storedAlarms.updateAlarmList(alarm);
    m_surroundings.clock.alarmDidChange();
}

bool AlarmMenuController::skipNext(const AlarmPtr& alarm) {
    if (!canSkip(*alarm, instantNow(m_surroundings.runLoop)))
        return false;
    unscheduleAlarm(alarm);
    return true;
}

void AlarmMenuController::pauseAlarms(int days) {
    const QDate today = m_surroundings.runLoop.now().date();
    m_surroundings.pause->pauseUntil(
        days == 0 ? untilResumed : instantOf(localMoment(today.addDays(days), QTime(0, 0))));
}

void AlarmMenuController::resumeAlarms() {
    m_surroundings.pause->pauseUntil({});
}

void AlarmMenuController::showPause() {
    m_statusView.showPause(pauseText(m_surroundings.pause->until(), m_surroundings.runLoop.now()));
}

// With its window: a Snooze that is pressed there later would be pressed in vain.
void AlarmMenuController::clearFromMenu(const AlarmPtr& alarm) {
    endRinging(alarm);
    removeAlarm(alarm);
}

void AlarmMenuController::saveFromMenu(const AlarmPtr& alarm) {
    // Its flag is not enough: the stored one may have been deleted since.
    if (alarm->isExisInActiveAlarmList() && m_surroundings.storedAlarms.isListed(alarm->title()))
        return;
    if (!m_surroundings.storedAlarms.updateInactiveAlarmList(*alarm,
                                                             instantNow(m_surroundings.runLoop)))
        return tellNoRoom();
    m_surroundings.notifications.post(mainMenuWillAppearNotification, this);
}

void AlarmMenuController::tellNoRoom() const {
    newMessage(QMessageBox::Warning, QStringLiteral("The alarm is not saved."), noRoomText())
        ->show();
}

void AlarmMenuController::deleteAlarm(const AlarmPtr& alarm) {
    const bool runs = alarm->isActive();
    deleteAlarms(runs ? alarm : nullptr, runs ? nullptr : alarm);
}

void AlarmMenuController::deleteAlarms(const AlarmPtr& running, const AlarmPtr& stored) {
    if (m_surroundings.lastDeletion)
        m_surroundings.lastDeletion->remember(running, stored);
    if (stored)
        m_surroundings.storedAlarms.removeAlarm(stored->title());
    if (running)
        clearFromMenu(running);
}

void AlarmMenuController::switchOff(const AlarmPtr& alarm) {
    if (alarm->isDefaultAlarm())
        return deleteAlarm(alarm);
    if (!m_surroundings.storedAlarms.keep(*alarm, instantNow(m_surroundings.runLoop)))
        return tellNoRoom();
    clearFromMenu(alarm);
}

QString AlarmMenuController::duplicate(const AlarmPtr& alarm) {
    const QString title =
        m_surroundings.storedAlarms.duplicate(*alarm, instantNow(m_surroundings.runLoop));
    if (title.isEmpty())
        tellNoRoom();
    return title;
}

void AlarmMenuController::endRinging(const AlarmPtr& alarm) {
    closeWindow(alarm);
    silence(alarm, RingEvent::Cleared);
}

void AlarmMenuController::silence(const AlarmPtr& alarm, RingEvent event) {
    if (alarm->isTriggered())
        tell(event, alarm);
    m_ringer.deactivateAlarm(alarm);
}

void AlarmMenuController::tell(RingEvent event, const AlarmPtr& alarm) const {
    if (m_surroundings.ringing)
        m_surroundings.ringing(event, alarm);
}

void AlarmMenuController::createRespito() {
    m_surroundings.sharedRespito().showWindow();
}

void AlarmMenuController::startRespito() {
    m_surroundings.sharedRespito().enableRespito();
    m_surroundings.breakCycle().enableRespito();
}

void AlarmMenuController::stopRespito() {
    m_surroundings.sharedRespito().stopRespito();
    m_surroundings.breakCycle().disableRespito();
}

void AlarmMenuController::breakIsUnseen(bool isUnseen) {
    m_isBreakUnseen = isUnseen;
    showBreaks();
}

void AlarmMenuController::showBreaks() {
    if (m_surroundings.breakOutlook)
        m_statusView.showBreaks(m_surroundings.breakOutlook(), m_isBreakUnseen);
}

void AlarmMenuController::alarmIsNear(const AlarmPtr& alarm) {
    m_ringer.prepareAlarm(alarm);
}

void AlarmMenuController::alarmTriggered(const AlarmPtr& alarm) {
    tell(RingEvent::Rings, alarm);
    m_ringer.activateAlarm(alarm);
    m_menuConstructor.updatePanelMenuSoon();
}

void AlarmMenuController::snoozeWindowDidSnooze(SnoozeWindowController& window) {
    snoozeAlarm(window.windowAlarm(), window.snoozeLength());
    window.close(); // whose alarm may have another one by now
}

void AlarmMenuController::snoozeWindowDidClear(SnoozeWindowController& window) {
    clearAlarm(window.windowAlarm());
    window.close();
}

void AlarmMenuController::snoozeWindowDidClearAll(SnoozeWindowController&) {
    clearAll();
}

void AlarmMenuController::clearAll() {
    for (const AlarmPtr& alarm : std::vector(m_surroundings.clock.allAlarms()))
        if (alarm->isTriggered())
            clearAlarm(alarm);
}

void AlarmMenuController::snoozeWindowWasNotAnswered(SnoozeWindowController& window) {
    finishRinging(window.windowAlarm(), RingEvent::Unanswered);
    window.close();
}

void AlarmMenuController::snoozeAlarm(const AlarmPtr& alarm, qint64 minutes) {
    silence(alarm, RingEvent::Snoozed);
    const Instant now = instantNow(m_surroundings.runLoop);
    alarm->setSnoozedMinutes(alarm->snoozedMinutes() +
                             quint64(snoozeMinutes(*alarm, minutes, now)));
    m_surroundings.clock.alarmDidChange();
    closeWindow(alarm);
}

void AlarmMenuController::clearAlarm(const AlarmPtr& alarm) {
    finishRinging(alarm, RingEvent::Cleared);
}

void AlarmMenuController::finishRinging(const AlarmPtr& alarm, RingEvent event) {
    silence(alarm, event);
    unscheduleAlarm(alarm);
    closeWindow(alarm);
}

void AlarmMenuController::closeWindow(const AlarmPtr& alarm) {
    if (alarm->context())
        alarm->context()->close();
}

void AlarmMenuController::updateStatusView() {
    m_statusView.stopFlashing();
    m_statusView.updateStatusView();
}

} // namespace dorvane
