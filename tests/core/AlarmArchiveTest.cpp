// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/AlarmArchive.h"

#include "platform/linux/preferences/PropertyListCodec.h"
#include "tests/support/Files.h"
#include "tests/support/Testing.h"

#include <QTimeZone>

using namespace dorvane::testing;

namespace {

QVariant uid(quint64 index) {
    return QVariant::fromValue(PropertyListUid{index});
}

QVariantMap classOf(const QVariantList& names) {
    return {{u"$classname"_qs, names.first()}, {u"$classes"_qs, names}};
}

QVariantMap record(const QString& key, const QVariant& value, quint64 classIndex) {
    return {{key, value}, {u"$class"_qs, uid(classIndex)}};
}

QVariantMap listRecord(const QVariant& elements, quint64 classIndex) {
    return record(u"NS.objects"_qs, elements, classIndex);
}

QVariantMap dateRecord(const QVariant& seconds, quint64 classIndex) {
    return record(u"NS.time"_qs, seconds, classIndex);
}

const QVariant null = u"$null"_qs;
const QVariant object = u"NSObject"_qs;
const QVariantMap alarmClass = classOf({u"Alarm"_qs, object});
const QVariantMap dateClass = classOf({u"NSDate"_qs, object});
const QVariantMap listClass = classOf({u"NSMutableArray"_qs, u"NSArray"_qs, object});

// The record of an alarm with everything at its default, under `changes`.
QVariantMap alarmRecord(quint64 classIndex, const QVariantMap& changes = {}) {
    QVariantMap values{{u"$class"_qs, uid(classIndex)}};
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
    return {{u"$version"_qs, qint64(100000)},
            {u"$archiver"_qs, u"NSKeyedArchiver"_qs},
            {u"$top"_qs, QVariantMap{{u"root"_qs, uid(1)}}},
            {u"$objects"_qs, objects}};
}

class AlarmArchiveTest : public ::testing::Test {
protected:
    // Values of the same types, and a failure that shows both.
    static void expectSame(const QVariant& actual, const QVariant& expected, const QString& what) {
        EXPECT_EQ(actual, expected) << qPrintable(what);
        EXPECT_EQ(text(actual), text(expected)) << qPrintable(what);
    }
    static std::string text(const QVariant& value) {
        QString text;
        QDebug(&text) << value;
        return text.replace(u"), ("_qs, u"),\n("_qs).toStdString();
    }

    [[nodiscard]] AlarmArchive::Unarchived unarchive(const QVariant& tree) const {
        return m_archive.unarchive(*m_format.binary(tree));
    }
    [[nodiscard]] QVariant archived(const std::vector<AlarmPtr>& alarms) const {
        return *m_format.parse(m_archive.archivedData(alarms));
    }

    PropertyListCodec m_format;
    AlarmArchive m_archive{m_format};
};

// The order of the table is that of the format's own archiver: what an object refers to follows it
// and its class comes last; texts, classes and repeated objects are shared.
TEST_F(AlarmArchiveTest, writesTheLayoutOfTheFormatsOwnArchiver) {
    const AlarmPtr first = Alarm::create();
    first->setTitle(u"Tee"_qs);
    first->setVoiceName(u"Tee"_qs);
    first->setTime(QDateTime(QDate(2001, 1, 1), QTime(0, 1, 0, 250), QTimeZone::utc()));
    first->setSnoozeTime((qint64(1) << 32) + 9); // archived in 32 bits
    const AlarmPtr second = Alarm::create();
    second->setTitle(u"$null"_qs); // in the table, this text means nil
    second->setSoundPath(u""_qs);
    second->setRunTime(QDateTime(QDate(2000, 12, 31), QTime(23, 59), QTimeZone::utc()));
    first->setIsTriggered(true);
    first->setIsActive(true);
    first->snooze(5);

    const QVariantMap firstRecord = alarmRecord(6, {{u"title"_qs, uid(3)},
                                                    {u"voiceName"_qs, uid(3)},
                                                    {u"time"_qs, uid(4)},
                                                    {u"snoozeTime"_qs, qint64(9)}});
    const QVariantMap secondRecord = alarmRecord(
        6, {{u"title"_qs, uid(8)}, {u"runTime"_qs, uid(10)}, {u"soundPath"_qs, uid(11)}});
    const QVariantMap stringClass = classOf({u"NSString"_qs, object});
    expectSame(archived({first, second, first}),
               archive({null, listRecord(QVariantList{uid(2), uid(7), uid(2)}, 12), firstRecord,
                        u"Tee"_qs, dateRecord(60.25, 5), dateClass, alarmClass, secondRecord,
                        record(u"NS.string"_qs, null, 9), stringClass, dateRecord(-60.0, 5),
                        QString(QLatin1String("")), listClass}),
               QString());
}

// One value after the other, so that none can stand in for another.
TEST_F(AlarmArchiveTest, everyFieldIsReadIntoItsOwnPlace) {
    const QVariantMap defaults =
        alarmRecord(3, {{u"ringsUntilAnswered"_qs, false}, {u"startsSoftly"_qs, false}});
    for (const QString& key : defaults.keys()) {
        QVariant value;
        QVariantList referred;
        if (defaults[key].typeId() == QMetaType::Bool) {
            value = true;
        } else if (defaults[key].typeId() == QMetaType::LongLong) {
            value = qint64(-7);
        } else if (key.endsWith(u"ime"_qs)) {
            value = uid(3);
            referred = {dateRecord(814900500.123, 4), dateClass};
        } else if (!key.startsWith(u'$')) {
            value = uid(3);
            referred = {u"Größe ⏰"_qs};
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

// Lists that cannot be changed, texts that can, texts as bytes, dates as they stand or by whole
// seconds, numbers for flags, keys that are not there; and an entry that is no alarm.
TEST_F(AlarmArchiveTest, readsWhatOtherProgramsWrite) {
    const auto read = m_archive.unarchive(
        contentsOf(QStringLiteral(DORVANE_SEEDS "/fuzz_archive/foreign-binary.plist")));
    EXPECT_FALSE(read.isComplete);
    ASSERT_EQ(read.alarms.size(), 2U);
    const AlarmPtr expected = Alarm::initWithTime(
        QDateTime({2001, 1, 1}, QTime(0, 0, 0, 500), QTimeZone::utc()), u"Wecker"_qs);
    expected->setVoiceName(u"Anna"_qs);
    expected->setRunTime(QDateTime({2026, 11, 21}, {6, 30}, QTimeZone::utc()));
    expected->setSelRowNo(Alarm::Weekly);
    expected->setSnoozeTime(9);
    expected->setWeekdays({Weekday::Tuesday, Weekday::Sunday});
    expectSame(archived({read.alarms[0]}), archived({expected}), QString());
    EXPECT_EQ(read.alarms[1]->storedTime(), QDateTime({2001, 1, 1}, {0, 1}, QTimeZone::utc()));
}

// The good alarm at index 2 is always there, titled "good"; what is wrong with the one at 3 must
// not keep it from being read, and is never taken for something that is missing. One of which the
// moment cannot be read has none.
TEST_F(AlarmArchiveTest, badEntryDoesNotTakeTheOthersAlong) {
    const auto changed = [](const char* key, const QVariant& value) {
        return alarmRecord(4, {{QLatin1String(key), value}});
    };
    const struct {
        const char* what;
        QVariant entry;
        bool isLeftOut = false;
        bool hasNoMoment = false;
    } cases[] = {
        {"an entry that is a text", u"Alarm"_qs, true},
        {"an entry without class", QVariantMap(), true},
        {"a class beyond the table", alarmRecord(99), true},
        {"the list in itself", listRecord(QVariantList{uid(3)}, 6), true},
        {"a title beyond the table", changed("title", uid(~quint64(0)))},
        {"a title that is the alarm", changed("title", uid(3))},
        {"a time beyond the table", changed("time", uid(99))},
        {"a time that is a text", changed("time", u"07:00"_qs)},
        {"a time without end", changed("time", dateRecord(1e300, 4))},
        {"a number that is a real beyond it", changed("ringWithinUnits", 1e19), false, true},
        {"a kind that is a text", changed("selRowNo", u"1"_qs), false, true},
        {"a kind beyond the table", changed("isTimeWithDate", uid(99)), false, true},
        {"a number of more than 32 bits", changed("snoozeTime", qint64(1) << 31)},
        {"a flag that is a text", changed("isPlaySound", u"YES"_qs)},
        {"an unknown value that contains itself", changed("mood", uid(3))},
        {"an unknown value beyond the table", changed("mood", QVariantList{uid(99)})},
    };
    const AlarmPtr nothing = Alarm::create();
    const AlarmPtr noMoment = Alarm::create();
    noMoment->forgetDue();
    for (const auto& each : cases) {
        const auto read = unarchive(archive({null, listRecord(QVariantList{uid(3), uid(2)}, 6),
                                             alarmRecord(4, {{u"title"_qs, uid(5)}}), each.entry,
                                             alarmClass, u"good"_qs, listClass}));
        EXPECT_FALSE(read.isComplete) << each.what;
        ASSERT_EQ(read.alarms.size(), each.isLeftOut ? 1U : 2U) << each.what;
        EXPECT_EQ(read.alarms.back()->title(), u"good"_qs) << each.what;
        if (!each.isLeftOut)
            expectSame(archived({read.alarms.front()}),
                       archived({each.hasNoMoment ? noMoment : nothing}), QLatin1String(each.what));
    }
}

// Values of later versions, of any form: they come back as they were, copied alarms included.
TEST_F(AlarmArchiveTest, unknownValuesStayWithTheirAlarm) {
    const QVariantList place{uid(0), 0.5, QVariantMap{{u"town"_qs, uid(5)}}};
    const QVariantMap entry = alarmRecord(6, {{u"mood"_qs, uid(3)}, {u"rank"_qs, qint64(7)}});
    const auto first = unarchive(
        archive({null, listRecord(QVariantList{uid(2)}, 7), entry, record(u"place"_qs, place, 4),
                 classOf({u"Mood"_qs, object}), u"Graz"_qs, alarmClass, listClass}));
    ASSERT_TRUE(first.isComplete);
    const auto again = m_archive.unarchive(m_archive.archivedData({first.alarms[0]->copy({})}));
    EXPECT_TRUE(again.isComplete);
    ASSERT_EQ(again.alarms.size(), 1U);
    EXPECT_EQ(again.alarms[0]->otherValues(), first.alarms[0]->otherValues());
    const QVariantList objects = archived(again.alarms).toMap()[u"$objects"_qs].toList();
    const auto at = [&](const QVariant& reference) {
        return objects[qsizetype(reference.value<PropertyListUid>().value)];
    };
    const QVariantMap alarm = objects[2].toMap();
    EXPECT_EQ(alarm[u"rank"_qs], 7);
    const QVariantMap kept = at(alarm[u"mood"_qs]).toMap();
    EXPECT_EQ(at(kept[u"$class"_qs]), classOf({u"Mood"_qs, object}));
    const QVariantList keptPlace = kept[u"place"_qs].toList();
    EXPECT_EQ(keptPlace[0], uid(0));
    EXPECT_EQ(keptPlace[1], 0.5);
    EXPECT_EQ(at(keptPlace[2].toMap()[u"town"_qs]), u"Graz"_qs);
}

} // namespace
