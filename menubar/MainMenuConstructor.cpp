// SPDX-License-Identifier: GPL-3.0-or-later
#include "menubar/MainMenuConstructor.h"

#include "core/Clock.h"
#include "core/NotificationNames.h"
#include "menubar/StatusMenu.h"
#include "menubar/WholeSecond.h"
#include "sounds/MenuText.h"

#include <QApplication>

#include <utility>

namespace dorvane {

using namespace std::chrono_literals;

namespace {

MenuRows::Kind ownKind() {
    return {
        [](QMenu& parent) -> QMenu* { return new StatusMenu(static_cast<StatusMenu&>(parent)); },
        [](const MenuItemExtras& item) { return menuText(item.spokenText()); }};
}

MenuRows::Kind exportedKind() {
    return {[](QMenu& parent) -> QMenu* { return new PanelMenu(&parent); },
            [](const MenuItemExtras& item) {
                return PanelMenu::busText(item.title() + item.subtitlePart());
            }};
}

} // namespace

MainMenuConstructor::MainMenuConstructor(RunLoop& runLoop, Clock& clock,
                                         NotificationCenter& notifications, MenuSources sources,
                                         MenuCommands commands, QLocale locale)
    : m_runLoop(runLoop)
    , m_clock(clock)
    , m_sources(std::move(sources))
    , m_commands(std::move(commands))
    , m_locale(std::move(locale))
    , m_exportedRows(m_exportedMenu, runLoop, m_commands,
                     MenuTitleFonts::of(QApplication::font("QMenu")), exportedKind()) {
    m_alarmsObservation = notifications.addObserver(
        alarmsDidChangeNotification, [this](const void*) { updateExportedMenuSoon(); });
    m_storedAlarmsObservation = notifications.addObserver(
        storedAlarmsDidChangeNotification, [this](const void*) { updateExportedMenuSoon(); });
    QObject::connect(&m_exportedMenu, &QMenu::aboutToHide, &m_exportedMenu,
                     [this] { updateExportedMenuSoon(); });
    updateExportedMenu();
}

MainMenuConstructor::~MainMenuConstructor() = default;

StatusMenu* MainMenuConstructor::objectMenu() const {
    return m_objectMenu;
}

void MainMenuConstructor::setObjectMenu(StatusMenu* menu) {
    m_objectMenu = menu;
    m_objectRows.reset();
    if (menu)
        m_objectRows.emplace(*menu, m_runLoop, m_commands, menu->titleFonts(), ownKind());
}

MainMenuState MainMenuConstructor::state(Instant now) const {
    MainMenuState state;
    state.alarms = m_clock.allAlarms();
    if (m_sources.storedAlarms)
        state.storedAlarms = m_sources.storedAlarms();
    state.breaksRun = m_sources.breaksRun && m_sources.breaksRun();
    state.noAlarmString = m_noAlarmString;
    state.now = now;
    state.locale = m_locale;
    return state;
}

void MainMenuConstructor::constructMenu() {
    updateExportedMenuSoon();
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

// Panels cannot have the copy built when it opens: some then close it at once. So it follows
// whatever it shows: the notifications at once, and its texts at the whole second at which the next
// of them changes, which is a second at which the clock ticks anyhow.
void MainMenuConstructor::updateExportedMenu() {
    if (m_exportedMenu.isVisible())
        return; // an old tray let Qt open it here; it is brought up to date when it closes
    const MainMenuState current = state(rightAfterWholeSecond(instantOf(m_runLoop.now())));
    m_exportedRows.show(exportedEntries(mainMenuEntries(current)));
    m_textTimer = m_runLoop.scheduleAligned(
        nextTextChange(current), 1min, [this] { updateExportedMenu(); }, RunLoopMode::Default);
}

void MainMenuConstructor::updateExportedMenuSoon() {
    m_updateTimer = m_runLoop.scheduleOnce(
        0ms, [this] { updateExportedMenu(); }, RunLoopMode::Default);
}

} // namespace dorvane
