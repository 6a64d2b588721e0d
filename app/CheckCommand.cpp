// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/CheckCommand.h"

#include "app/LaunchAtLoginController.h"
#include "app/SharedInstances.h"
#include "app/StatePaths.h"
#include "checks/WillItRing.h"
#include "cli/Console.h"
#include "core/ActiveAlarms.h"
#include "core/AlarmArchive.h"
#include "core/AlarmDelegate.h"
#include "core/Clock.h"
#include "core/WakeUps.h"
#include "journal/JournalFormat.h"
#include "platform/linux/checks/CheckObject.h"
#include "platform/linux/folders/MainBundle.h"
#include "platform/linux/folders/XdgFolders.h"
#include "platform/linux/preferences/PropertyListCodec.h"
#include "platform/linux/preferences/PropertyListDefaults.h"
#include "platform/linux/session/AutostartLoginItems.h"
#include "platform/linux/session/BusDesktopProbe.h"
#include "platform/linux/session/KernelWakeAlarm.h"
#include "platform/linux/session/QtRunLoop.h"
#include "platform/linux/sound/ModuleSoundOutput.h"
#include "platform/linux/sound/ModuleSoundPlayer.h"
#include "platform/linux/speech/ModuleSpeechService.h"
#include "platform/linux/state/BackgroundFile.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QDBusConnection>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>

namespace dorvane {

namespace {

// Alarms that fall due while this looks at them are the program's business.
class NobodyRings final : public AlarmDelegate {
public:
    void alarmIsNear(const AlarmPtr&) override {}
    void alarmTriggered(const AlarmPtr&) override {}
};

// What is found out where no instance runs: of the alarms that its next start would bring back.
std::vector<Check> checkByItself(WillItRing::TestSound testSound) {
    QtRunLoop loop;
    NotificationCenter notifications;
    const PropertyListCodec format;
    const Bundle bundle = mainBundle(format);
    const UserFolders folders = xdgFolders();
    PropertyListDefaults defaults(folders.configuration +
                                      QStringLiteral("/Dorvane/com.brackenfold.Dorvane.plist"),
                                  format, loop);
    ModuleSoundPlayer player(loop, bundle.modulePath(QStringLiteral("dorvane_sound.so")));
    ModuleSoundOutput output(loop, player);
    ModuleSpeechService speech(loop, player,
                               bundle.modulePath(QStringLiteral("dorvane_speech.so")));
    BusDesktopProbe desktop(QDBusConnection::sessionBus());
    KernelWakeAlarm wakeAlarm;
    AutostartLoginItems items(folders);
    const LaunchAtLoginController login(items, bundle.bundlePath());
    NobodyRings nobody;
    Clock clock(loop, notifications);
    const AlarmArchive archive(format);
    BackgroundFile journal(journalPath(folders), loop);
    const auto before = JournalFormat(format).decode(journal.read().value_or(QByteArray()));
    ActiveAlarms(defaults, archive, loop, clock).restoreActiveAlarms(nobody, before.left());
    WakeUps wakeUps(loop, notifications, clock, defaults, wakeAlarm);
    WillItRing checks({.runLoop = loop,
                       .player = player,
                       .output = output,
                       .speech = speech,
                       .desktop = desktop,
                       .wakeAlarm = wakeAlarm,
                       .alarms = [&] { return clock.allAlarms(); },
                       .icon = [] { return std::nullopt; },
                       .startsAtLogin = [&] { return login.launchAtLogin(); },
                       .isToWake = [&] { return wakeUps.isOn(); },
                       .testSound = bundle.resourcePath(QStringLiteral("Sounds/Ping.aiff"))});
    std::vector<Check> found;
    checks.ask(testSound, [&](const std::vector<Check>& all) {
        found = all;
        QCoreApplication::quit();
    });
    QCoreApplication::exec();
    return found;
}

CheckRows rowsOf(const std::vector<Check>& checks) {
    CheckRows rows;
    for (const Check& check : checks)
        rows.append({check.name, nameOf(check.status), check.line, check.advice});
    return rows;
}

void printJson(const CheckRows& rows, bool rings) {
    QJsonArray list;
    for (const CheckRow& row : rows)
        list.append(QJsonObject{{QStringLiteral("name"), row.name},
                                {QStringLiteral("status"), row.status},
                                {QStringLiteral("line"), row.line},
                                {QStringLiteral("advice"), row.advice}});
    const QJsonObject all{{QStringLiteral("rings"), rings}, {QStringLiteral("checks"), list}};
    writeText(QString::fromUtf8(QJsonDocument(all).toJson(QJsonDocument::Indented).trimmed()));
}

void print(const CheckRows& rows) {
    for (const CheckRow& row : rows) {
        writeLine(QStringLiteral("%1  %2").arg(row.status, -7).arg(row.line));
        if (!row.advice.isEmpty())
            writeLine(QString(9, QLatin1Char(' ')) + row.advice);
    }
}

} // namespace

ExitStatus runCheck(const QCommandLineParser& parser) {
    const bool playsSound = !parser.isSet(QStringLiteral("quiet"));
    CheckAnswer answer = askInstance(QDBusConnection::sessionBus(), playsSound);
    if (answer.from == CheckAnswer::From::Silence) {
        writeFault(QStringLiteral("Dorvane cannot be asked: ") + answer.error);
        return ExitStatus::Unreachable;
    }
    if (answer.from == CheckAnswer::From::Nobody)
        answer.rows = rowsOf(checkByItself(playsSound ? WillItRing::TestSound::Played
                                                      : WillItRing::TestSound::None));
    const bool rings = std::none_of(answer.rows.begin(), answer.rows.end(), [](const auto& row) {
        return row.status == nameOf(CheckStatus::Failure);
    });
    parser.isSet(QStringLiteral("json")) ? printJson(answer.rows, rings) : print(answer.rows);
    return rings ? ExitStatus::Done : ExitStatus::Refused;
}

std::unique_ptr<CheckObject> offerChecks(ServedBus& bus) {
    return std::make_unique<CheckObject>(bus, [](bool playTestSound, const auto& done) {
        sharedChecks().ask(playTestSound ? WillItRing::TestSound::Played
                                         : WillItRing::TestSound::None,
                           [done](const std::vector<Check>& checks) { done(rowsOf(checks)); });
    });
}

} // namespace dorvane
