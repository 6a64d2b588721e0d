// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/tray/FloatingClock.h"

#include "platform/linux/tray/IconPicture.h"
#include "platform/linux/tray/ScreenAreas.h"
#include "platform/linux/tray/Xcb.h"

#include <QApplication>
#include <QContextMenuEvent>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QPainterPath>
#include <QScreen>
#include <QWindow>

#include <cstdint>
#include <utility>

namespace dorvane {

namespace {

constexpr int pictureSize = 2 * IconPicture::size;
constexpr int rim = 5;
constexpr qreal cornerRadius = 12;
constexpr int plateAlpha = 190;
constexpr int hoverAlpha = 235;
constexpr int outlineAlpha = 60;

// Without a compositing manager X11 shows translucent pixels as black.
bool canBeTranslucent() {
    xcb_connection_t* connection = xcbConnection();
    return !connection || xcbOwner(connection, xcbAtom(connection, "_NET_WM_CM_S0")) != 0;
}

// A window manager would otherwise show it on the desktop on which it came up only.
void keepOnAllDesktops(WId window) {
    if (xcb_connection_t* connection = xcbConnection())
        xcbKeepOnAllDesktops(connection, static_cast<xcb_window_t>(window));
}

QPainterPath plateShape(const QRect& clock) {
    QPainterPath path;
    path.addRoundedRect(QRectF(clock).adjusted(0.5, 0.5, -0.5, -0.5), cornerRadius, cornerRadius);
    return path;
}

} // namespace

FloatingClock::FloatingClock(std::optional<QPoint> wanted, std::function<void(QPoint)> dropped)
    : m_wanted(wanted), m_dropped(std::move(dropped)), m_translucent(canBeTranslucent()) {
    setWindowFlags(Qt::Tool | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint |
                   Qt::WindowDoesNotAcceptFocus);
    setAttribute(Qt::WA_ShowWithoutActivating);
    setAttribute(Qt::WA_TranslucentBackground, m_translucent);
    setAttribute(Qt::WA_Hover);
    setAttribute(Qt::WA_AlwaysShowToolTips); // its window is never the active one
    setFocusPolicy(Qt::TabFocus);            // on desktops that give it the keyboard all the same
    setWindowTitle(QApplication::applicationDisplayName());
    setAccessibleName(QApplication::applicationDisplayName());
    setFixedSize(sizeHint()); // also keeps tiling desktops from giving it half the screen
    if (!m_translucent)
        setMask(plateShape(rect()).toFillPolygon().toPolygon());

    const auto follow = [this](QScreen* screen) {
        connect(screen, &QScreen::availableGeometryChanged, this, &FloatingClock::place);
        connect(screen, &QScreen::geometryChanged, this, &FloatingClock::place);
    };
    for (QScreen* screen : QGuiApplication::screens())
        follow(screen);
    connect(qGuiApp, &QGuiApplication::screenAdded, this, follow);
    connect(qGuiApp, &QGuiApplication::screenAdded, this, &FloatingClock::place);
    connect(qGuiApp, &QGuiApplication::screenRemoved, this, &FloatingClock::place);
    connect(qGuiApp, &QGuiApplication::primaryScreenChanged, this, &FloatingClock::place);
    place();
}

QSize FloatingClock::sizeHint() const {
    return {pictureSize + 2 * rim, pictureSize + 2 * rim};
}

void FloatingClock::place() {
    const QList<ScreenArea> areas = screenAreas();
    if (!m_dragging && !areas.isEmpty())
        move(floatingPlace(m_wanted, size(), areas));
}

void FloatingClock::showEvent(QShowEvent* event) {
    QAbstractButton::showEvent(event);
    // The window manager must have seen the window first.
    QMetaObject::invokeMethod(
        this, [this] { keepOnAllDesktops(winId()); }, Qt::QueuedConnection);
}

void FloatingClock::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    QColor plate = palette().color(QPalette::Window);
    if (m_translucent)
        plate.setAlpha(underMouse() || isDown() ? hoverAlpha : plateAlpha);
    QColor outline = palette().color(QPalette::WindowText);
    outline.setAlpha(outlineAlpha);
    painter.setPen(outline);
    painter.setBrush(plate);
    painter.drawPath(plateShape(rect()));
    const QPixmap picture = icon().pixmap(QSize(pictureSize, pictureSize), devicePixelRatio());
    QRectF place(QPointF(), picture.deviceIndependentSize());
    place.moveCenter(QRectF(rect()).center());
    painter.drawPixmap(place.topLeft(), picture);
}

void FloatingClock::contextMenuEvent(QContextMenuEvent* /*event*/) {
    click();
}

void FloatingClock::keyPressEvent(QKeyEvent* event) {
    switch (event->key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
    case Qt::Key_Down:
        click();
        break;
    default:
        QAbstractButton::keyPressEvent(event);
    }
}

void FloatingClock::mousePressEvent(QMouseEvent* event) {
    m_grip = event->position().toPoint();
    QAbstractButton::mousePressEvent(event);
}

void FloatingClock::mouseMoveEvent(QMouseEvent* event) {
    const bool held = event->buttons().testFlag(Qt::LeftButton);
    const int way = (event->position().toPoint() - m_grip).manhattanLength();
    if (held && !m_dragging && way >= QApplication::startDragDistance()) {
        m_dragging = true;
        setDown(false);
        // Where windows cannot place themselves the desktop moves it, and keeps the release of
        // the button to itself.
        if (QGuiApplication::platformName() == QLatin1String("wayland"))
            m_dragging = !windowHandle()->startSystemMove();
    }
    if (held && m_dragging)
        move(event->globalPosition().toPoint() - m_grip);
}

void FloatingClock::mouseReleaseEvent(QMouseEvent* event) {
    if (!std::exchange(m_dragging, false)) {
        QAbstractButton::mouseReleaseEvent(event);
        return;
    }
    m_wanted = pos();
    place(); // back inside the screen
    m_wanted = pos();
    m_dropped(pos());
}

} // namespace dorvane
