// SPDX-License-Identifier: GPL-3.0-or-later
#include "breaks/PendixTakeABreakSettings.h"

#include "core/KeyedArchiver.h"
#include "platform/Log.h"
#include "platform/NotificationCenter.h"
#include "platform/UserDefaults.h"
#include "platform/UserFolders.h"

#include <algorithm>
#include <limits>
#include <optional>

namespace dorvane {

using namespace std::chrono_literals;

namespace {

const auto enableKey = QStringLiteral("PendixEnableTakeABreak");
const auto durationKey = QStringLiteral("PendixTakeABreakDuration");
const auto frequencyKey = QStringLiteral("PendixTakeABreakFrequency");
const auto repeatKey = QStringLiteral("PendixTakeARepeatFrequency");
const auto soundKey = QStringLiteral("PendixTakeABreakSoundPath");
const auto durationSoundKey = QStringLiteral("PendixTakeADurationSoundPath");
const auto showKey = QStringLiteral("PendixRespitoShowMenu");
const auto statusKey = QStringLiteral("PendixRespitoStatus");
const auto awayKey = QStringLiteral("PauseBreaksWhileAway");

// A slider that is dragged writes at every step; the disk gets the last one.
constexpr RunLoop::Milliseconds flushDelay = 2s;

std::optional<qint64> integerOf(const QVariant& value) {
    switch (value.typeId()) {
    case QMetaType::Bool:
    case QMetaType::Int:
    case QMetaType::UInt:
    case QMetaType::LongLong:
        return value.toLongLong();
    case QMetaType::ULongLong: // only what is too large for the others is stored like that
        return std::numeric_limits<qint64>::max();
    case QMetaType::Double:
        return static_cast<qint64>(std::clamp(value.toDouble(), -9e18, 9e18));
    default:
        return std::nullopt;
    }
}

// The bound is compared before the value is cut to its type.
template<typename Stored>
Stored integerSetting(const QVariant& value, Stored standard, qint64 lowest) {
    const std::optional<qint64> stored = integerOf(value);
    return stored ? static_cast<Stored>(std::max(*stored, lowest)) : standard;
}

constexpr qint64 unbounded = std::numeric_limits<qint64>::min();

} // namespace

PendixTakeABreakSettings::PendixTakeABreakSettings(UserDefaults& defaults, const UserFolders& user,
                                                   RunLoop& runLoop,
                                                   NotificationCenter& notifications)
    : m_defaults(defaults)
    , m_runLoop(runLoop)
    , m_notifications(notifications)
    , m_defaultDurationSoundPath(user.data + QStringLiteral("/Pendix/Rings/Basso.aiff")) {
    // All of them are written at every start. A file of the user's that comes into reach only then
    // must not get these in the place of what he chose.
    const std::pair<QString, QVariant> standards[] = {
        {enableKey, 5},
        {durationKey, 5},
        {frequencyKey, 25},
        {repeatKey, 8},
        {showKey, 1},
        {soundKey, QVariant()},
        {durationSoundKey, m_defaultDurationSoundPath}};
    for (const auto& [key, standard] : standards)
        m_defaults.setJoin(key, [standard = standard](const QVariant& base, const QVariant& ours,
                                                      const QVariant& theirs) {
            const bool isNobodysChoice = !base.isValid() && ours == standard;
            return ours == base || isNobodysChoice ? theirs : ours;
        });
}

void PendixTakeABreakSettings::loadPrefs() {
    m_defaults.synchronize([](const std::optional<QString>& problem) {
        if (problem)
            qCWarning(logBreaks, "loading TakeABreak prefs CFPreferencesSynchronize failed");
    });
    // A reminder that was switched off by a 0 here has always come back as on; what really gates it
    // is its status.
    setEnableTakeABreak(integerSetting<Flag>(m_defaults.value(enableKey), 5, 5));
    setTakeABreakDuration(integerSetting<qint32>(m_defaults.value(durationKey), 5, 2));
    setTakeABreakFrequency(integerSetting<qint32>(m_defaults.value(frequencyKey), 25, 5));
    setTakeARepeatFrequency(integerSetting<qint32>(m_defaults.value(repeatKey), 8, 2));
    setShowRespito(integerSetting<Flag>(m_defaults.value(showKey), 1, unbounded));
    setRespitoStatus(integerSetting<Flag>(m_defaults.value(statusKey), 0, unbounded));

    const QVariant sound = m_defaults.value(soundKey);
    // Without a start sound it is the other one that gets the built-in track, and loses it again in
    // the next step. Preferences were written with that, so a missing start sound stays none.
    if (sound.typeId() == QMetaType::QString)
        setSoundPath(sound.toString());
    else
        setDurationSoundPath(QStringLiteral("Respito"));
    const QVariant durationSound = m_defaults.value(durationSoundKey);
    setDurationSoundPath(durationSound.typeId() == QMetaType::QString ? durationSound.toString()
                                                                      : m_defaultDurationSoundPath);
    const std::optional<qint64> away = integerOf(m_defaults.value(awayKey));
    m_pausesWhileAway = away ? std::optional(*away != 0) : std::nullopt;
}

void PendixTakeABreakSettings::writePrefs() {
    m_defaults.setValue(enableKey, int(m_enableTakeABreak));
    m_defaults.setValue(showKey, int(m_showRespito));
    m_defaults.setValue(statusKey, int(m_respitoStatus));
    m_defaults.setValue(durationKey, m_takeABreakDuration);
    m_defaults.setValue(frequencyKey, m_takeABreakFrequency);
    m_defaults.setValue(repeatKey, m_takeARepeatFrequency);
    writePath(soundKey, m_soundPath);
    writePath(durationSoundKey, m_durationSoundPath);
    if (m_pausesWhileAway)
        m_defaults.setValue(awayKey, *m_pausesWhileAway);
    m_flush = m_runLoop.scheduleOnce(
        flushDelay, [this] { m_defaults.synchronize(); }, RunLoopMode::Common);
    m_notifications.post(breakSettingsDidChangeNotification, this);
}

void PendixTakeABreakSettings::replaceSounds(const QHash<QString, QString>& moved) {
    loadPrefs();
    if (!moved.contains(m_soundPath) && !moved.contains(m_durationSoundPath))
        return;
    m_soundPath = moved.value(m_soundPath, m_soundPath);
    m_durationSoundPath = moved.value(m_durationSoundPath, m_durationSoundPath);
    writePrefsAndSync();
}

void PendixTakeABreakSettings::writePath(const QString& key, const QString& path) {
    if (path.isNull())
        m_defaults.removeValue(key);
    else
        m_defaults.setValue(key, path);
}

void PendixTakeABreakSettings::writePrefsAndSync() {
    writePrefs();
}

void PendixTakeABreakSettings::encodeWithCoder(KeyedArchiver& coder) const {
    qCInfo(logBreaks, "encodeWithCoder PendixTakeABreakSettings");
    coder.encodeBool(m_enableTakeABreak != 0, enableKey);
    coder.encodeInt(m_takeABreakDuration, durationKey);
    coder.encodeInt(m_takeABreakFrequency, frequencyKey);
    coder.encodeInt(m_takeARepeatFrequency, repeatKey);
    coder.encodeObject(m_soundPath, soundKey);
    coder.encodeObject(m_durationSoundPath, durationSoundKey);
    coder.encodeBool(m_showRespito != 0, showKey);
    coder.encodeBool(m_respitoStatus != 0, statusKey);
}

void PendixTakeABreakSettings::initWithCoder(KeyedUnarchiver::Object& coder) {
    setEnableTakeABreak(coder.decodeBool(enableKey));
    setTakeABreakDuration(0);
    setTakeABreakFrequency(coder.decodeInt(durationKey));
    setTakeABreakFrequency(coder.decodeInt(frequencyKey));
    setTakeARepeatFrequency(coder.decodeInt(repeatKey));
    setSoundPath(coder.decodeString(soundKey));
    setDurationSoundPath(coder.decodeString(durationSoundKey));
    setShowRespito(coder.decodeBool(showKey));
    setRespitoStatus(coder.decodeBool(statusKey));
}

} // namespace dorvane
