// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/AlarmSetController.h"

#include "core/NotificationNames.h"
#include "core/StoredAlarms.h"
#include "core/Weekday.h"
#include "editor/AlarmDescription.h"
#include "editor/AlarmEditorDelegate.h"
#include "editor/DialogButtons.h"
#include "editor/SoundChoice.h"
#include "editor/TimeChoice.h"
#include "editor/VoiceChoice.h"
#include "platform/Bundle.h"
#include "platform/EscapedText.h"
#include "platform/RunLoop.h"
#include "ui_AlarmSetController.h"
#include "widgets/BringToFront.h"
#include "widgets/FitToScreen.h"

#include <QKeyEvent>
#include <QMessageBox>
#include <QPainter>
#include <QScreen>
#include <QSignalBlocker>

#include <algorithm>

namespace dorvane {

namespace {

std::unique_ptr<Ui::AlarmSetController> controlsIn(QDialog* window) {
    auto controls = std::make_unique<Ui::AlarmSetController>();
    controls->setupUi(window);
    return controls;
}

// The style would brighten a disabled icon on dark ground.
QIcon fadedWhenDisabled(const QIcon& icon, QSize size) {
    constexpr double strength = 0.35;
    QIcon both;
    for (const double scale : {1.0, 2.0, 3.0}) {
        const QPixmap normal = icon.pixmap(size, scale);
        QPixmap faded(normal.size());
        faded.setDevicePixelRatio(normal.devicePixelRatio());
        faded.fill(Qt::transparent);
        QPainter painter(&faded);
        painter.setOpacity(strength);
        painter.drawPixmap(0, 0, normal);
        painter.end();
        both.addPixmap(normal, QIcon::Normal);
        both.addPixmap(faded, QIcon::Disabled);
    }
    return both;
}

} // namespace

AlarmSetController::AlarmSetController(AlarmEditorServices services)
    : QDialog(nullptr, Qt::Window)
    , m_services(std::move(services))
    , m_controls(controlsIn(this))
    , m_formControls(*m_controls)
    , m_sound(new SoundChoice(m_services, *m_controls, this))
    , m_voice(new VoiceChoice(m_services.speech, *m_controls, this))
    , m_times(new TimeChoice(m_services.runLoop, *m_controls, this)) {
    setUpControls();
    wireWhen();
    wireAction();
    wireLibrary();
}

AlarmSetController::~AlarmSetController() = default;

void AlarmSetController::setUpControls() {
    const auto icon = [this](const QString& file) {
        return fadedWhenDisabled(
            QIcon(m_services.bundle.resourcePath(QStringLiteral("images/") + file)),
            m_controls->calendarButton->iconSize());
    };
    m_controls->calendarButton->setIcon(icon(QStringLiteral("Calendar.svg")));
    m_controls->alarmButton->setIcon(icon(QStringLiteral("Clock.svg")));
    m_setButton = addAcceptAndCancel(*m_controls->buttonBox, QStringLiteral("&Set"));
    for (QAbstractButton* button : findChildren<QAbstractButton*>())
        if (button->isCheckable())
            button->installEventFilter(this);
}

bool AlarmSetController::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::KeyPress) {
        const int key = static_cast<QKeyEvent*>(event)->key();
        if (key == Qt::Key_Return || key == Qt::Key_Enter) {
            m_setButton->click();
            return true;
        }
    }
    return QDialog::eventFilter(watched, event);
}

void AlarmSetController::wireWhen() {
    const auto describe = [this] { manageDescriptionLabel(); };
    connect(m_controls->alarmTimeRadio, &QButtonGroup::idClicked, this,
            [this] { changed(&FormEnabling::alarmTimeRadioChanged); });
    connect(m_controls->everyDayCheck, &QCheckBox::clicked, this,
            [this] { ticksChanged(&FormEnabling::everyDayCheckChanged); });
    for (QCheckBox* box : m_formControls.dayBoxes())
        connect(box, &QCheckBox::clicked, this,
                [this] { ticksChanged(&FormEnabling::actDaysCheckBoxSelected); });
    connect(m_controls->foreverCheck, &QCheckBox::clicked, this, describe);
    connect(m_controls->repeatCheck, &QCheckBox::clicked, this, describe);
    connect(m_controls->inTimeField, &QLineEdit::textEdited, this, describe);
    connect(m_controls->inTimeTypePopUp, &QComboBox::activated, this, describe);
    connect(m_times, &TimeChoice::changed, this, describe);
}

void AlarmSetController::wireAction() {
    connect(m_controls->playSoundCheck, &QCheckBox::clicked, this,
            [this] { changed(&FormEnabling::playSoundCheckChanged); });
    for (QCheckBox* box :
         {m_controls->shouldFadeInCheck, m_controls->untilAnsweredCheck, m_controls->softlyCheck})
        connect(box, &QCheckBox::clicked, this, [this] { manageDescriptionLabel(); });
    connect(m_controls->speakNameCheck, &QCheckBox::clicked, this,
            [this] { changed(&FormEnabling::speakNameCheckChanged); });
    connect(m_sound, &SoundChoice::soundPathChanged, this,
            [this] { changed(&FormEnabling::soundPathChanged); });
    connect(m_voice, &VoiceChoice::voiceNameChanged, this, [this] { manageDescriptionLabel(); });
    // One is tried at a time: a long title would speak on for a minute.
    connect(m_sound, &SoundChoice::previewBegan, m_voice, &VoiceChoice::stopSample);
    connect(m_voice, &VoiceChoice::voiceNameChanged, m_sound, &SoundChoice::stopPreview);
    connect(m_controls->speakNameCheck, &QCheckBox::clicked, m_voice, &VoiceChoice::stopSample);

    for (PullDownPopUp* popUp : {m_controls->selectSoundButton, m_controls->voiceNamePopUp})
        connect(popUp, &PullDownPopUp::menuWillOpen, m_sound, &SoundChoice::rebuildMenu);
}

void AlarmSetController::wireLibrary() {
    connect(m_controls->titleBox, &TitleBox::titlePicked, this,
            &AlarmSetController::comboBoxSelectionDidChange);
    // A typed title is no stored entry, even if it reads the same.
    connect(m_controls->titleBox, &TitleBox::titleTyped, this, [this] {
        m_controls->removeAlarmButton->setEnabled(false);
        manageDescriptionLabel();
    });
    connect(m_controls->removeAlarmButton, &QPushButton::clicked, this,
            [this] { removeAlarmButtonPushed(); });
    connect(m_controls->buttonBox, &QDialogButtonBox::accepted, this,
            [this] { setButtonPushed(); });
    connect(m_controls->buttonBox, &QDialogButtonBox::rejected, this, [this] { reject(); });
    m_storedAlarmsObservation = m_services.notificationCenter.addObserver(
        storedAlarmsDidChangeNotification, [this](const void*) { storedAlarmsDidChange(); });
    m_alarmsObservation = m_services.notificationCenter.addObserver(
        alarmsDidChangeNotification, [this](const void*) { lookForEditingOne(); });
}

void AlarmSetController::ticksChanged(void (FormEnabling::*effect)(const AlarmForm&)) {
    m_formControls.readInto(m_form);
    m_times->ticksChanged(m_form, m_services.runLoop.now());
    changed(effect);
}

void AlarmSetController::changed(void (FormEnabling::*effect)(const AlarmForm&)) {
    manageDescriptionLabel();
    (m_enabling.*effect)(m_form);
    m_formControls.apply(m_enabling);
}

void AlarmSetController::manageDescriptionLabel() {
    m_formControls.readInto(m_form);
    m_form.soundPath = m_sound->soundPath();
    m_form.voiceName = m_voice->voiceName();
    const bool isReadable = m_times->isReadable(m_form.row);
    const QString sentence =
        isReadable ? dorvane::manageDescriptionLabel(m_form, m_services.runLoop.now().date())
                   : QStringLiteral("That is not a date or a time yet.");
    const QString toStart =
        m_starting && !m_starting->storedTime().isValid()
            ? QStringLiteral("Its time could not be read. Set starts it for this one:\n")
            : QStringLiteral("Its date has passed. Set starts it for this one:\n");
    const QString remark =
        m_isGone ? QStringLiteral("This alarm is no longer there. Set makes it anew.\n")
        : m_starting && m_form.row == Alarm::Dated ? toStart
                                                   : QString();
    m_controls->descriptionLabel->setText(remark + sentence);
    m_times->showRemarks();
    m_setButton->setEnabled(isReadable);
}

// -- Opening and filling ------------------------------------------------------------------------

void AlarmSetController::showToStart(const AlarmPtr& stored) {
    showWithAlarm(nullptr);
    m_starting = stored;
    setAlarm(stored.get());
    selectTitle(stored->title());
    setWindowTitle(QStringLiteral("Start Alarm"));
}

void AlarmSetController::showWithAlarm(const AlarmPtr& alarm) {
    m_editingOne = alarm;
    m_starting.reset();
    m_isGone = false;
    m_voice->askForVoices();
    reloadTitles();
    setAlarm(nullptr);
    if (alarm)
        setAlarm(alarm.get());
    selectTitle(alarm ? alarm->title() : QString());
    m_opened = m_form;
    setWindowTitle(alarm ? QStringLiteral("Edit Alarm") : QStringLiteral("New Alarm"));
    m_controls->titleBox->setFocus();
    const bool wasVisible = isVisible();
    if (!wasVisible)
        fitToScreen();
    show();
    if (!wasVisible)
        fitToScreen(); // what the controls really need is known only now
    bringToFront(*this);
}

void AlarmSetController::fitToScreen() {
    m_controls->scroller->updateGeometry();
    dorvane::fitToScreen(*this, sizeHint());
}

void AlarmSetController::setAlarm(const Alarm* alarm) {
    m_formControls.readInto(m_form);
    const QDateTime now = m_services.runLoop.now();
    if (alarm) {
        m_form = formFilledFrom(*alarm, m_form, instantOf(now));
    } else {
        const RingDefaults ring = m_services.ringDefaults();
        m_form = newAlarmForm(now, ring.snooze);
        m_form.soundPath = ring.soundPath;
        m_form.isPlaySound = !m_form.soundPath.isEmpty();
    }
    {
        using Origin = TimeChoice::Origin;
        const QSignalBlocker blocker(m_times);
        m_times->fit(m_form,
                     !alarm         ? Origin::New
                     : m_editingOne ? Origin::Edited
                                    : Origin::Picked,
                     now);
        m_formControls.show(m_form);
        m_times->ticksChanged(m_form, now);
    }
    m_sound->setSoundPath(m_form.soundPath);
    m_voice->setVoiceName(m_form.voiceName);
    m_enabling.alarmTimeRadioChanged(m_form);
    m_enabling.everyDayCheckChanged(m_form);
    m_enabling.playSoundCheckChanged(m_form);
    m_enabling.speakNameCheckChanged(m_form);
    m_formControls.apply(m_enabling);
    manageDescriptionLabel();
}

// -- The library --------------------------------------------------------------------------------

void AlarmSetController::reloadTitles() {
    m_controls->titleBox->setTitles(
        alarmTitles(m_services.storedAlarms.alarms().value_or(std::vector<AlarmPtr>())));
}

void AlarmSetController::selectTitle(const QString& title) {
    TitleBox& box = *m_controls->titleBox;
    box.selectNone();
    m_controls->removeAlarmButton->setEnabled(!title.isEmpty() && box.select(title));
}

// The menu or another editor may have changed it: what is chosen stays so while it is stored.
void AlarmSetController::storedAlarmsDidChange() {
    const TitleBox& box = *m_controls->titleBox;
    const QString chosen = box.selectedIndex() < 0 ? QString() : box.title();
    reloadTitles();
    selectTitle(chosen);
    lookForEditingOne();
}

// What is stored may have changed since the list was loaded: the title is what counts.
void AlarmSetController::comboBoxSelectionDidChange(int index) {
    const QString title = m_controls->titleBox->itemText(index);
    const auto stored = m_services.storedAlarms.alarms().value_or(std::vector<AlarmPtr>());
    const auto found = std::find_if(stored.begin(), stored.end(),
                                    [&](const AlarmPtr& alarm) { return alarm->title() == title; });
    if (found == stored.end())
        return reloadTitles();
    setAlarm(found->get());
    selectTitle(title);
}

void AlarmSetController::removeAlarmButtonPushed() {
    const int index = m_controls->titleBox->selectedIndex();
    if (index < 0)
        return;
    m_services.storedAlarms.removeAlarm(m_controls->titleBox->itemText(index));
    reloadTitles();
    if (const int left = m_controls->titleBox->count(); left > 0)
        return comboBoxSelectionDidChange(std::min(index, left - 1));
    setAlarm(nullptr);
    m_controls->removeAlarmButton->setEnabled(false);
}

// -- Setting the alarm --------------------------------------------------------------------------

void AlarmSetController::setButtonPushed() {
    manageDescriptionLabel();
    if (m_times->takeUnseenJump(m_form.row))
        return; // the remark beside the field says what it is about
    const FormFaults faults = faultsOf(m_form);
    if (faults.field == FormFaults::Field::Title)
        m_controls->titleBox->setFocus();
    if (faults.field == FormFaults::Field::Interval)
        m_controls->inTimeField->setFocus();
    if (!faults.message.isEmpty())
        return showFaults(faults.message);
    StoredAlarms& library = m_services.storedAlarms;
    if (!(m_editingOne ? library.hasRoomFor(*m_editingOne, m_form.title)
                       : library.hasRoomFor(m_form.title)))
        return showFaults(noRoomText());
    const QDateTime now = m_services.runLoop.now();
    if (mustBeAhead(now) && m_times->renewBounds(m_form.row, now))
        return manageDescriptionLabel(); // as above
    const AlarmPtr alarm = saveCurrentAlarm();
    if (m_delegate)
        m_delegate->acceptedAlarm(*this, alarm);
    accept();
}

void AlarmSetController::showFaults(const QString& message) {
    const auto alert = new QMessageBox(QMessageBox::Warning, QStringLiteral("Dorvane"),
                                       QStringLiteral("Dorvane"), QMessageBox::NoButton, this);
    alert->setAttribute(Qt::WA_DeleteOnClose);
    alert->setTextFormat(Qt::PlainText);
    alert->setInformativeText(escapedText(message));
    alert->addButton(QStringLiteral("Continue"), QMessageBox::AcceptRole);
    alert->open();
}

std::optional<EditedAlarm> AlarmSetController::edited() const {
    if (!m_editingOne)
        return std::nullopt;
    return EditedAlarm{*m_editingOne, m_isGone || !asksForTheSameTime(m_form, m_opened)};
}

// A stored alarm may lie in the past, and so may one that goes on as it is.
bool AlarmSetController::mustBeAhead(const QDateTime& now) const {
    const std::optional<EditedAlarm> alarm = edited();
    return !alarm || (alarm->alarm.isActive() && !keepsItsTime(*alarm, instantOf(now)));
}

AlarmPtr AlarmSetController::saveCurrentAlarm() {
    const QDateTime now = m_services.runLoop.now();
    AlarmPtr alarm = alarmBuiltFrom(m_form, now, weekdayName(now.date()), edited());
    if (m_editingOne)
        m_services.storedAlarms.putEdited(*alarm, *m_editingOne, instantOf(now));
    else
        m_services.storedAlarms.put(*alarm, instantOf(now));
    return alarm;
}

// It may be deleted, or ring its last, while it is being edited.
void AlarmSetController::lookForEditingOne() {
    if (!m_editingOne || m_isGone || !isVisible())
        return;
    const bool isThere =
        m_editingOne->isActive()
            ? m_services.runs(m_editingOne)
            : m_controls->titleBox->findText(m_editingOne->title(),
                                             Qt::MatchExactly | Qt::MatchCaseSensitive) >= 0;
    if (isThere)
        return;
    m_isGone = true;
    manageDescriptionLabel();
}

} // namespace dorvane
