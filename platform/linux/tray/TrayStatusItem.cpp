// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/tray/TrayStatusItem.h"

#include "platform/EscapedText.h"
#include "platform/linux/tray/ForgottenMenu.h"
#include "platform/linux/tray/ScreenAreas.h"
#include "platform/UserDefaults.h"

#include <QCursor>
#include <QGuiApplication>
#include <QMenu>
#include <QWindow>

#include <utility>

namespace dorvane {

namespace {

using namespace std::chrono_literals;

constexpr auto patience = 5s;          // a panel takes that long to start or to restart
constexpr auto secondProtocol = 500ms; // a starting panel takes to offer the better protocol too
constexpr auto longestClick = 500ms;
const auto placeKey = QStringLiteral("FloatingClockPlace"); // "x y"

// On X11 windows place themselves; a Wayland desktop neither lets them nor tells where they are.
bool onX11() {
    return QGuiApplication::platformName() == QLatin1String("xcb");
}

// An X program inside a Wayland session sees the pointer only while it is over X windows.
bool pointerIsKnown() {
    return onX11() && !qEnvironmentVariableIsSet("WAYLAND_DISPLAY");
}

std::optional<QPoint> placeFromText(const QString& text) {
    const QStringList numbers = text.split(QLatin1Char(' '));
    bool okX = false;
    bool okY = false;
    const QPoint place(numbers.value(0).toInt(&okX), numbers.value(1).toInt(&okY));
    return okX && okY ? std::optional(place) : std::nullopt;
}

QString textFromPlace(QPoint place) {
    return QStringLiteral("%1 %2").arg(place.x()).arg(place.y());
}

} // namespace

TrayStatusItem::TrayStatusItem(RunLoop& runLoop, UserDefaults& defaults, QDBusConnection sessionBus)
    : m_runLoop(runLoop)
    , m_defaults(defaults)
    , m_notifierHost(std::move(sessionBus), [this] { lookIn(0ms); })
    , m_xembedTray([this] { lookIn(m_xembedTray.present() ? secondProtocol : 0ms); }) {
    lookIn(0ms);
}

TrayStatusItem::~TrayStatusItem() = default;

void TrayStatusItem::setIcon(const DrawIcon& draw, IconSizes sizes) {
    IconPicture picture(draw, sizes);
    if (picture == m_picture)
        return;
    m_picture = std::move(picture);
    if (m_notifier)
        m_notifier->setPicture(m_picture);
    if (m_trayIcon)
        m_trayIcon->setIcon(m_picture.icon());
    if (m_clock)
        m_clock->setIcon(m_picture.icon());
}

void TrayStatusItem::setToolTip(const QString& text) {
    if (text == m_toolTip)
        return;
    m_toolTip = text;
    if (m_notifier)
        m_notifier->setToolTip(m_toolTip);
    if (m_trayIcon)
        m_trayIcon->setToolTip(escapedText(m_toolTip));
    if (m_clock)
        m_clock->setToolTip(escapedText(m_toolTip));
}

void TrayStatusItem::setNeedsAttention(bool needsAttention) {
    if (needsAttention == m_needsAttention)
        return;
    m_needsAttention = needsAttention;
    if (m_notifier)
        m_notifier->setNeedsAttention(m_needsAttention);
}

void TrayStatusItem::setPanelMenu(std::vector<PanelMenuEntry> entries) {
    if (m_notifier)
        m_notifier->menu().show(std::move(entries));
    else
        m_panelMenu = std::move(entries);
}

void TrayStatusItem::setPanelMenuWillOpen(std::function<void()> willOpen) {
    m_panelMenuWillOpen = std::move(willOpen);
}

void TrayStatusItem::setPressed(std::function<void()> pressed) {
    m_pressed = std::move(pressed);
}

void TrayStatusItem::popUp(QMenu& menu) {
    // The press that closes the menu must not come through to a window of ours, where it would
    // open the menu again.
    menu.setAttribute(Qt::WA_NoMouseReplay);
    if (hasNotifierHost()) // the panel, not we, sees the click
        QObject::connect(
            &menu, &QMenu::aboutToHide, &m_connections, [this] { menuHidden(); },
            Qt::SingleShotConnection);
    menu.popup(placeFor(menu.sizeHint()));
    if (onX11() && !pointerIsKnown())
        new ForgottenMenu(m_runLoop, menu); // owned by the menu
}

// A press on the icon closes the open menu, but a panel that waits for the release still reports a
// click.
void TrayStatusItem::menuHidden() {
    const bool pressed = QGuiApplication::mouseButtons().testFlag(Qt::LeftButton);
    if (pressed && geometry().contains(QCursor::pos()))
        m_ignoreUntil = m_runLoop.uptime() + longestClick;
}

StatusItem::Shown TrayStatusItem::whereShown() const {
    if (hosted())
        return Shown::InPanel;
    return m_clock ? Shown::Floating : Shown::Nowhere;
}

QRect TrayStatusItem::geometry() const {
    if (m_clock)
        return m_clock->frameGeometry();
    return hosted() ? panelIconGeometry() : QRect();
}

QRect TrayStatusItem::panelIconGeometry() const {
    if (m_trayIcon)
        return m_trayIcon->geometry();
    if (!m_lastClick)
        return {};
    return iconAroundClick(*m_lastClick, screenOf(QRect(*m_lastClick, QSize(1, 1)), screenAreas()));
}

QPoint TrayStatusItem::placeFor(QSize window) const {
    const QRect icon = geometry();
    return hangingPlace(icon, window, screenOf(icon, screenAreas()));
}

bool TrayStatusItem::hasNotifierHost() const {
    return m_notifier && m_notifier->isOnBus() &&
           m_notifierHost.host() == NotifierHostWatcher::Host::Present;
}

bool TrayStatusItem::hosted() const {
    return hasNotifierHost() || (m_trayIcon && m_xembedTray.present());
}

// From the loop, because news of a panel can arrive in the middle of Qt's own handling of it.
void TrayStatusItem::lookIn(RunLoop::Milliseconds delay) {
    m_look = m_runLoop.scheduleOnce(
        delay, [this] { look(); }, RunLoopMode::Common);
}

// A panel of the newer kind is preferred. Qt asks for one too when it makes its icon, and waits for
// the answer: so it is made only when there is certainly none.
void TrayStatusItem::look() {
    const NotifierHostWatcher::Host host = m_notifierHost.host();
    if (host == NotifierHostWatcher::Host::Present) {
        m_trayIcon.reset();
        if (!m_notifier || !m_notifier->isOnBus())
            makeNotifier();
    } else if (host == NotifierHostWatcher::Host::Absent && m_xembedTray.present() && !m_trayIcon) {
        makeTrayIcon();
    }
    if (hosted()) {
        m_patience.cancel();
        m_clock.reset();
    } else if (!m_patience && !m_clock) {
        m_patience = m_runLoop.scheduleOnce(
            patience, [this] { showClock(); }, RunLoopMode::Common);
    }
}

// On X11 a click opens our own pop-up, which shows more than a panel's. Elsewhere a program is not
// told where its icon is, so the panel's has to do.
void TrayStatusItem::makeNotifier() {
    const auto menuWillOpen = [this] {
        if (m_panelMenuWillOpen)
            m_panelMenuWillOpen();
    };
    const bool isFirst = !m_notifier;
    m_notifier = std::make_unique<NotifierItem>(
        m_runLoop, onX11() ? NotifierItem::Click::Press : NotifierItem::Click::Menu,
        NotifierItem::Callbacks{.pressed = [this](QPoint place) { pressedInPanel(place); },
                                .menuWillOpen = menuWillOpen,
                                .lost = [this] { lookIn(patience); }});
    m_notifier->setPicture(m_picture);
    m_notifier->setToolTip(m_toolTip);
    m_notifier->setNeedsAttention(m_needsAttention);
    if (isFirst)
        m_notifier->menu().show(std::exchange(m_panelMenu, {}));
    else
        menuWillOpen(); // its maker shows it again
}

// Without a menu of its own: either button opens our pop-up.
void TrayStatusItem::makeTrayIcon() {
    m_trayIcon = std::make_unique<QSystemTrayIcon>(m_picture.icon());
    m_trayIcon->setToolTip(escapedText(m_toolTip));
    QObject::connect(m_trayIcon.get(), &QSystemTrayIcon::activated, m_trayIcon.get(),
                     [this](QSystemTrayIcon::ActivationReason reason) {
                         if (reason == QSystemTrayIcon::Trigger ||
                             reason == QSystemTrayIcon::Context)
                             press();
                     });
    m_trayIcon->show();
}

void TrayStatusItem::pressedInPanel(QPoint place) {
    if (m_runLoop.uptime() < m_ignoreUntil)
        return;
    if (pointerIsKnown())
        m_lastClick = QCursor::pos();
    else if (!place.isNull())
        m_lastClick = place;
    press();
}

void TrayStatusItem::press() {
    if (m_pressed)
        m_pressed();
}

void TrayStatusItem::showClock() {
    m_patience.cancel();
    m_clock = std::make_unique<FloatingClock>(
        placeFromText(m_defaults.value(placeKey).toString()),
        [this](QPoint place) { m_defaults.setValue(placeKey, textFromPlace(place)); });
    m_clock->setIcon(m_picture.icon());
    m_clock->setToolTip(escapedText(m_toolTip));
    QObject::connect(m_clock.get(), &FloatingClock::clicked, m_clock.get(), [this] { press(); });
    m_clock->show();
}

} // namespace dorvane
