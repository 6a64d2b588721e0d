// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

namespace dorvane {

// A reminder and the sound file that speaks it. Two are equal when their files are.
class StringContainer {
public:
    [[nodiscard]] static StringContainer containerWithStringValue(const QString& reminderString,
                                                                  const QString& soundPath) {
        StringContainer container;
        container.m_reminderString = reminderString;
        container.m_soundPath = soundPath;
        return container;
    }

    [[nodiscard]] const QString& stringValue() const { return m_reminderString; }
    [[nodiscard]] const QString& soundPath() const { return m_soundPath; }

    friend bool operator==(const StringContainer& a, const StringContainer& b) {
        return a.m_soundPath == b.m_soundPath;
    }

private:
    QString m_reminderString;
    QString m_soundPath;
};

} // namespace dorvane
