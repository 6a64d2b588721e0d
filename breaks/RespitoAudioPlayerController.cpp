// SPDX-License-Identifier: GPL-3.0-or-later
#include "breaks/RespitoAudioPlayerController.h"

#include "platform/Bundle.h"
#include "sounds/RoundButton.h"
#include "ui_RespitoAudioPlayer.h"
#include "widgets/BringToFront.h"

#include <QCloseEvent>
#include <QKeyEvent>
#include <QProxyStyle>
#include <QSignalBlocker>

namespace dorvane {

using namespace std::chrono_literals;

namespace {

// The texts change once a second and the slider moves less than a pixel in this time; the light
// breathes slowly enough.
constexpr RunLoop::Milliseconds refreshInterval = 100ms;

int toMilliseconds(Sound::Seconds time) {
    return static_cast<int>(std::chrono::duration_cast<RunLoop::Milliseconds>(time).count());
}

QString clockText(Sound::Seconds time) {
    const auto seconds = static_cast<int>(time.count());
    return QString::asprintf("%02d:%02d", seconds / 60, seconds % 60);
}

QString remainingText(Sound::Seconds time) {
    return QLatin1Char('-') + clockText(time);
}

// A click on the slider goes to that moment of the track, not a page towards it.
class SeekingStyle final : public QProxyStyle {
public:
    [[nodiscard]] int styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                                QStyleHintReturn* returnData) const override {
        return hint == SH_Slider_AbsoluteSetButtons
                   ? static_cast<int>(Qt::LeftButton)
                   : QProxyStyle::styleHint(hint, option, widget, returnData);
    }
};

} // namespace

class RespitoAudioPlayerController::Window final : public QWidget {
public:
    explicit Window(RespitoAudioPlayerController& controller) : m_controller(controller) {}

protected:
    void closeEvent(QCloseEvent*) override { m_controller.windowWillClose(); }

    // What the focused control has no use for: on a button, Space presses that one.
    void keyPressEvent(QKeyEvent* event) override {
        if (event->key() == Qt::Key_Space)
            m_controller.togglePlaying();
        else if (event->key() == Qt::Key_Escape)
            close();
        else
            QWidget::keyPressEvent(event);
    }

private:
    RespitoAudioPlayerController& m_controller;
};

RespitoAudioPlayerController::RespitoAudioPlayerController(RunLoop& runLoop, SoundPlayer& player,
                                                           const Bundle& bundle)
    : m_runLoop(runLoop)
    , m_player(player)
    , m_bundle(bundle)
    , m_form(std::make_unique<Ui::RespitoAudioPlayer>())
    , m_window(std::make_unique<Window>(*this)) {
    m_form->setupUi(m_window.get());
    auto place = m_form->playFeedback->sizePolicy();
    place.setRetainSizeWhenHidden(true);
    m_form->playFeedback->setSizePolicy(place);
    connectControls();
    becomeIdle();
    m_form->timeSlider->setEnabled(false);
}

RespitoAudioPlayerController::~RespitoAudioPlayerController() = default;

void RespitoAudioPlayerController::connectControls() {
    setUpButton(*m_form->playButton, "PlayBlueButton", &RespitoAudioPlayerController::actPlaySound);
    setUpButton(*m_form->resumeButton, "PauseBlueButton",
                &RespitoAudioPlayerController::actResumeSound);
    setUpButton(*m_form->stopButton, "StopRedButton", &RespitoAudioPlayerController::actStopSound);
    const auto style = new SeekingStyle;
    style->setParent(m_form->timeSlider);
    m_form->timeSlider->setStyle(style);
    QObject::connect(m_form->timeSlider, &QSlider::valueChanged, m_window.get(),
                     [this] { actSliderValueChanged(); });
    // While it is dragged, the times tell where it would go on; it goes there when let go.
    QObject::connect(m_form->timeSlider, &QSlider::sliderMoved, m_window.get(),
                     [this](int position) { showTimes(RunLoop::Milliseconds(position)); });
}

void RespitoAudioPlayerController::setUpButton(QToolButton& button, const char* image,
                                               void (RespitoAudioPlayerController::*action)()) {
    button.setIcon(
        QIcon(m_bundle.resourcePath(QStringLiteral("images/%1.svg").arg(QLatin1String(image)))));
    showFocusRound(button);
    QObject::connect(&button, &QAbstractButton::clicked, m_window.get(),
                     [this, action] { (this->*action)(); });
}

void RespitoAudioPlayerController::showWindow() {
    m_form->playButton->setFocus();
    bringToFront(*m_window);
}

void RespitoAudioPlayerController::playVideo() {
    m_isWindowOpen = true;
    actPlaySound();
}

void RespitoAudioPlayerController::actPlaySound() {
    m_isWindowOpen = true;
    if (isPlaying())
        return;
    if (m_isPaused)
        m_audioPlayer->resume();
    else
        startAfresh();
    m_isPaused = false;
    if (!isPlaying()) {
        audioPlayerDidFinishPlaying();
        return;
    }
    m_playerTimer = m_runLoop.scheduleRepeating(
        refreshInterval, [this] { updateCurrentTime(); }, RunLoopMode::Common);
    showState();
}

void RespitoAudioPlayerController::startAfresh() {
    m_audioPlayer =
        m_player.soundWithContentsOfFile(m_bundle.resourcePath(QStringLiteral("Respito.mp3")));
    m_audioPlayer->setFinished([this](bool) { audioPlayerDidFinishPlaying(); });
    m_form->timeSlider->setEnabled(true);
    m_audioPlayer->whenLoaded([this] { durationIsKnown(); });
    showTimes(Sound::Seconds(0));
    m_audioPlayer->play();
}

void RespitoAudioPlayerController::durationIsKnown() {
    m_duration = m_audioPlayer->duration();
    const QSignalBlocker silent(m_form->timeSlider);
    m_form->timeSlider->setRange(0, toMilliseconds(m_duration));
    if (isPlaying() || m_isPaused)
        updateCurrentTime();
    else
        becomeIdle();
}

void RespitoAudioPlayerController::actResumeSound() {
    if (!isPlaying())
        return;
    m_audioPlayer->pause();
    m_playerTimer.cancel();
    m_isPaused = true;
    updateCurrentTime();
    showState();
}

void RespitoAudioPlayerController::actStopSound() {
    if (!isPlaying() && !m_isPaused)
        return;
    stopVideoPlaying();
    m_form->timeSlider->setEnabled(false);
}

void RespitoAudioPlayerController::stopVideoPlaying() {
    if (!isPlaying() && !m_isPaused)
        return;
    m_audioPlayer.reset(); // also drops its report of the end
    becomeIdle();
    const QSignalBlocker silent(m_form->timeSlider);
    m_form->timeSlider->setValue(0);
}

void RespitoAudioPlayerController::actSliderValueChanged() {
    if (!isPlaying() && !m_isPaused)
        return;
    m_audioPlayer->setCurrentTime(RunLoop::Milliseconds(m_form->timeSlider->value()));
    updateCurrentTime();
}

void RespitoAudioPlayerController::updateCurrentTime() {
    const Sound::Seconds elapsed = m_audioPlayer->currentTime();
    m_form->playFeedback->setTime(elapsed);
    if (m_form->timeSlider->isSliderDown())
        return;
    showTimes(elapsed);
    const QSignalBlocker silent(m_form->timeSlider);
    m_form->timeSlider->setValue(toMilliseconds(elapsed));
}

void RespitoAudioPlayerController::showTimes(Sound::Seconds elapsed) {
    m_form->startTime->setText(clockText(elapsed));
    m_form->endTime->setText(remainingText(m_duration - elapsed));
}

void RespitoAudioPlayerController::audioPlayerDidFinishPlaying() {
    becomeIdle();
    m_form->timeSlider->setEnabled(false);
}

void RespitoAudioPlayerController::becomeIdle() {
    m_isPaused = false;
    m_playerTimer.cancel();
    m_form->startTime->setText(clockText(Sound::Seconds(0)));
    m_form->endTime->setText(clockText(m_duration));
    showState();
}

void RespitoAudioPlayerController::showState() {
    const bool playing = isPlaying();
    const bool active = playing || m_isPaused;
    const bool hadFocus = m_form->playButton->hasFocus() || m_form->resumeButton->hasFocus() ||
                          (m_form->stopButton->hasFocus() && !active);
    m_form->playButton->setEnabled(!playing);
    m_form->resumeButton->setEnabled(playing);
    m_form->stopButton->setEnabled(active);
    m_form->playFeedback->setVisible(active);
    // So that Space goes on playing and pausing, wherever Qt moves the focus of a disabled button.
    if (hadFocus)
        (playing ? m_form->resumeButton : m_form->playButton)->setFocus();
}

void RespitoAudioPlayerController::togglePlaying() {
    if (isPlaying())
        actResumeSound();
    else
        actPlaySound();
}

void RespitoAudioPlayerController::windowWillClose() {
    stopVideoPlaying();
    m_isWindowOpen = false;
    if (m_willClose)
        m_willClose();
}

bool RespitoAudioPlayerController::isPlaying() const {
    return m_audioPlayer && m_audioPlayer->isPlaying() && !m_isPaused;
}

} // namespace dorvane
