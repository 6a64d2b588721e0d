// SPDX-License-Identifier: GPL-3.0-or-later
#include "breaks/PendixTakeABreakSettings.h"

#include "core/KeyedArchiver.h"
#include "tests/support/FakeDesktop.h"
#include "tests/support/MemoryDefaults.h"

#include <QRegularExpression>

using namespace dorvane::testing;

namespace {

class BreakSettingsTest : public FakeDesktopTest {
protected:
    // Every value in one line, in the order in which they are read.
    QString loaded(const QVariantMap& stored) {
        for (auto value = stored.cbegin(); value != stored.cend(); ++value)
            m_defaults.setValue(value.key(), value.value());
        m_settings.loadPrefs();
        return text(m_settings);
    }

    static QString text(const PendixTakeABreakSettings& settings) {
        QStringList paths = {settings.soundPath(), settings.durationSoundPath()};
        paths.replaceInStrings(QRegularExpression(u"^/c/Pendix/Rings/"_qs), {});
        return u"%1 %2 %3 %4 %5 %6 %7"_qs.arg(settings.enableTakeABreak())
            .arg(settings.takeABreakDuration())
            .arg(settings.takeABreakFrequency())
            .arg(settings.takeARepeatFrequency())
            .arg(settings.showRespito())
            .arg(settings.RespitoStatus())
            .arg(paths.join(u' '));
    }

    MemoryDefaults m_defaults;
    UserFolders m_user{.home = {}, .caches = {}, .configuration = {}, .data = u"/c"_qs};
    PendixTakeABreakSettings m_settings{m_defaults, m_user, loop, notifications};
};

const auto enable = u"PendixEnableTakeABreak"_qs;
const auto duration = u"PendixTakeABreakDuration"_qs;
const auto frequency = u"PendixTakeABreakFrequency"_qs;
const auto repeat = u"PendixTakeARepeatFrequency"_qs;
const auto show = u"PendixRespitoShowMenu"_qs;
const auto status = u"PendixRespitoStatus"_qs;
const auto sound = u"PendixTakeABreakSoundPath"_qs;
const auto endSound = u"PendixTakeADurationSoundPath"_qs;

TEST_F(BreakSettingsTest, WhatIsStoredIsBoundedBeforeItIsCut) {
    const auto inPath = u"/in"_qs;
    const std::pair<QVariantMap, const char*> table[] = {
        {{}, "5 5 25 8 1 0  Basso.aiff"},
        {{{duration, 1}, {frequency, 4}, {repeat, 0}}, "5 2 5 2 1 0  Basso.aiff"},
        {{{duration, 3}, {frequency, 6}, {repeat, 3}}, "5 3 6 3 1 0  Basso.aiff"},
        {{{enable, 0}, {show, 256}, {status, 257}}, "5 3 6 3 0 1  Basso.aiff"},
        {{{enable, 256}, {show, true}, {status, -1}}, "0 3 6 3 1 -1  Basso.aiff"},
        {{{enable, 7}, {duration, 1LL << 32}, {frequency, 9 - (1LL << 32)}},
         "7 0 5 3 1 -1  Basso.aiff"},
        {{{duration, 7.9}, {frequency, inPath}, {repeat, QVariantList()}},
         "7 7 25 8 1 -1  Basso.aiff"},
        {{{sound, inPath}, {endSound, 5}}, "7 7 25 8 1 -1 /in Basso.aiff"},
        {{{endSound, u"/out"_qs}}, "7 7 25 8 1 -1 /in /out"},
    };
    for (const auto& [stored, expected] : table)
        EXPECT_EQ(loaded(stored).toStdString(), expected);
}

TEST_F(BreakSettingsTest, WrittenSettingsReachTheDiskByThemselvesAndComeBack) {
    loaded({{duration, 3}, {frequency, 60}, {repeat, 4}, {show, 0}, {sound, u"/in"_qs}});
    m_settings.setEnableTakeABreak(0);
    m_settings.setRespitoStatus(1);
    m_settings.setDurationSoundPath(u"/out"_qs);
    m_settings.writePrefsAndSync();
    EXPECT_FALSE(m_defaults.written().contains(endSound));
    loop.advance(2s);
    MemoryDefaults next(m_defaults.written());
    PendixTakeABreakSettings read(next, m_user, loop, notifications);
    read.loadPrefs();
    EXPECT_EQ(text(read).toStdString(), "5 3 60 4 0 1 /in /out");
    const auto name = u"PendixTakeABreakSettings"_qs;
    const QVariant archive = KeyedArchiver::archivedList(
        {{&m_settings, {name}, [&](KeyedArchiver& coder) { m_settings.encodeWithCoder(coder); }}});
    read.initWithCoder(KeyedUnarchiver(archive).decodeList(name).objects.front());
    EXPECT_EQ(text(read).toStdString(), "0 0 60 4 0 1 /in /out") << "no length, as ever";

    m_settings.setSoundPath({});
    m_settings.writePrefs();
    EXPECT_EQ(loaded({}).toStdString(), "5 3 60 4 0 1  /out");
}

} // namespace
