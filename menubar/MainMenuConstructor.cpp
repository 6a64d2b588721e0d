// SPDX-License-Identifier: GPL-3.0-or-later
#include "menubar/MainMenuConstructor.h"

#include "breaks/PendixTakeABreakSettings.h"
#include "core/Clock.h"
#include "core/NotificationNames.h"
#include "menubar/PanelMenu.h"
#include "menubar/StatusMenu.h"
#include "platform/StatusItem.h"

#include <utility>

namespace dorvane {

using namespace std::chrono_literals;

MainMenuConstructor::MainMenuConstructor(RunLoop& runLoop, Clock& clock,
                                         NotificationCenter& notifications, StatusItem& item,
                                         MenuSources sources, MenuCommands commands,
                                         const QLocale& locale)
    : m_runLoop(runLoop)
    , m_clock(clock)
    , m_item(item)
    , m_sources(std::move(sources))
    , m_commands(std::move(commands))
    , m_locale(locale)
    , m_updateSoon(runLoop, 200ms, [this] { updatePanelMenu(); }) {
    m_alarmsObservation = notifications.addObserver(alarmsDidChangeNotification,
                                                    [this](const void*) { updatePanelMenuSoon(); });
    m_storedAlarmsObservation = notifications.addObserver(
        storedAlarmsDidChangeNotification, [this](const void*) { updatePanelMenuSoon(); });
    m_breakSettingsObservation = notifications.addObserver(
        breakSettingsDidChangeNotification, [this](const void*) { updatePanelMenuSoon(); });
    m_breaksObservation = notifications.addObserver(breaksDidChangeNotification,
                                                    [this](const void*) { updatePanelMenuSoon(); });
    m_item.setPanelMenuWillOpen([this] { updatePanelMenu(); });
    updatePanelMenu();
}

MainMenuConstructor::~MainMenuConstructor() {
    m_item.setPanelMenuWillOpen({});
}

StatusMenu* MainMenuConstructor::objectMenu() const {
    return m_objectMenu;
}

void MainMenuConstructor::setObjectMenu(StatusMenu* menu) {
    m_objectMenu = menu;
    m_objectRows.reset();
    if (menu)
        m_objectRows.emplace(*menu, m_runLoop, m_commands);
}

MainMenuState MainMenuConstructor::state(Instant now) const {
    MainMenuState state;
    state.alarms = m_clock.allAlarms();
    if (m_sources.storedAlarms)
        state.storedAlarms = m_sources.storedAlarms();
    state.breaksRun = m_sources.breaksRun && m_sources.breaksRun();
    if (m_sources.breakOutlook)
        state.nextBreak = outlookText(m_sources.breakOutlook());
    state.showsBreaks = !m_sources.showsBreaks || m_sources.showsBreaks();
    if (m_sources.pausedUntil)
        state.pausedUntil = m_sources.pausedUntil();
    state.noAlarmString = m_noAlarmString;
    state.now = now;
    state.locale = m_locale;
    return state;
}

void MainMenuConstructor::constructMenu() {
    updatePanelMenuSoon();
    // An open menu stays as it was when it opened: nothing moves under the hand that chooses, and
    // no row goes while it handles an event. The next press builds it again.
    const StatusMenu* menu = m_objectMenu;
    if (!menu || menu->isVisible())
        return;
    const MainMenuState current = state(instantOf(m_runLoop.now()));
    m_objectRows->show(mainMenuEntries(current));
    // The rows of the running alarms follow their heading, in the order of the list.
    const QList<QAction*> items = menu->actions();
    for (std::size_t i = 0; i < current.alarms.size(); ++i)
        current.alarms[i]->setMenuItem(items[qsizetype(i) + 1]);
}

// A panel hears at once when entries come or go: some close a menu that changes while it opens.
// The texts, which count down, are looked at when it opens, so that nobody has to wake for them.
void MainMenuConstructor::updatePanelMenu() {
    const MainMenuState current = state(instantOf(m_runLoop.now()));
    m_item.setPanelMenu(panelMenu(mainMenuEntries(current), m_commands));
}

} // namespace dorvane
