// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/WrittenInterval.h"

#include <QCommandLineOption>
#include <QLocale>
#include <QVariantMap>

#include <variant>

class QCommandLineParser;

namespace dorvane {

// The options with which the terminal describes an alarm, read as the editor reads what is typed.
class AlarmOptions {
public:
    AlarmOptions();

    [[nodiscard]] QList<QCommandLineOption> all() const;

    // What they say of an alarm that is set at `now`, as docs/bus.md describes it; or what is wrong
    // with them, for whoever typed them.
    [[nodiscard]] std::variant<QVariantMap, QString>
    read(const QCommandLineParser& parser, const QLocale& territory, const QDateTime& now) const;

private:
    [[nodiscard]] QString conflictIn(const QCommandLineParser& parser) const;
    QString takeWhen(const QCommandLineParser& parser, const QLocale& territory,
                     const QDateTime& now, QVariantMap& alarm) const;
    QString takeAction(const QCommandLineParser& parser, QVariantMap& alarm) const;

    const QCommandLineOption m_in, m_repeat, m_at, m_date, m_everyDay, m_on, m_everyWeek, m_sound,
        m_fade, m_voice, m_snooze, m_store;
};

// The length as a description has it.
void insertInterval(const WrittenInterval& interval, QVariantMap& alarm);

// What lengths of time can be typed, for the message about another.
[[nodiscard]] QString intervalFault(const QString& what, const QString& typed);

} // namespace dorvane
