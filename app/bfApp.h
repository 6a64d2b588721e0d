// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "journal/Journal.h"
#include "platform/linux/session/UnixSignals.h"
#include "platform/RunLoop.h"

#include <QApplication>

#include <functional>
#include <memory>
#include <optional>

namespace dorvane {

class BreakCycle;
class Bundle;
class MoveToApplications;
struct LaunchRequest;
struct Release;

// The application: what happens, in which order, when it starts and when it quits. Main thread
// only; one object, which main() makes.
class bfApp final : public QApplication {
    Q_OBJECT

public:
    bfApp(int& argc, char** argv);
    ~bfApp() override;

    [[nodiscard]] static bfApp& sharedApplication();

    // The launch sequence; calls back at its end. Nothing in it stops the launch; what fails is
    // logged. A moment after it the user may be asked whether the program may move, which it does
    // by quitting in order.
    enum class Start { ByUser, ByLogin }; // at a login nobody is asked anything
    void finishLaunching(Start start, const std::function<void()>& launched);

    // The quit sequence; ends the main loop with status 0. A second call does nothing more.
    void terminate();
    // What of it must be done however the program ends, once: hands over. Waits for the disk.
    void finish();
    // Called first of all when the program ends.
    void setEnding(std::function<void()> ending) { m_ending = std::move(ending); }

    // What a further launch of the program asks for, which is an action of the desktop file or an
    // address: a timer, an editor, or else the menu.
    void open(const LaunchRequest& request);

    // Writes the running alarms down.
    void handOver(Journal::Ends ends);
    void storeActiveAlarms();
    void restoreActiveAlarms();

    // The break reminder's cycle.
    [[nodiscard]] BreakCycle& breakCycle();

    // Where the manual is, an address or a file of the bundle; empty when the bundle does not tell.
    [[nodiscard]] static QUrl manualUrl();
    // Opens the manual.
    void showGoogleHelp();

    // Tells of a newer version, above other windows but without taking the keyboard.
    static void showUpdate(const Release& release);

    // Writes what runs on what to the log; returns the program's name.
    QString ouputRunningInfo(const Bundle& bundle);

    // Makes this program the one that opens addresses of its own schemes, where it is not yet.
    void checkEditorAssignments(const Bundle& bundle);

private:
    void launch();
    void watchForTheEnd();
    static void showUnsaved(const QString& problem);
    static void showWhereItLies(const QUrl& url);
    void loadTranslations(const Bundle& bundle);
    void switchBreaksOff();

    std::optional<UnixSignals> m_signals;
    std::unique_ptr<MoveToApplications> m_mover;
    std::unique_ptr<BreakCycle> m_breakCycle;
    std::function<void()> m_ending;
    RunLoopTimer m_moveOffer;
    RunLoopTimer m_schemeCheck;
    RunLoopTimer m_updateCheck;
    bool m_isLaunched = false; // before, the alarms are those on the disk
    bool m_hasEnded = false;
};

} // namespace dorvane
