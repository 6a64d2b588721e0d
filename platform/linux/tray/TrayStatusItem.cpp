// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/tray/TrayStatusItem.h"

#include "platform/linux/tray/StatusPlacement.h"
#include "platform/UserDefaults.h"

#include <QCursor>
#include <QGuiApplication>
#include <QMenu>
#include <QScreen>
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

ScreenArea screenAround(QPoint point) {
    const QScreen* screen = QGuiApplication::screenAt(point);
    if (!screen)
        screen = QGuiApplication::primaryScreen();
    return screen ? ScreenArea{screen->geometry(), screen->availableGeometry()} : ScreenArea{};
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

TrayStatusItem::TrayStatusItem(RunLoop& runLoop, UserDefaults& defaults,
                               const QDBusConnection& sessionBus)
    : m_runLoop(runLoop)
    , m_defaults(defaults)
    , m_notifierHost(sessionBus, [this] { lookIn(0ms); })
    , m_xembedTray([this] { lookIn(m_xembedTray.present() ? secondProtocol : 0ms); }) {
    lookIn(0ms);
}

TrayStatusItem::~TrayStatusItem() = default;

void TrayStatusItem::setIcon(const QIcon& icon) {
    IconPicture picture(icon);
    if (picture == m_picture)
        return;
    m_picture = std::move(picture);
    m_icon = icon;
    if (m_trayIcon)
        m_trayIcon->setIcon(m_icon);
    if (m_clock)
        m_clock->setIcon(m_icon);
}

void TrayStatusItem::setToolTip(const QString& text) {
    if (text == m_toolTip)
        return;
    m_toolTip = text;
    if (m_trayIcon)
        m_trayIcon->setToolTip(m_toolTip);
    if (m_clock)
        m_clock->setToolTip(m_toolTip);
}

void TrayStatusItem::setExportedMenu(QMenu* menu) {
    m_exportedMenu = menu;
    if (m_trayIcon)
        m_trayIcon->setContextMenu(menu);
}

void TrayStatusItem::setPressed(std::function<void()> pressed) {
    m_pressed = std::move(pressed);
}

void TrayStatusItem::popUp(QMenu& menu) {
    // The press that closes the menu must not come through to a window of ours, where it would
    // open the menu again.
    menu.setAttribute(Qt::WA_NoMouseReplay);
    if (m_trayIcon && m_trayIcon->geometry().isEmpty()) // the panel, not we, sees the click
        QObject::connect(
            &menu, &QMenu::aboutToHide, m_trayIcon.get(), [this] { menuHidden(); },
            Qt::SingleShotConnection);
    menu.popup(placeFor(menu.sizeHint()));
}

// A press on the icon closes the open menu, but a panel that waits for the release still reports a
// click.
void TrayStatusItem::menuHidden() {
    const bool pressed = QGuiApplication::mouseButtons().testFlag(Qt::LeftButton);
    if (pressed && geometry().contains(QCursor::pos()))
        m_ignoreUntil = m_runLoop.uptime() + longestClick;
}

QRect TrayStatusItem::geometry() const {
    if (m_clock)
        return m_clock->frameGeometry();
    return hosted() ? trayIconGeometry() : QRect();
}

QRect TrayStatusItem::trayIconGeometry() const {
    const QRect told = m_trayIcon->geometry();
    if (!told.isEmpty() || !m_lastClick)
        return told;
    return iconAroundClick(*m_lastClick, screenAround(*m_lastClick));
}

QPoint TrayStatusItem::placeFor(QSize window) const {
    const QRect icon = geometry();
    return hangingPlace(icon, window, screenAround(icon.center()));
}

// The protocol that a tray icon made now would speak. Qt makes up its mind when the class is first
// touched: it then asks the watcher, and waits, so this must be right before, and a watcher that
// does not answer must not be asked.
std::optional<TrayStatusItem::Protocol> TrayStatusItem::offered() const {
    switch (m_notifierHost.host()) {
    case NotifierHostWatcher::Host::Present:
        return Protocol::Notifier;
    case NotifierHostWatcher::Host::Absent:
        return m_xembedTray.present() ? std::optional(Protocol::XEmbed) : std::nullopt;
    case NotifierHostWatcher::Host::Unknown:
        break;
    }
    return std::nullopt;
}

bool TrayStatusItem::hosted() const {
    if (m_protocol == Protocol::Notifier)
        return m_notifierHost.host() == NotifierHostWatcher::Host::Present;
    return m_protocol == Protocol::XEmbed && m_xembedTray.present();
}

// From the loop, because news of a panel can arrive in the middle of Qt's own handling of it.
void TrayStatusItem::lookIn(RunLoop::Milliseconds delay) {
    m_look = m_runLoop.scheduleOnce(
        delay, [this] { look(); }, RunLoopMode::Common);
}

void TrayStatusItem::look() {
    if (!m_protocol)
        if (const auto protocol = offered())
            makeTrayIcon(*protocol);
    if (hosted()) {
        m_patience.cancel();
        m_clock.reset();
    } else if (!m_patience && !m_clock) {
        m_patience = m_runLoop.scheduleOnce(
            patience, [this] { showClock(); }, RunLoopMode::Common);
    }
}

void TrayStatusItem::makeTrayIcon(Protocol protocol) {
    m_protocol = protocol;
    m_trayIcon = std::make_unique<QSystemTrayIcon>(m_icon);
    m_trayIcon->setToolTip(m_toolTip);
    m_trayIcon->setContextMenu(m_exportedMenu);
    QObject::connect(m_trayIcon.get(), &QSystemTrayIcon::activated, m_trayIcon.get(),
                     [this](QSystemTrayIcon::ActivationReason reason) { activated(reason); });
    m_trayIcon->show();
}

void TrayStatusItem::activated(QSystemTrayIcon::ActivationReason reason) {
    if (reason != QSystemTrayIcon::Trigger || !onX11())
        return;
    if (m_runLoop.uptime() < m_ignoreUntil)
        return;
    if (pointerIsKnown())
        m_lastClick = QCursor::pos();
    if (m_pressed)
        m_pressed();
}

void TrayStatusItem::showClock() {
    m_patience.cancel();
    m_clock = std::make_unique<FloatingClock>(
        placeFromText(m_defaults.value(placeKey).toString()),
        [this](QPoint place) { m_defaults.setValue(placeKey, textFromPlace(place)); });
    m_clock->setIcon(m_icon);
    m_clock->setToolTip(m_toolTip);
    QObject::connect(m_clock.get(), &FloatingClock::clicked, m_clock.get(), [this] {
        if (m_pressed)
            m_pressed();
    });
    m_clock->show();
}

} // namespace dorvane
