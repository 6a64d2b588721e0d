// SPDX-License-Identifier: GPL-3.0-or-later
// The least a Qt program in the status area can be: what Dorvane is measured against.

#include <QApplication>
#include <QMenu>
#include <QPixmap>
#include <QSystemTrayIcon>

int main(int argc, char** argv) {
    QApplication application(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    QPixmap picture(22, 22);
    picture.fill(Qt::darkGray);
    QMenu menu;
    menu.addAction(QStringLiteral("Quit"), &application, &QApplication::quit);
    QSystemTrayIcon icon{QIcon(picture)};
    icon.setContextMenu(&menu);
    icon.show();
    return QApplication::exec();
}
