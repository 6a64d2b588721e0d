// SPDX-License-Identifier: GPL-3.0-or-later
#include "breaks/BreakNumbers.h"

#include "breaks/BreakFormatters.h"
#include "breaks/BreakWindowServices.h"
#include "breaks/ClockBreaks.h"
#include "breaks/PendixTakeABreakSettings.h"
#include "platform/UserDefaults.h"
#include "ui_PendixRespitoWindowsController.h"

#include <QSignalBlocker>

namespace dorvane {

struct BreakNumbers::Row {
    QSlider* slider;
    QLineEdit* field;
    QValidator* formatter;
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
    wire({controls.breakFreqSlider, frequency, new BreakEveryFormatter(beep, frequency),
          &BreakNumbers::changeBreakFreq, &PendixTakeABreakSettings::setTakeABreakFrequency});
    wire({controls.breakDurationSlider, duration, new BreakDurationFormatter(beep, duration),
          &BreakNumbers::changeBeakDuration, &PendixTakeABreakSettings::setTakeABreakDuration});
    wire({controls.repeatSlider, repeat, new BreakRepeatFormatter(beep, repeat),
          &BreakNumbers::changeRepeatFreq, &PendixTakeABreakSettings::setTakeARepeatFrequency});
}

void BreakNumbers::wire(const Row& row) {
    row.field->setValidator(row.formatter);
    QObject::connect(row.slider, &QSlider::valueChanged, row.slider,
                     [this, row] { (this->*row.sliderChanged)(); });
    QObject::connect(row.field, &QLineEdit::textEdited, row.field,
                     [this, row] { controlTextDidChange(row); });
    // A field that was left empty shows again what holds.
    QObject::connect(row.field, &QLineEdit::editingFinished, row.field,
                     [row] { row.field->setText(QString::number(row.slider->value())); });
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
    m_controls.breakDurMinuteLabel->setText(m_controls.breakDurationSlider->value() < 2
                                                ? QStringLiteral("minute.")
                                                : QStringLiteral("minutes."));
    m_controls.repeatTimeLabel->setText(
        m_controls.repeatSlider->value() < 2 ? QStringLiteral("time.") : QStringLiteral("times."));
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

void BreakNumbers::controlTextDidChange(const Row& row) {
    const int value = integerValue(row.field->text());
    const QSignalBlocker quiet(row.slider);
    row.slider->setValue(value);
    (m_services.settings.*row.set)(value);
    m_services.settings.writePrefsAndSync();
}

} // namespace dorvane
