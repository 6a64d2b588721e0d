// SPDX-License-Identifier: GPL-3.0-or-later
#include "breaks/BreakNumbers.h"

#include "breaks/BreakFormatters.h"
#include "breaks/BreakWindowServices.h"
#include "breaks/ClockBreaks.h"
#include "breaks/PendixTakeABreakSettings.h"
#include "platform/UserDefaults.h"
#include "ui_PendixRespitoWindowsController.h"

#include <QApplication>
#include <QSignalBlocker>

namespace dorvane {

namespace {

// One more than any range has: a number that is cut off is still seen to be too large.
constexpr int mostDigits = 4;

} // namespace

struct BreakNumbers::Row {
    QSlider* slider;
    QLineEdit* field;
    QLabel* hint;
    BreakFormatter* formatter;
    void (BreakNumbers::*sliderChanged)();
    void (PendixTakeABreakSettings::*set)(qint32);
};

BreakNumbers::BreakNumbers(const BreakWindowServices& services,
                           Ui::PendixRespitoWindowsController& controls)
    : m_services(services), m_controls(controls) {
    const auto& beep = services.beep;
    QLineEdit* const frequency = controls.textBreakFreq;
    QLineEdit* const duration = controls.textBreakDuration;
    QLineEdit* const repeat = controls.textRepeat;
    wire({controls.breakFreqSlider, frequency, controls.breakFreqHint,
          new BreakEveryFormatter(beep, frequency), &BreakNumbers::changeBreakFreq,
          &PendixTakeABreakSettings::setTakeABreakFrequency});
    wire({controls.breakDurationSlider, duration, controls.breakDurationHint,
          new BreakDurationFormatter(beep, duration), &BreakNumbers::changeBeakDuration,
          &PendixTakeABreakSettings::setTakeABreakDuration});
    wire({controls.repeatSlider, repeat, controls.repeatHint,
          new BreakRepeatFormatter(beep, repeat), &BreakNumbers::changeRepeatFreq,
          &PendixTakeABreakSettings::setTakeARepeatFrequency});
}

void BreakNumbers::wire(const Row& row) {
    row.field->setValidator(row.formatter);
    row.field->setMaxLength(mostDigits);
    row.hint->setText(row.formatter->range());
    row.field->setAccessibleDescription(row.formatter->range());
    // The window does not grow with what is typed.
    const QString longest = row.formatter->objection(QString(mostDigits, u'9'));
    row.hint->setMinimumWidth(row.hint->fontMetrics().horizontalAdvance(longest));
    QObject::connect(row.slider, &QSlider::valueChanged, row.slider, [this, row] {
        row.hint->setText(row.formatter->range());
        (this->*row.sliderChanged)();
    });
    QObject::connect(row.field, &QLineEdit::textEdited, row.field,
                     [this, row] { controlTextDidChange(row); });
    QObject::connect(row.field, &QLineEdit::returnPressed, row.field,
                     [this, row] { controlTextDidEnd(row); });
    // Not editingFinished(), which keeps silent when the window loses the focus or is closed.
    QObject::connect(qApp, &QApplication::focusChanged, row.field, [this, row](QWidget* before) {
        if (before == row.field)
            controlTextDidEnd(row);
    });
}

void BreakNumbers::show() {
    const PendixTakeABreakSettings& settings = m_services.settings;
    const auto showIn = [](QSlider* slider, QLineEdit* field, qint32 value) {
        const QSignalBlocker quiet(slider);
        slider->setValue(value);
        field->setText(QString::number(slider->value()));
    };
    showIn(m_controls.breakFreqSlider, m_controls.textBreakFreq, settings.takeABreakFrequency());
    showIn(m_controls.breakDurationSlider, m_controls.textBreakDuration,
           settings.takeABreakDuration());
    showIn(m_controls.repeatSlider, m_controls.textRepeat, settings.takeARepeatFrequency());
    showUnits();
}

void BreakNumbers::showUnits() {
    m_controls.breakDurMinuteLabel->setText(
        m_controls.breakDurationSlider->value() < 2 ? tr("minute.") : tr("minutes."));
    m_controls.repeatTimeLabel->setText(m_controls.repeatSlider->value() < 2 ? tr("time.")
                                                                             : tr("times."));
}

void BreakNumbers::enableSliders() {
    for (QSlider* slider :
         {m_controls.breakFreqSlider, m_controls.breakDurationSlider, m_controls.repeatSlider})
        slider->setEnabled(true);
}

void BreakNumbers::enableFields() {
    for (QLineEdit* field :
         {m_controls.textBreakFreq, m_controls.textBreakDuration, m_controls.textRepeat})
        field->setEnabled(true);
}

void BreakNumbers::changeBreakFreq() {
    const int minutes = m_controls.breakFreqSlider->value();
    m_controls.textBreakFreq->setText(QString::number(minutes));
    m_services.settings.setTakeABreakFrequency(minutes);
    m_services.settings.writePrefsAndSync();
}

void BreakNumbers::changeBeakDuration() {
    const int minutes = m_controls.breakDurationSlider->value();
    m_controls.textBreakDuration->setText(QString::number(minutes));
    showUnits();
    m_services.settings.setTakeABreakDuration(minutes);
    if (!m_controls.startRespito->isEnabled()) // the reminder runs
        m_services.defaults.setValue(nextDateKey,
                                     m_services.runLoop.now().addSecs(qint64(minutes) * 60));
    m_services.settings.writePrefsAndSync();
}

void BreakNumbers::changeRepeatFreq() {
    const int count = m_controls.repeatSlider->value();
    m_controls.textRepeat->setText(QString::number(count));
    showUnits();
    m_services.settings.setTakeARepeatFrequency(count);
    m_services.settings.writePrefsAndSync();
}

// What is typed is on the way to a number until it is finished: the 6 of a 60 must end no break.
void BreakNumbers::controlTextDidChange(const Row& row) {
    row.hint->setText(row.formatter->range());
}

// A number that is taken as another says so; a field that was left empty shows again what holds.
void BreakNumbers::controlTextDidEnd(const Row& row) {
    const QString typed = row.field->text();
    if (row.field->isModified() && !typed.isEmpty()) {
        take(row, row.formatter->nearest(typed));
        if (!row.formatter->takes(typed))
            row.hint->setText(row.formatter->objection(typed));
    }
    row.field->setText(QString::number(row.slider->value()));
}

void BreakNumbers::take(const Row& row, int value) {
    const QSignalBlocker quiet(row.slider);
    row.slider->setValue(value);
    (m_services.settings.*row.set)(value);
    showUnits();
    m_services.settings.writePrefsAndSync();
}

} // namespace dorvane
