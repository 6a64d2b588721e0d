// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/QuickWindow.h"

#include "core/AlarmBuilding.h"
#include "core/Instant.h"
#include "editor/AlarmDescription.h"
#include "editor/DescriptionLabel.h"
#include "editor/DialogButtons.h"
#include "platform/RunLoop.h"
#include "widgets/BringToFront.h"

#include <QLabel>
#include <QLineEdit>
#include <QVBoxLayout>

#include <utility>

namespace dorvane {

namespace {

constexpr qsizetype longestLine = 1000;

std::optional<WrittenAlarm> readLine(const QString& line, const QDateTime& now,
                                     const RingDefaults& defaults) {
    return alarmRead(line, QLocale::system(), now, defaults);
}

} // namespace

QuickWindow::QuickWindow(Surroundings surroundings)
    : m_surroundings(std::move(surroundings))
    , m_field(new QLineEdit(this))
    , m_sentence(new DescriptionLabel(this)) {
    setWindowTitle(QStringLiteral("New Timer"));
    auto* const caption = new QLabel(QStringLiteral("&When, and what for:"), this);
    caption->setTextFormat(Qt::PlainText);
    caption->setBuddy(m_field);
    m_field->setObjectName(QStringLiteral("quickField"));
    m_field->setMaxLength(longestLine);
    m_field->setMinimumWidth(m_field->fontMetrics().averageCharWidth() * 48);
    m_field->setPlaceholderText(QStringLiteral("25 tea, or mon-fri 7:15 work"));
    m_sentence->setAccessibleName(QStringLiteral("What was read"));
    auto* const buttons = new QDialogButtonBox(this);
    m_set = addAcceptAndCancel(*buttons, QStringLiteral("&Set"));
    auto* const layout = new QVBoxLayout(this);
    layout->addWidget(caption);
    layout->addWidget(m_field);
    layout->addWidget(m_sentence);
    layout->addWidget(buttons);
    connect(m_field, &QLineEdit::textChanged, this, &QuickWindow::describe);
    connect(buttons, &QDialogButtonBox::accepted, this, &QuickWindow::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QuickWindow::reject);
    describe();
}

void QuickWindow::showForTyping() {
    if (!isVisible())
        m_field->clear();
    m_field->setFocus();
    show();
    bringToFront(*this);
}

// Null where no alarm can be read that is still to come.
AlarmPtr QuickWindow::alarm() const {
    const QDateTime now = m_surroundings.runLoop.now();
    const auto read = readLine(m_field->text(), now, m_surroundings.ringDefaults());
    if (!read)
        return nullptr;
    AlarmPtr alarm = alarmBuiltFrom(read->form, now, weekdayName(now.date()));
    if (alarm->isRelative())
        alarm->setRunTime(now.addSecs(-read->counted.count()));
    const auto due = alarm->due(instantOf(now));
    return due && *due > instantOf(now) ? alarm : nullptr;
}

void QuickWindow::describe() {
    const QDateTime now = m_surroundings.runLoop.now();
    const auto read = readLine(m_field->text(), now, m_surroundings.ringDefaults());
    const bool isAhead = alarm() != nullptr;
    m_set->setEnabled(isAhead);
    if (isAhead && read->counted.count() > 0)
        m_sentence->setText(
            QStringLiteral("Alarm '%1' will ring %2 seconds from now.")
                .arg(read->form.title)
                .arg(read->form.interval.toLongLong() * 60 - read->counted.count()));
    else if (isAhead)
        m_sentence->setText(manageDescriptionLabel(read->form, now.date()));
    else if (read)
        m_sentence->setText(QStringLiteral("That moment has passed."));
    else
        m_sentence->setText(
            QStringLiteral("Such as 25, 25 tea, 1h30 bread, 7:30, tomorrow 7 gym."));
}

// The time has gone on since it was typed.
void QuickWindow::accept() {
    const AlarmPtr made = alarm();
    if (!made)
        return describe();
    m_surroundings.set(made);
    QDialog::accept();
}

} // namespace dorvane
