// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/announcements/LoginUnit.h"
#include "tests/support/Files.h"
#include "tests/support/Testing.h"

using namespace dorvane::testing;

namespace {

const auto oldTimer = "[Unit]\nDescription=Announcement of an alarm\n"
                      "PartOf=dorvane-announcements.target\n\n[Timer]\n"
                      "OnCalendar=2026-11-21 07:00:00 UTC\nUnit=dorvane-announce@1.service\n\n"
                      "[X-Dorvane]\nTitle=Dorvane\nSubtitle=Sat%2C%207%3A00\nText=\n";

class LoginUnitTest : public ::testing::Test {
protected:
    void settle(const QString& program = u"/opt/a \"b\" $c 5%/dorvane"_qs) const {
        settleLoginUnit(m_folders, {program, {u"XDG_DATA_HOME=/ho me/5%\\"_qs}},
                        QDBusConnection(u"none"_qs));
    }
    QString path(const QString& name) const { return m_units + name; }

    QTemporaryDir m_home;
    UserFolders m_folders{.home = m_home.path(),
                          .caches = m_home.path(),
                          .configuration = m_home.filePath(u"config"_qs),
                          .data = m_home.filePath(u"data"_qs)};
    const QString m_units = m_folders.configuration + u"/systemd/user/"_qs;
    const QString m_unit = path(u"com.brackenfold.Dorvane.announce.service"_qs);
    const QString m_link =
        path(u"default.target.wants/com.brackenfold.Dorvane.announce.service"_qs);
};

TEST_F(LoginUnitTest, isWrittenOnceAndStaysAsTheUserHasItSince) {
    settle();
    EXPECT_EQ(contentsOf(m_link), contentsOf(m_unit));
    for (const char* line : {"ExecStart=\"/opt/a \\\"b\\\" $$c 5%%/dorvane\" --announce --login\n",
                             "Environment=\"XDG_DATA_HOME=/ho me/5%%\\\\\"\n"})
        EXPECT_TRUE(contentsOf(m_unit).contains(line)) << line;
    EXPECT_TRUE(QFile::remove(m_link)) << "disabled";
    settle(u"/new/dorvane"_qs);
    EXPECT_TRUE(contentsOf(m_unit).contains("ExecStart=\"/new/dorvane\" "));
    EXPECT_FALSE(QFile::exists(m_link));
    EXPECT_TRUE(QFile::remove(m_unit));
    EXPECT_TRUE(QFile::link(u"/dev/null"_qs, m_unit)) << "masked";
    settle();
    EXPECT_EQ(QFile::symLinkTarget(m_unit), u"/dev/null"_qs);
}

TEST_F(LoginUnitTest, onlyUnitsThatEarlierVersionsWroteAreRemoved) {
    const struct {
        const char* name;
        QByteArray contents;
        bool stays;
    } rows[] = {
        {"dorvane-1.timer", oldTimer, false},
        {"dorvane-announce@.service",
         "[Unit]\nDescription=Announcement of an alarm\n[Service]\nType=oneshot\n"
         "ExecStart=\"/opt/dorvane\" --announce %i\n",
         false},
        {"dorvane-announcements.target",
         "[Unit]\nDescription=Announcements of alarms while Dorvane does not run\nWants=\n", false},
        {"dorvane-standup.timer", "[Timer]\nOnCalendar=Mon..Fri 09:30\n", true},
        {"dorvane-standup.service", "[Service]\nExecStart=dorvane timer 5\n", true},
        {"dorvane-2.timer", "[Unit]\nDescription=Announcement of an alarm\n[Timer]\n", true},
        {"mine.timer", oldTimer, true},
    };
    for (const auto& row : rows)
        writeFile(path(QLatin1String(row.name)), row.contents);
    EXPECT_TRUE(QDir().mkpath(path(u"timers.target.wants"_qs)));
    EXPECT_TRUE(QFile::link(path(u"dorvane-announcements.target"_qs),
                            path(u"timers.target.wants/dorvane-announcements.target"_qs)));
    const QString stamp = m_folders.data + u"/systemd/timers/stamp-dorvane-1.timer"_qs;
    writeFile(stamp, "");
    settle();
    for (const auto& row : rows)
        EXPECT_EQ(QFile::exists(path(QLatin1String(row.name))), row.stays) << row.name;
    EXPECT_TRUE(QDir(path(u"timers.target.wants"_qs))
                    .isEmpty(QDir::AllEntries | QDir::System | QDir::NoDotAndDotDot));
    EXPECT_FALSE(QFile::exists(stamp));
}

} // namespace
