// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/RemoteCommands.h"
#include "platform/RemoteMethods.h"
#include "tests/support/Testing.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QRegularExpression>

using namespace dorvane::testing;

namespace {

const QDateTime now = at("11-24 10:00");

QVariantMap running(const char* identity, const char* title, const char* due, bool rings = false) {
    return {{u"id"_qs, QLatin1String(identity)},
            {u"title"_qs, QString::fromUtf8(title)},
            {u"due"_qs, at(due).toSecsSinceEpoch()},
            {u"minutes"_qs, 20},
            {u"ringing"_qs, rings}};
}

// The program at the other end, which writes down what it is asked; "!" where it is started for it.
class FakeProgram final : public RemoteProgram {
public:
    Answer call(const RemoteMethod& method, const QVariantList& arguments) override {
        const QJsonDocument json(QJsonArray::fromVariantList(arguments));
        const QString name = QString::fromLatin1(method.name);
        EXPECT_NE(std::ranges::find(remote::all, name.toStdString(), &RemoteMethod::name),
                  remote::all.end());
        QByteArrayList types;
        for (const QVariant& argument : arguments)
            types << QMap<int, QByteArray>{{QMetaType::UInt, "u"},
                                           {QMetaType::LongLong, "x"},
                                           {QMetaType::QString, "s"},
                                           {QMetaType::QVariantMap, "a{sv}"}}
                         .value(argument.typeId());
        QByteArrayList wanted;
        for (const RemoteArgument& argument : argumentsOf(method))
            wanted << argument.type;
        EXPECT_EQ(types, wanted) << method.name;
        asked << name + (method.startsProgram ? u"!"_qs : QString()) +
                     QString::fromUtf8(json.toJson(QJsonDocument::Compact));
        if (arguments.value(0) == u"Gone"_qs)
            return Fault{Fault::Kind::Refused, u"there is none"_qs, u"NoSuchAlarm"_qs};
        if (arguments.value(0).toMap().value(u"title"_qs) == u"Odd"_qs)
            return Fault{Fault::Kind::Refused, u"\"weekdays\": odd"_qs, u"InvalidValue"_qs};
        if (!name.startsWith(u"List"_qs))
            return QVariantList{u"t1"_qs};
        return QVariantList{QVariant(
            QVariantList{running("e2", "Egg", "11-25 07:00"), running("t1", "Tea", "11-24 10:20"),
                         running("e1", "Egg", "11-24 10:20"),
                         running("b1", "Be\nll\x1b[2J\xd7\x90", "11-24 09:59", true)})};
    }
    Properties properties() override { return breaks; }
    void follow(std::function<bool()>) override {}

    QStringList asked;
    QVariantMap breaks{
        {u"BreaksRunning"_qs, true}, {u"Paused"_qs, true}, {u"PausedUntil"_qs, 1795734000}};
};

std::vector<Command> commandsOf(FakeProgram& program) {
    return allCommands({[&]() -> RemoteProgram& { return program; }, [] { return now; },
                        [] { return QStringList{u"Old Bell"_qs}; }});
}

TEST(CommandsTest, whatIsTypedIsAskedAndTheAnswerShown) {
    const std::string tea = "t1  Tue, 10:20  in 20 min  Tea\n";
    const struct {
        const char* typed;
        int status;
        const char* asked;
        std::string shown;
    } rows[] = {
        {"timer 25 Tea", 0, R"(AddTimer![25,"Tea"] ListRunning[])", tea},
        {"timer soon", 2, "",
         "dorvane: TIME takes a length of time such as 25, 90m, 2h, 1h30 or 30s, a year at most, "
         "not \"soon\"\n"},
        {"add Tea --in 20m --repeat --sound none", 0,
         R"(AddAlarm![{"minutes":20,"repeat":true,"sound":"","title":"Tea"}] ListRunning[])", tea},
        {"add Odd --at 7 --on mon", 2,
         R"(AddAlarm![{"time":"07:00","title":"Odd","weekdays":["mon"]}])", "dorvane: --on: odd\n"},
        {"add Tea", 2, "", "dorvane: when? Such as --in 25, or --at 7:30\n"},
        {"list", 0, "ListRunning[]",
         "b1  Tue, 9:59   rings      ⁨Be ll�[2Jא⁩\n"
         "e1  Tue, 10:20  in 20 min  Egg\nt1  Tue, 10:20  in 20 min  Tea\n"
         "e2  Wed, 7:00   in 21 h    Egg\n"},
        {"quick", 0, "Quick![]", ""},
        {"start Tea", 0, R"(StartStored!["Tea"] ListRunning[])", tea},
        {"start Gone", 1, R"(StartStored!["Gone"])", "dorvane: there is none\n"},
        {"snooze --ringing", 0, R"(ListRunning[] Snooze["b1"])",
         "⁨Be ll�[2Jא⁩ is snoozed\n"},
        {"snooze b1 --for 1h30", 0, R"(ListRunning[] SnoozeFor["b1",90])",
         "⁨Be ll�[2Jא⁩ is snoozed\n"},
        {"snooze b1 --for 30s", 2, "",
         "dorvane: --for takes whole minutes such as 15, 1h or 1h30, not \"30s\"\n"},
        {"clear Tea", 0, R"(ListRunning[] Clear["t1"])", "Tea is cleared\n"},
        {"clear Egg", 1, "ListRunning[]",
         "dorvane: 2 alarms are called \"Egg\"; say which: e2, e1\n"},
        {"edit Tea", 2, "ListRunning[]",
         "dorvane: nothing to change; for example: dorvane edit Tea --at 7:45\n"},
        {"edit Soup --snooze 9", 1, "ListRunning[] ListStored[]",
         "dorvane: no alarm runs or is stored as \"Soup\"\n"},
        {"edit Tea --on mon", 2, "ListRunning[]", "dorvane: at what time? Such as --at 7:30\n"},
        {"edit Tea --stored --on mon --at 7", 0,
         R"(ListStored[] EditStored["Tea",{"time":"07:00","weekdays":["mon"]}])",
         "t1 is changed in the library\n"},
        {"clear e2", 0, R"(ListRunning[] Clear["e2"])", "Egg is cleared\n"},
        {"clear", 2, "", "dorvane: either WHICH or --ringing is needed\n"},
        {"edit Tea --at 7:45 --title Egg", 0,
         R"(ListRunning[] EditAlarm["t1",{"time":"07:45","title":"Egg"}] ListRunning[])", tea},
        {"delete Tea", 0, R"(ListRunning[] Delete["t1"])", "Tea is deleted\n"},
        {"delete Tea --stored", 0, R"(DeleteStored["Tea"])", "Tea is no longer stored\n"},
        {"delete Old", 0, R"(ListRunning[] DeleteStored["Old"])", "Old is no longer stored\n"},
        {"skip Tea", 0, R"(ListRunning[] Skip["t1"])", "Tea is skipped once\n"},
        {"pause --until fri", 0, "Pause![1795734000]", ""},
        {"pause --until soon", 2, "",
         "dorvane: --until takes a date such as 2026-12-24, 24 Dec, tomorrow or fri, not "
         "\"soon\"\n"},
        {"undo", 0, "Undo[]", "t1 is back\n"},
        {"show", 0, "ShowAlarms![]", ""},
        {"resume", 0, "Resume![]", ""},
        {"breaks start", 0, "StartBreaks![]", ""},
        {"breaks stop", 0, "StopBreaks[]", ""},
        {"breaks skip", 0, "SkipBreak[]", ""},
        {"breaks up", 2, "", "dorvane: breaks takes start, stop, skip or status, not \"up\"\n"},
        {"status", 0, "ListNext[20]", "⁨Be ll�[2Jא⁩ rings · paused until 27 Nov\n"},
    };
    FakeProgram program;
    const auto commands = commandsOf(program);
    for (const auto& row : rows) {
        SCOPED_TRACE(row.typed);
        const QStringList words = QString::fromLatin1(row.typed).split(u' ');
        const auto command = std::ranges::find(commands, words[0].toStdString(), &Command::name);
        ASSERT_NE(command, commands.end());
        ::testing::internal::CaptureStdout();
        ::testing::internal::CaptureStderr();
        EXPECT_EQ(int(runCommand(*command, words.mid(1))), row.status);
        EXPECT_EQ(::testing::internal::GetCapturedStdout() +
                      ::testing::internal::GetCapturedStderr(),
                  row.shown);
        EXPECT_EQ(std::exchange(program.asked, {}).join(u' ').toStdString(), row.asked);
    }
    const auto breaks = std::ranges::find(commands, std::string_view("breaks"), &Command::name);
    for (const auto& [phase, shown] : {std::pair{"off", "Breaks are on.\n"},
                                       {"working", "Breaks are on: break at 10:12, in 12 min.\n"},
                                       {"waiting", "Breaks are on: break when you are back.\n"},
                                       {"resting", "Breaks are on: break until 10:05.\n"}}) {
        program.breaks[u"BreakPhase"_qs] = QString::fromLatin1(phase);
        const bool isWorking = program.breaks[u"BreakPhase"_qs] == u"working"_qs;
        program.breaks[u"NextBreak"_qs] = isWorking ? now.addSecs(720).toSecsSinceEpoch() : 0;
        program.breaks[u"BreakEnd"_qs] = now.addSecs(300).toSecsSinceEpoch();
        ::testing::internal::CaptureStdout();
        static_cast<void>(runCommand(*breaks, {u"status"_qs}));
        EXPECT_EQ(::testing::internal::GetCapturedStdout(), shown);
    }
}

TEST(CommandsTest, offersWhatMayComeNext) {
    const std::pair<const char*, const char*> rows[] = {
        {"", "timer|add|quick|start|edit|snooze|clear|skip|delete|pause|resume|undo|show|list|"
             "status|breaks|"
             "check|"
             "missed|--help|--version"},
        {"timer ", "1|2|3|4|5|10|15|20|30|45|--help"},
        {"start ", "b1|e1|e2|Tea|--help"},
        {"breaks start ", "--help"},
        {"list --json ", "--stored|--help"},
        {"add T --on mon,", "mon,tue|mon,wed|mon,thu|mon,fri|mon,sat|mon,sun"},
        {"add --sound ", "Old Bell|none|"},
        {"add --sound /usr/sh", ""},
        {"nonsense ", ""},
    };
    FakeProgram program;
    const auto commands = commandsOf(program);
    for (const auto& [typed, expected] : rows) {
        QStringList words = completions(commands, QString::fromLatin1(typed).split(u' '));
        words.replaceInStrings(QRegularExpression(u"\t.*"_qs), {});
        EXPECT_EQ(words.join(u'|').toStdString(), expected) << typed;
    }
}

} // namespace
