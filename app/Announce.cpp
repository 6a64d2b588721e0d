// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/Announce.h"

#include "firing/SoundRepeat.h"
#include "platform/linux/announcements/AnnouncementPresenter.h"
#include "platform/linux/announcements/AnnouncementUnits.h"
#include "platform/linux/announcements/SystemdNotificationCenter.h"
#include "platform/linux/folders/MainBundle.h"
#include "platform/linux/folders/XdgFolders.h"
#include "platform/linux/preferences/PropertyListCodec.h"
#include "platform/linux/session/QtRunLoop.h"
#include "platform/linux/sound/ModuleSoundPlayer.h"
#include "platform/Log.h"

#include <QCoreApplication>
#include <QFile>

#include <cstdlib>

namespace dorvane {

using namespace std::chrono_literals;

namespace {

// A desktop that has not come up by then does not come up.
constexpr auto patience = 10min;
constexpr auto lengthOfThreePings = 6s;
constexpr int rings = 3;

} // namespace

int announce(int argc, char** argv, const QString& id) {
    const QCoreApplication application(argc, argv);
    QFile file(SystemdNotificationCenter::fileOf(xdgFolders(), id));
    const auto notification =
        file.open(QIODevice::ReadOnly) ? notificationIn(file.readAll()) : std::nullopt;
    if (!notification) {
        qCWarning(logApp).noquote() << "there is no announcement in" << file.fileName();
        return EXIT_FAILURE;
    }

    QtRunLoop loop;
    const PropertyListCodec propertyLists;
    const Bundle bundle = mainBundle(propertyLists);
    ModuleSoundPlayer player(loop, bundle.modulePath(QStringLiteral("dorvane_sound.so")));
    SoundRepeat repeat(loop, player);
    RunLoopTimer end;
    const auto soundAndEnd = [&](int status) {
        repeat.playSoundAtPath(bundle.resourcePath(QStringLiteral("Sounds/Ping.aiff")), rings);
        end = loop.scheduleOnce(
            lengthOfThreePings, [status] { QCoreApplication::exit(status); }, RunLoopMode::Default);
    };
    end = loop.scheduleOnce(
        patience,
        [&] {
            qCWarning(logApp, "nobody shows announcements");
            soundAndEnd(EXIT_FAILURE);
        },
        RunLoopMode::Default);
    AnnouncementPresenter presenter(loop, *notification, QDBusConnection::sessionBus(),
                                    [&](AnnouncementPresenter::Outcome outcome) {
                                        using Outcome = AnnouncementPresenter::Outcome;
                                        if (outcome == Outcome::Shown)
                                            return QCoreApplication::exit(EXIT_SUCCESS);
                                        // What nobody can see is to be heard all the same.
                                        soundAndEnd(outcome == Outcome::Refused ? EXIT_FAILURE
                                                                                : EXIT_SUCCESS);
                                    });
    presenter.show();
    const int status = QCoreApplication::exec();
    std::fflush(nullptr);
    std::_Exit(status); // the sound engine's threads wait for nobody
}

} // namespace dorvane
