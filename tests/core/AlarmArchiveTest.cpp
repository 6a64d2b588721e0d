// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/AlarmArchive.h"

#include "platform/linux/preferences/LibplistFormat.h"
#include "tests/support/LogCapture.h"
#include "tests/support/VirtualRunLoop.h"

#include <gtest/gtest.h>

using namespace dorvane;
using dorvane::testing::LogCapture;
using dorvane::testing::VirtualRunLoop;

namespace {

QVariant uid(quint64 index) {
    return QVariant::fromValue(PropertyListUid{index});
}

QVariantMap classOf(const QVariantList& names) {
    return {{QStringLiteral("$classname"), names.first()}, {QStringLiteral("$classes"), names}};
}

QVariantMap record(const QString& key, const QVariant& value, quint64 classIndex) {
    return {{key, value}, {QStringLiteral("$class"), uid(classIndex)}};
}

QVariantMap listRecord(const QVariant& elements, quint64 classIndex) {
    return record(QStringLiteral("NS.objects"), elements, classIndex);
}

QVariantMap dateRecord(const QVariant& seconds, quint64 classIndex) {
    return record(QStringLiteral("NS.time"), seconds, classIndex);
}

const QVariant null = QStringLiteral("$null");
const QVariant object = QStringLiteral("NSObject");
const QVariantMap alarmClass = classOf({QStringLiteral("Alarm"), object});
const QVariantMap dateClass = classOf({QStringLiteral("NSDate"), object});
const QVariantMap listClass =
    classOf({QStringLiteral("NSMutableArray"), QStringLiteral("NSArray"), object});

// The record of an alarm with everything at its default, under `changes`.
QVariantMap alarmRecord(quint64 classIndex, const QVariantMap& changes = {}) {
    QVariantMap values{{QStringLiteral("$class"), uid(classIndex)}};
    for (const char* key : {"title", "time", "runTime", "soundPath", "voiceName"})
        values.insert(QLatin1String(key), uid(0));
    for (const char* key : {"ringWithinUnits", "snoozeTime", "selRowNo"})
        values.insert(QLatin1String(key), qint64(0));
    for (const char* key :
         {"isTimeWithDate", "isMinuteUnits", "isPlaySound", "shouldFadeIn",
          "isExisInActiveAlarmList", "isDefaultAlarm", "isSpeakAlarmName", "shouldRepeat",
          "shouldUseEveryDay", "RunOnMonday", "RunOnTuesday", "RunOnWednesday", "RunOnThursday",
          "RunOnFriday", "RunOnSaturday", "RunOnSunday", "ShouldUseForever"})
        values.insert(QLatin1String(key), false);
    values.insert(changes);
    return values;
}

QVariantMap archive(const QVariantList& objects) {
    return {{QStringLiteral("$version"), qint64(100000)},
            {QStringLiteral("$archiver"), QStringLiteral("NSKeyedArchiver")},
            {QStringLiteral("$top"), QVariantMap{{QStringLiteral("root"), uid(1)}}},
            {QStringLiteral("$objects"), objects}};
}

class AlarmArchiveTest : public ::testing::Test {
protected:
    // Names the key that differs, because the failure of a whole map shows nothing.
    static void expectSame(const QVariant& actual, const QVariant& expected, const QString& path) {
        if (expected.typeId() == QMetaType::QVariantMap) {
            EXPECT_EQ(actual.toMap().keys(), expected.toMap().keys()) << qPrintable(path);
            for (const QString& key : expected.toMap().keys())
                expectSame(actual.toMap()[key], expected.toMap()[key], path + u'/' + key);
        } else if (expected.typeId() == QMetaType::QVariantList) {
            ASSERT_EQ(actual.toList().size(), expected.toList().size()) << qPrintable(path);
            for (qsizetype i = 0; i < expected.toList().size(); ++i)
                expectSame(actual.toList()[i], expected.toList()[i],
                           path + u'/' + QString::number(i));
        } else {
            EXPECT_EQ(actual.typeId(), expected.typeId()) << qPrintable(path);
            EXPECT_EQ(actual, expected) << qPrintable(path);
        }
    }

    [[nodiscard]] AlarmArchive::Unarchived unarchive(const QVariant& tree) const {
        return m_archive.unarchive(*m_format.binary(tree));
    }
    [[nodiscard]] QVariant archived(const std::vector<AlarmPtr>& alarms) const {
        return *m_format.parse(m_archive.archivedData(alarms));
    }

    VirtualRunLoop m_runLoop{QDateTime(QDate(2026, 11, 21), QTime(7, 0))};
    LibplistFormat m_format;
    AlarmArchive m_archive{m_format, m_runLoop};
};

// The order of the table is that of the format's own archiver: what an object refers to follows it
// and its class comes last; texts, classes and repeated objects are shared.
TEST_F(AlarmArchiveTest, writesTheLayoutOfTheFormatsOwnArchiver) {
    const AlarmPtr first = Alarm::create(m_runLoop);
    first->setTitle(QStringLiteral("Tee"));
    first->setVoiceName(QStringLiteral("Tee"));
    first->setTime(QDateTime(QDate(2001, 1, 1), QTime(0, 1, 0, 250), Qt::UTC));
    first->setSnoozeTime((qint64(1) << 32) + 9); // archived in 32 bits
    const AlarmPtr second = Alarm::create(m_runLoop);
    second->setTitle(QStringLiteral("$null")); // in the table, this text means nil
    second->setSoundPath(QStringLiteral(""));
    second->setRunTime(QDateTime(QDate(2000, 12, 31), QTime(23, 59), Qt::UTC));
    first->setIsTriggered(true);
    first->setIsActive(true);
    first->snooze(5);

    const QVariantMap firstRecord = alarmRecord(6, {{QStringLiteral("title"), uid(3)},
                                                    {QStringLiteral("voiceName"), uid(3)},
                                                    {QStringLiteral("time"), uid(4)},
                                                    {QStringLiteral("snoozeTime"), qint64(9)}});
    const QVariantMap secondRecord = alarmRecord(6, {{QStringLiteral("title"), uid(8)},
                                                     {QStringLiteral("runTime"), uid(10)},
                                                     {QStringLiteral("soundPath"), uid(11)}});
    const QVariantMap stringClass = classOf({QStringLiteral("NSString"), object});
    expectSame(archived({first, second, first}),
               archive({null, listRecord(QVariantList{uid(2), uid(7), uid(2)}, 12), firstRecord,
                        QStringLiteral("Tee"), dateRecord(60.25, 5), dateClass, alarmClass,
                        secondRecord, record(QStringLiteral("NS.string"), null, 9), stringClass,
                        dateRecord(-60.0, 5), QString(QLatin1String("")), listClass}),
               QString());
}

TEST_F(AlarmArchiveTest, emptyListIsAnArchiveToo) {
    const QByteArray data = m_archive.archivedData({});
    const auto read = m_archive.unarchive(data);
    EXPECT_TRUE(read.isComplete);
    EXPECT_TRUE(read.alarms.empty());
}

// One value after the other, so that none can stand in for another.
TEST_F(AlarmArchiveTest, everyFieldIsReadIntoItsOwnPlace) {
    const QVariantMap defaults = alarmRecord(3);
    for (const QString& key : defaults.keys()) {
        QVariant value;
        QVariantList referred;
        if (defaults[key].typeId() == QMetaType::Bool) {
            value = true;
        } else if (defaults[key].typeId() == QMetaType::LongLong) {
            value = qint64(-7);
        } else if (key.endsWith(QStringLiteral("ime"))) {
            value = uid(3);
            referred = {dateRecord(814900500.123, 4), dateClass};
        } else if (!key.startsWith(u'$')) {
            value = uid(3);
            referred = {QStringLiteral("Größe ⏰")};
        } else {
            continue;
        }
        const auto classIndex = static_cast<quint64>(3 + referred.size());
        const QVariantList objects =
            QVariantList{null, listRecord(QVariantList{uid(2)}, classIndex + 1),
                         alarmRecord(classIndex, {{key, value}})} +
            referred + QVariantList{alarmClass, listClass};
        const auto read = unarchive(archive(objects));
        EXPECT_TRUE(read.isComplete);
        expectSame(archived(read.alarms), archive(objects), key);
    }
}

TEST_F(AlarmArchiveTest, sameRecordTwiceIsTheSameAlarmTwice) {
    const AlarmPtr alarm = Alarm::create(m_runLoop);
    const AlarmPtr twin = Alarm::create(m_runLoop);
    const auto read = m_archive.unarchive(m_archive.archivedData({alarm, twin, alarm}));
    ASSERT_EQ(read.alarms.size(), 3U);
    EXPECT_EQ(read.alarms[0], read.alarms[2]);
    EXPECT_NE(read.alarms[0], read.alarms[1]);
}

// As a preferences file from the other desktop may hold it: immutable lists, mutable texts, dates
// in each of their spellings, keys that are not there yet, classes that nobody knows.
constexpr const char* foreignArchive = R"(<?xml version="1.0" encoding="UTF-8"?>
<plist version="1.0"><dict>
<key>$archiver</key><string>NSKeyedArchiver</string>
<key>$version</key><integer>100000</integer>
<key>$top</key><dict><key>root</key><dict><key>CF$UID</key><integer>1</integer></dict></dict>
<key>$objects</key><array>
<string>$null</string>
<dict><key>$class</key><dict><key>CF$UID</key><integer>10</integer></dict>
  <key>NS.objects</key><array>
    <dict><key>CF$UID</key><integer>2</integer></dict>
    <dict><key>CF$UID</key><integer>6</integer></dict>
    <dict><key>CF$UID</key><integer>11</integer></dict></array></dict>
<dict><key>$class</key><dict><key>CF$UID</key><integer>9</integer></dict>
  <key>title</key><dict><key>CF$UID</key><integer>3</integer></dict>
  <key>voiceName</key><dict><key>CF$UID</key><integer>13</integer></dict>
  <key>time</key><dict><key>CF$UID</key><integer>7</integer></dict>
  <key>runTime</key><dict><key>CF$UID</key><integer>5</integer></dict>
  <key>RunOnTuesday</key><true/><key>RunOnSunday</key><integer>1</integer>
  <key>selRowNo</key><integer>2</integer><key>snoozeTime</key><integer>9</integer></dict>
<dict><key>$class</key><dict><key>CF$UID</key><integer>4</integer></dict>
  <key>NS.string</key><string>Wecker</string></dict>
<dict><key>$classes</key><array><string>NSMutableString</string><string>NSString</string>
  <string>NSObject</string></array><key>$classname</key><string>NSMutableString</string></dict>
<date>2026-11-21T06:30:00Z</date>
<dict><key>$class</key><dict><key>CF$UID</key><integer>9</integer></dict>
  <key>title</key><dict><key>CF$UID</key><integer>0</integer></dict>
  <key>time</key><dict><key>CF$UID</key><integer>14</integer></dict></dict>
<dict><key>$class</key><dict><key>CF$UID</key><integer>8</integer></dict>
  <key>NS.time</key><real>0.5</real></dict>
<dict><key>$classes</key><array><string>NSDate</string><string>NSObject</string></array>
  <key>$classname</key><string>NSDate</string></dict>
<dict><key>$classes</key><array><string>Alarm</string><string>NSObject</string></array>
  <key>$classname</key><string>Alarm</string></dict>
<dict><key>$classes</key><array><string>NSArray</string><string>NSObject</string></array>
  <key>$classname</key><string>NSArray</string></dict>
<dict><key>$class</key><dict><key>CF$UID</key><integer>12</integer></dict>
  <key>title</key><dict><key>CF$UID</key><integer>3</integer></dict></dict>
<dict><key>$classes</key><array><string>Sundial</string><string>NSObject</string></array>
  <key>$classname</key><string>Sundial</string></dict>
<dict><key>$class</key><dict><key>CF$UID</key><integer>4</integer></dict>
  <key>NS.string</key><data>QW5uYQ==</data></dict>
<dict><key>$class</key><dict><key>CF$UID</key><integer>8</integer></dict>
  <key>NS.time</key><integer>60</integer></dict>
</array></dict></plist>)";

TEST_F(AlarmArchiveTest, readsAForeignArchive) {
    const LogCapture log;
    const auto read = m_archive.unarchive(foreignArchive);
    EXPECT_EQ(log.messages().size(), 1) << "the class nobody knows";
    EXPECT_FALSE(read.isComplete);
    ASSERT_EQ(read.alarms.size(), 2U);

    const Alarm& first = *read.alarms[0];
    EXPECT_EQ(first.title(), QStringLiteral("Wecker"));
    EXPECT_EQ(first.voiceName(), QStringLiteral("Anna"));
    EXPECT_EQ(first.storedTime(), QDateTime(QDate(2001, 1, 1), QTime(0, 0, 0, 500), Qt::UTC));
    EXPECT_EQ(first.storedRunTime(), QDateTime(QDate(2026, 11, 21), QTime(6, 30), Qt::UTC));
    EXPECT_EQ(first.weekdays(), (WeekdaySet{Weekday::Tuesday, Weekday::Sunday}));
    EXPECT_EQ(first.selRowNo(), Alarm::Weekly);
    EXPECT_EQ(first.snoozeTime(), 9);
    EXPECT_TRUE(first.soundPath().isNull());

    const Alarm& second = *read.alarms[1];
    EXPECT_TRUE(second.title().isNull());
    EXPECT_EQ(second.storedTime(), QDateTime(QDate(2001, 1, 1), QTime(0, 1), Qt::UTC));
    EXPECT_FALSE(second.storedRunTime().isValid());
}

// The good alarm at index 2 is always there, titled "good"; what is wrong with the one at 3 must
// not keep it from being read.
TEST_F(AlarmArchiveTest, badEntryDoesNotTakeTheOthersAlong) {
    const auto changed = [](const char* key, const QVariant& value) {
        return alarmRecord(4, {{QLatin1String(key), value}});
    };
    const struct {
        const char* what;
        QVariant entry;
        bool isLeftOut = false;
    } cases[] = {
        {"an entry that is a text", QStringLiteral("Alarm"), true},
        {"an entry that is another entry's reference", uid(2), true},
        {"an entry without class", QVariantMap(), true},
        {"a class beyond the table", alarmRecord(99), true},
        {"a class that is the entry itself", alarmRecord(3), true},
        {"the list in itself", listRecord(QVariantList{uid(3)}, 6), true},
        {"a title beyond the table", changed("title", uid(~quint64(0)))},
        {"a title that is the alarm", changed("title", uid(3))},
        {"a title that is a number", changed("title", qint64(5))},
        {"a time that is a text", changed("time", QStringLiteral("07:00"))},
        {"a time that is a class", changed("time", uid(4))},
        {"a time without end", changed("time", dateRecord(1e300, 4))},
        {"a time before the calendar", changed("time", dateRecord(-1e11, 4))},
        {"a number that is a real beyond it", changed("ringWithinUnits", 1e19)},
        {"a number that is huge", changed("selRowNo", ~quint64(0))},
        {"a number of more than 32 bits", changed("snoozeTime", qint64(1) << 31)},
        {"a flag that is a text", changed("isPlaySound", QStringLiteral("YES"))},
    };
    for (const auto& each : cases) {
        const LogCapture log;
        const auto read =
            unarchive(archive({null, listRecord(QVariantList{uid(3), uid(2)}, 6),
                               alarmRecord(4, {{QStringLiteral("title"), uid(5)}}), each.entry,
                               alarmClass, QStringLiteral("good"), listClass}));
        EXPECT_EQ(read.isComplete, !each.isLeftOut) << each.what;
        ASSERT_EQ(read.alarms.size(), each.isLeftOut ? 1U : 2U) << each.what;
        EXPECT_EQ(read.alarms.back()->title(), QStringLiteral("good")) << each.what;
        if (!each.isLeftOut)
            expectSame(archived({read.alarms.front()}), archived({Alarm::create(m_runLoop)}),
                       QLatin1String(each.what));
    }
}

TEST_F(AlarmArchiveTest, whatIsNoArchiveOfAListIsAnEmptyIncompleteList) {
    const auto with = [](const char* key, const QVariant& value) {
        QVariantMap tree = archive({null, listRecord(QVariantList(), 2), listClass});
        tree[QLatin1String(key)] = value;
        return tree;
    };
    const QVariant cases[] = {
        QVariantList(),
        QVariantMap(),
        with("$objects", QVariantMap()),
        with("$objects", QVariantList()),
        with("$objects", QVariantList{null, QStringLiteral("root")}),
        with("$objects", QVariantList{null, listRecord(uid(1), 2)}),
        with("$top", uid(1)),
        with("$top", QVariantMap()),
        with("$top", QVariantMap{{QStringLiteral("root"), uid(0)}}),
        with("$top", QVariantMap{{QStringLiteral("root"), uid(3)}}),
        with("$top", QVariantMap{{QStringLiteral("x"), uid(1)}, {QStringLiteral("y"), uid(1)}}),
    };
    for (const QVariant& tree : cases) {
        const LogCapture log;
        const auto read = unarchive(tree);
        EXPECT_FALSE(read.isComplete) << m_format.binary(tree)->constData();
        EXPECT_EQ(log.messages().size(), 1);
    }
    EXPECT_TRUE(unarchive(with("$top", QVariantMap{{QStringLiteral("$0"), uid(1)}})).isComplete)
        << "a single object at the top is the root under any key";
}

} // namespace
