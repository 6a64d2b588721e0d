// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/RunLoop.h"
#include "platform/Sound.h"

#include <functional>
#include <memory>

class QToolButton;
class QWidget;

namespace Ui {
class RespitoAudioPlayer;
}

namespace dorvane {

class Bundle;

// The small window that plays the bundle's Respito.mp3: play, pause, stop, and a slider with the
// time heard and the time left. Nothing of it runs while it is paused, idle or closed; a track that
// cannot be played leaves it idle. Main thread only.
class RespitoAudioPlayerController {
public:
    // All of it must outlive the window.
    RespitoAudioPlayerController(RunLoop& runLoop, SoundPlayer& player, const Bundle& bundle);
    ~RespitoAudioPlayerController();
    RespitoAudioPlayerController(const RespitoAudioPlayerController&) = delete;
    RespitoAudioPlayerController& operator=(const RespitoAudioPlayerController&) = delete;

    [[nodiscard]] static RespitoAudioPlayerController& sharedContorller();

    // Shows the window, or brings it to the front; it does not play by itself.
    void showWindow();

    // Called each time the window closes, after it has stopped what played.
    void setWindowWillClose(std::function<void()> callback) { m_willClose = std::move(callback); }

    // Whether the window is showing and has been told to play.
    [[nodiscard]] bool isWindowOpen() const { return m_isWindowOpen; }
    void setIsWindowOpen(bool open) { m_isWindowOpen = open; }

    // The name comes from longer ago: there is no picture.
    void playVideo();
    void stopVideoPlaying();

    // The actions of the controls.
    void actPlaySound();
    void actResumeSound(); // pauses; it is the play button that resumes
    void actStopSound();
    void actSliderValueChanged();

private:
    class Window;

    void connectControls();
    void setUpButton(QToolButton& button, const char* image,
                     void (RespitoAudioPlayerController::*action)());
    void startAfresh();
    void durationIsKnown();
    void updateCurrentTime();
    void showTimes(Sound::Seconds elapsed);
    void audioPlayerDidFinishPlaying();
    void becomeIdle();
    void showState();
    void togglePlaying();
    void windowWillClose();
    [[nodiscard]] bool isPlaying() const;

    RunLoop& m_runLoop;
    SoundPlayer& m_player;
    const Bundle& m_bundle;
    const std::unique_ptr<Ui::RespitoAudioPlayer> m_form;
    const std::unique_ptr<QWidget> m_window;
    std::unique_ptr<Sound> m_audioPlayer;
    Sound::Seconds m_duration{0}; // of the track, once it was loaded
    RunLoopTimer m_playerTimer;   // set while playing
    bool m_isPaused = false;
    bool m_isWindowOpen = false;
    std::function<void()> m_willClose;
};

} // namespace dorvane
