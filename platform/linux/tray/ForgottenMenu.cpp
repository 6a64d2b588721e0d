// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/tray/ForgottenMenu.h"

#include <QEvent>
#include <QGuiApplication>
#include <QMenu>

namespace dorvane {

namespace {

using namespace std::chrono_literals;

constexpr auto patience = 15s;

} // namespace

ForgottenMenu::ForgottenMenu(RunLoop& runLoop, QMenu& menu)
    : QObject(&menu), m_runLoop(runLoop), m_menu(menu) {
    qGuiApp->installEventFilter(this); // its submenus are touched too
    connect(&menu, &QMenu::aboutToHide, this, &QObject::deleteLater);
    connect(qGuiApp, &QGuiApplication::applicationStateChanged, this,
            [this](Qt::ApplicationState state) {
                if (state != Qt::ApplicationActive)
                    m_menu.close();
            });
    wait();
}

bool ForgottenMenu::eventFilter(QObject* /*watched*/, QEvent* event) {
    switch (event->type()) {
    case QEvent::MouseMove:
    case QEvent::MouseButtonPress:
    case QEvent::Wheel:
    case QEvent::KeyPress:
        wait();
        break;
    default:
        break;
    }
    return false;
}

void ForgottenMenu::wait() {
    m_timer = m_runLoop.scheduleOnce(
        patience, [this] { m_menu.close(); }, RunLoopMode::Common);
}

} // namespace dorvane
