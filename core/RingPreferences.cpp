// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/RingPreferences.h"

#include "platform/UserDefaults.h"

#include <algorithm>

namespace dorvane {

namespace {

const auto snoozeKey = QStringLiteral("DefaultSnoozeMinutes");
const auto soundKey = QStringLiteral("DefaultSoundPath");
const auto volumeKey = QStringLiteral("RingVolume");

} // namespace

qint64 RingPreferences::snooze() const {
    const qint64 chosen = m_defaults.value(snoozeKey).toLongLong();
    const bool isLength = std::ranges::find(snoozeLengths, chosen) != snoozeLengths.end();
    return isLength ? chosen : snoozeLengths.front();
}

void RingPreferences::setSnooze(qint64 minutes) {
    set(snoozeKey, minutes);
}

QString RingPreferences::soundPath() const {
    return m_defaults.value(soundKey).toString();
}

void RingPreferences::setSoundPath(const QString& path) {
    set(soundKey, path);
}

int RingPreferences::volume() const {
    bool isNumber = false;
    const int chosen = m_defaults.value(volumeKey).toInt(&isNumber);
    return isNumber ? std::clamp(chosen, leastVolume, 100) : 100;
}

void RingPreferences::setVolume(int hundredths) {
    set(volumeKey, qint64(hundredths));
}

void RingPreferences::set(const QString& key, const QVariant& value) {
    m_defaults.setValue(key, value);
    m_defaults.synchronize();
}

} // namespace dorvane
