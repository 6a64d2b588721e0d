// SPDX-License-Identifier: GPL-3.0-or-later
#include "sounds/ReminderController.h"

#include "platform/Bundle.h"
#include "platform/Log.h"
#include "platform/Sound.h"
#include "platform/Workspace.h"
#include "sounds/ReminderComboBox.h"
#include "sounds/ReminderControls.h"
#include "sounds/ReminderFileName.h"
#include "sounds/ReminderStrings.h"
#include "sounds/RoundButton.h"
#include "sounds/SoundName.h"
#include "ui_ReminderController.h"
#include "widgets/BringToFront.h"

#include <QCloseEvent>
#include <QFileInfo>
#include <QMessageBox>
#include <QShortcut>
#include <QWindow>

#include <utility>

namespace dorvane {

namespace {

QString inWords(QStringList list) {
    const QString last = list.takeLast();
    return list.isEmpty() ? last : list.join(QStringLiteral(", ")) + QStringLiteral(" and ") + last;
}

class ReminderWindow final : public QWidget {
public:
    ReminderWindow(std::function<void()> didActivate, std::function<void()> willClose)
        : m_didActivate(std::move(didActivate)), m_willClose(std::move(willClose)) {}

protected:
    bool event(QEvent* event) override {
        if (event->type() == QEvent::WindowActivate)
            m_didActivate();
        return QWidget::event(event);
    }
    void closeEvent(QCloseEvent*) override { m_willClose(); }

    // Of the buttons: outside of dialogs Space alone would press them.
    bool eventFilter(QObject* watched, QEvent* event) override {
        if (event->type() != QEvent::KeyPress)
            return false;
        const int key = static_cast<QKeyEvent*>(event)->key();
        if (key != Qt::Key_Return && key != Qt::Key_Enter)
            return false;
        qobject_cast<QAbstractButton*>(watched)->click();
        return true;
    }

private:
    std::function<void()> m_didActivate;
    std::function<void()> m_willClose;
};

} // namespace

std::shared_ptr<ReminderController> ReminderController::create(Surroundings surroundings) {
    return std::shared_ptr<ReminderController>(
        new ReminderController(std::move(surroundings), loadReminderForm<Ui::ReminderController>));
}

ReminderController::ReminderController(Surroundings surroundings,
                                       ReminderControls (*loadForm)(QWidget& window))
    : m_surroundings(std::move(surroundings))
    , m_window(std::make_unique<ReminderWindow>([this] { forgetVanished(); },
                                                [this] { windowWillClose(); }))
    , m_form(std::make_unique<ReminderControls>(loadForm(*m_window))) {
    awakeFromNib();
}

ReminderController::~ReminderController() = default;

void ReminderController::awakeFromNib() {
    const QIcon soundImage(m_surroundings.bundle.resourcePath(QStringLiteral("images/sound.svg")));
    m_reminderStrings = std::make_unique<ReminderStrings>(ReminderStrings::Surroundings{
        m_surroundings.runLoop, m_surroundings.notificationCenter, m_surroundings.user,
        m_surroundings.isSound, soundImage, m_surroundings.usersOf});
    m_reminderStrings->attachToComboBox(m_form->comboBox);
    m_reminderChanged = m_surroundings.notificationCenter.addObserver(
        reminderChangedNotification, [this](auto) { updatePlayButton(); }, m_reminderStrings.get());
    for (QToolButton* round : {m_form->recordButton, m_form->playButton})
        showFocusRound(*round);
    for (QAbstractButton* button : m_window->findChildren<QAbstractButton*>())
        button->installEventFilter(m_window.get());
    m_recording = std::make_unique<ReminderRecording>(
        m_surroundings.runLoop, m_surroundings.recorder, m_surroundings.bundle, *m_form,
        ReminderRecording::Callbacks{
            [this] { updatePlayButton(); },
            [this](const ReminderRecording::Take& take) { recordingAdded(take); }});
    connectControls();
    m_recording->exitRecording();
}

void ReminderController::connectControls() {
    QWidget* const window = m_window.get();
    const ReminderControls& form = *m_form;
    QObject::connect(form.reminderTitle, &QLineEdit::textChanged, window,
                     [this] { m_recording->updateRecordButton(); });
    QObject::connect(form.reminderTitle, &QLineEdit::returnPressed, form.recordButton,
                     &QAbstractButton::click);
    QObject::connect(form.recordButton, &QAbstractButton::toggled, window,
                     [this](bool on) { startRecording(on); });
    const auto connectClick = [window, this](const QAbstractButton* button,
                                             void (ReminderController::*action)()) {
        QObject::connect(button, &QAbstractButton::clicked, window,
                         [this, action] { (this->*action)(); });
    };
    connectClick(form.playButton, &ReminderController::playSound);
    connectClick(form.deleteButton, &ReminderController::deleteSound);
    connectClick(form.folderButton, &ReminderController::soundFolderPushed);
    connectClick(form.okButton, &ReminderController::acceptReminder);
    if (form.stopButton) {
        connectClick(form.stopButton, &ReminderController::stopRecording);
        connectClick(form.cancelButton, &ReminderController::cancelRecording);
    }
    const auto escape = new QShortcut(Qt::Key_Escape, window);
    QObject::connect(escape, &QShortcut::activated, window, [this] {
        if (m_recording->isRunning())
            m_recording->cancel();
        else
            m_window->close();
    });
}

void ReminderController::runWithAlarm(const AlarmPtr& alarm) {
    if (!m_window->isVisible()) {
        m_reminderStrings->setCurrentSoundPath(QString());
        updatePlayButton();
    }
    if (alarm && !alarm->title().isEmpty())
        m_reminderStrings->setCurrentStringValue(alarm->title());
    m_self = shared_from_this();
    bringToFront(*m_window);
}

// A parent would own the window; a transient one only keeps it above, if it is a dialog.
void ReminderController::stayAbove(const QWidget& owner) {
    m_window->setWindowFlag(Qt::Dialog);
    m_window->winId();
    m_window->windowHandle()->setTransientParent(owner.window()->windowHandle());
}

void ReminderController::close() {
    m_window->close();
}

QString ReminderController::reminderString() const {
    return m_reminderStrings->currentStringValue();
}

QString ReminderController::soundPath() const {
    return m_reminderStrings->currentSoundPath();
}

void ReminderController::startRecording(bool on) {
    if (!on) {
        stopRecording();
        return;
    }
    stopPlaying();
    const QString title = m_form->reminderTitle->text();
    m_take.path = ReminderStrings::soundDirectory(m_surroundings.user) + QLatin1Char('/') +
                  reminderFileName(title) + QStringLiteral(".aiff");
    m_take.toReclaim = m_reminderStrings->pathToReclaim(m_take.path);
    if (const QString loss = lossOf(m_take); !loss.isEmpty()) {
        m_recording->exitRecording(); // until that is answered
        ask(QStringLiteral("Record “%1”?").arg(shortened(soundName(m_take.path))), loss,
            QStringLiteral("&Record"), &ReminderController::beginRecording);
        return;
    }
    beginRecording();
}

// What is lost by the take, in words; empty for nothing that anybody would miss.
QString ReminderController::lossOf(const ReminderRecording::Take& take) const {
    const QStringList users = m_surroundings.usersOf(take.path);
    if (QFileInfo::exists(take.path) && !users.isEmpty())
        return QStringLiteral("The recording of that name is replaced. It is played by %1.")
            .arg(inWords(users));
    if (!take.toReclaim.isEmpty())
        return QStringLiteral("Fifteen recordings are kept. The oldest that nothing plays, “%1”, "
                              "is deleted when this one is made.")
            .arg(shortened(soundName(take.toReclaim)));
    return {};
}

// A sheet of the window's; nothing happens but by its button.
void ReminderController::ask(const QString& question, const QString& what, const QString& verb,
                             void (ReminderController::*then)()) {
    // In one text: a second one is as narrow as a short question is.
    const auto sheet = new QMessageBox(QMessageBox::Question, QStringLiteral("Dorvane"),
                                       question + QStringLiteral("\n\n") + what,
                                       QMessageBox::NoButton, m_window.get());
    sheet->setAttribute(Qt::WA_DeleteOnClose);
    sheet->setTextFormat(Qt::PlainText);
    const auto* const yes = sheet->addButton(verb, QMessageBox::AcceptRole);
    sheet->setDefaultButton(sheet->addButton(QStringLiteral("&Cancel"), QMessageBox::RejectRole));
    QObject::connect(yes, &QAbstractButton::clicked, m_window.get(),
                     [this, then] { (this->*then)(); });
    sheet->open();
}

void ReminderController::beginRecording() {
    m_recording->begin(m_take);
}

void ReminderController::stopRecording() {
    m_recording->stop();
}

void ReminderController::cancelRecording() {
    m_recording->cancel();
}

void ReminderController::recordingAdded(const ReminderRecording::Take& take) {
    m_reminderStrings->addReminderString(soundName(take.path), take.path, take.toReclaim);
    updatePlayButton();
    // Where Return is pressed once more, it is to be heard, not recorded anew.
    m_form->playButton->setFocus();
}

void ReminderController::playSound() {
    if (m_playingSound) {
        m_playingSound->stop(); // soundDidFinishPlaying() follows
        return;
    }
    forgetVanished();
    const QString path = soundPath();
    if (path.isEmpty())
        return;
    qCInfo(logSounds).noquote() << "playingSound" << path;
    m_playingSound = m_surroundings.player.soundWithContentsOfFile(path);
    m_playingSound->setFinished([this](bool) { soundDidFinishPlaying(); });
    m_form->playFeedback->setText(QStringLiteral("Playing…"));
    showAction(*m_form->playButton, m_surroundings.bundle, "StopRedButton",
               QStringLiteral("Stop playing"));
    if (!m_playingSound->play())
        stopPlaying();
}

void ReminderController::soundDidFinishPlaying() {
    // The sound goes later: this is its own callback.
    m_surroundings.runLoop.defer([sound = std::shared_ptr(std::move(m_playingSound))] {});
    stopPlaying();
}

void ReminderController::stopPlaying() {
    m_playingSound.reset();
    m_form->playFeedback->clear();
    showAction(*m_form->playButton, m_surroundings.bundle, "PlayBlueButton",
               QStringLiteral("Play"));
}

void ReminderController::deleteSound() {
    const QStringList users = m_surroundings.usersOf(soundPath());
    if (users.isEmpty())
        return removeSound();
    ask(QStringLiteral("Delete “%1”?").arg(shortened(soundName(soundPath()))),
        QStringLiteral("It is played by %1, where Ping rings in its place then.")
            .arg(inWords(users)),
        QStringLiteral("&Delete"), &ReminderController::removeSound);
}

void ReminderController::removeSound() {
    const QString name = shortened(soundName(soundPath()));
    const QString problem = m_reminderStrings->removeCurrentSound();
    m_form->messageLabel->setText(
        problem.isEmpty() ? QString()
                          : QStringLiteral("“%1” cannot be deleted: %2.").arg(name, problem));
    updatePlayButton();
}

void ReminderController::soundFolderPushed() {
    m_surroundings.workspace.reveal(ReminderStrings::soundDirectory(m_surroundings.user));
}

void ReminderController::acceptReminder() {
    if (const QString path = soundPath(); m_accepted && !path.isEmpty())
        m_accepted(path);
    m_window->close();
}

void ReminderController::updatePlayButton() {
    stopPlaying();
    const bool canPlay = !soundPath().isEmpty() && !m_recording->isRunning();
    m_form->playButton->setEnabled(canPlay);
    m_form->deleteButton->setEnabled(canPlay);
}

// The user may have deleted files in the file manager meanwhile.
void ReminderController::forgetVanished() {
    if (const QString path = soundPath(); path.isEmpty() || QFileInfo::exists(path))
        return;
    m_reminderStrings->refreshContent();
    updatePlayButton();
}

void ReminderController::windowWillClose() {
    m_recording->cancel();
    stopPlaying();
    // The window's own event is still running.
    m_surroundings.runLoop.defer([self = std::move(m_self)] {});
}

} // namespace dorvane
