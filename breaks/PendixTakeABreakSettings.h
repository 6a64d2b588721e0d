// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/KeyedUnarchiver.h"
#include "platform/RunLoop.h"

#include <QHash>
#include <QString>

#include <optional>

namespace dorvane {

class KeyedArchiver;
class NotificationCenter;
class UserDefaults;
struct UserFolders;

// Posted after the break settings were written.
inline const QString breakSettingsDidChangeNotification =
    QStringLiteral("DorvaneBreakSettingsDidChange");

// In place of a file: the track that comes with the program.
inline const QString builtInTrack = QStringLiteral("Respito");

// The settings of the break reminder. The preferences are the truth and this is a view of them: who
// reads a value calls loadPrefs() first, who sets one calls writePrefsAndSync() afterwards, which
// writes all of them. Main thread only.
class PendixTakeABreakSettings {
public:
    // All but the folders must outlive the settings. Every value is 0 or unset until loadPrefs().
    PendixTakeABreakSettings(UserDefaults& defaults, const UserFolders& user, RunLoop& runLoop,
                             NotificationCenter& notifications);

    // The one instance of the application.
    static PendixTakeABreakSettings& sharedInstance();

    // Reads every value; what is missing or no number gets its default, what is too small its
    // lowest value. There is no highest value here.
    void loadPrefs();
    void writePrefs();
    // Writes only; the preferences reach the disk in their own time, soon afterwards.
    void writePrefsAndSync();

    // The archive of the eight settings. What is read back has the length of a break for the time
    // between two for a moment, then that time, and no length: archives were always read like that.
    void encodeWithCoder(KeyedArchiver& coder) const;
    void initWithCoder(KeyedUnarchiver::Object& coder);

    // Yes is any value but 0; one byte, as it is stored.
    using Flag = qint8;

    // Gates the countdown in minutes (see ClockBreaks).
    [[nodiscard]] Flag enableTakeABreak() const { return m_enableTakeABreak; }
    void setEnableTakeABreak(Flag value) { m_enableTakeABreak = value; }

    // Whether the reminder runs.
    [[nodiscard]] Flag RespitoStatus() const { return m_respitoStatus; }
    void setRespitoStatus(Flag value) { m_respitoStatus = value; }

    [[nodiscard]] Flag showRespito() const { return m_showRespito; }
    void setShowRespito(Flag value) { m_showRespito = value; }

    // Minutes of a break.
    [[nodiscard]] qint32 takeABreakDuration() const { return m_takeABreakDuration; }
    void setTakeABreakDuration(qint32 minutes) { m_takeABreakDuration = minutes; }

    // Minutes from one break to the next.
    [[nodiscard]] qint32 takeABreakFrequency() const { return m_takeABreakFrequency; }
    void setTakeABreakFrequency(qint32 minutes) { m_takeABreakFrequency = minutes; }

    // Breaks until the reminder stops by itself.
    [[nodiscard]] qint32 takeARepeatFrequency() const { return m_takeARepeatFrequency; }
    void setTakeARepeatFrequency(qint32 count) { m_takeARepeatFrequency = count; }

    // Sounds have other paths now; the settings are read, and written where one of them was used.
    void replaceSounds(const QHash<QString, QString>& moved);

    // Full paths of the sounds at the start and at the end of a break; null when unset.
    [[nodiscard]] const QString& soundPath() const { return m_soundPath; }
    void setSoundPath(const QString& path) { m_soundPath = path; }
    [[nodiscard]] const QString& durationSoundPath() const { return m_durationSoundPath; }
    void setDurationSoundPath(const QString& path) { m_durationSoundPath = path; }

    // Whether breaks wait while nobody is there; where the user has not said, only where that can
    // be known.
    [[nodiscard]] bool pausesWhileAway(bool canBeKnown) const {
        return m_pausesWhileAway.value_or(canBeKnown);
    }
    void setPausesWhileAway(bool pauses) { m_pausesWhileAway = pauses; }

    // The sound at the end of a break unless another was chosen.
    [[nodiscard]] const QString& defaultDurationSoundPath() const {
        return m_defaultDurationSoundPath;
    }

private:
    void writePath(const QString& key, const QString& path);

    UserDefaults& m_defaults;
    RunLoop& m_runLoop;
    NotificationCenter& m_notifications;
    const QString m_defaultDurationSoundPath;
    RunLoopTimer m_flush;

    Flag m_enableTakeABreak = 0;
    Flag m_respitoStatus = 0;
    Flag m_showRespito = 0;
    qint32 m_takeABreakDuration = 0;
    qint32 m_takeABreakFrequency = 0;
    qint32 m_takeARepeatFrequency = 0;
    QString m_soundPath;
    QString m_durationSoundPath;
    std::optional<bool> m_pausesWhileAway;
};

} // namespace dorvane
