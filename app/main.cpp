// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/Announce.h"
#include "app/bfApp.h"
#include "app/CheckCommand.h"
#include "app/CommandLine.h"
#include "app/Commands.h"
#include "app/Desktop.h"
#include "app/OwnAddress.h"
#include "app/SharedInstances.h"
#include "app/StatePaths.h"
#include "control/AlarmControl.h"
#include "platform/linux/bus/ServedBus.h"
#include "platform/linux/checks/CheckObject.h"
#include "platform/linux/control/ControlObject.h"
#include "platform/linux/folders/MainBundle.h"
#include "platform/linux/folders/XdgFolders.h"
#include "platform/linux/preferences/PropertyListCodec.h"
#include "platform/linux/session/DisplayLoss.h"
#include "platform/linux/session/LaunchRequest.h"
#include "platform/linux/session/SingleInstance.h"
#include "platform/linux/state/CrashReport.h"
#include "platform/linux/tray/PlatformChoice.h"

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <optional>

namespace {

using namespace dorvane;

QStringList commandLine(int argc, char** argv) {
    QStringList list;
    for (int i = 1; i < argc; ++i)
        list << QString::fromLocal8Bit(argv[i]);
    return list;
}

// What the other instance's answer means for this one.
int statusOf(SingleInstance::Standing standing) {
    if (standing == SingleInstance::Standing::Answered)
        return EXIT_SUCCESS;
    std::fputs("dorvane: Dorvane runs already but does not answer\n", stderr);
    return EXIT_FAILURE;
}

} // namespace

int main(int argc, char** argv) {
    const QStringList arguments = commandLine(argc, argv);
    if (const auto status = runCommand(commands(), arguments)) {
        // The bus has a thread of its own, which must not meet what is taken apart.
        std::fflush(nullptr);
        std::_Exit(*status);
    }
    const QStringList schemes =
        arguments.isEmpty() ? QStringList() : ownSchemes(mainBundle(PropertyListCodec()));
    if (const auto status = answerCommandLine(arguments, schemes))
        return *status;

    if (const auto moment = announcingIn(arguments))
        return announce(argc, argv, *moment);

    std::signal(SIGPIPE, SIG_IGN); // whoever read the log may go; we do not go with him

    ServedBus sessionBus;
    SingleInstance instance(sessionBus, SingleInstance::lockFolder(xdgFolders().caches));
    const bool isLogin = arguments.contains(loginOption);
    const LaunchRequest request{.action = isLogin ? LaunchRequest::login : QString(),
                                .uris = isLogin ? QStringList() : arguments};
    const auto standing = instance.claim(request);
    if (standing != SingleInstance::Standing::First)
        return statusOf(standing);

    reportCrashes(stateFolder(xdgFolders()), DORVANE_VERSION);
    DisplayLoss displayLoss;
    std::optional<PlatformChoice> platform(std::in_place);
    bfApp application(argc, argv);
    platform.reset();
    std::optional<ControlObject> control;
    std::unique_ptr<CheckObject> checks;
    application.setEnding([&] { instance.leave(); });
    application.finishLaunching(isLogin ? bfApp::Start::ByLogin : bfApp::Start::ByUser, [&] {
        control.emplace(sessionBus, sharedDesktop().runLoop, sharedAlarmControl());
        checks = offerChecks(sessionBus);
        instance.setRequested([&](const LaunchRequest& further) { application.open(further); });
        instance.stayOnBus(sharedDesktop().runLoop, [] { sharedDesktop().sessionBusIsBack(); });
        if (!request.uris.isEmpty())
            application.open(request);
    });
    displayLoss.setLost([&] { application.finish(); });
    const int status = bfApp::exec();
    // What had to be done in order is done. The sound engine's threads, which nobody waits for,
    // must not meet an application that is being taken apart.
    std::fflush(nullptr);
    std::_Exit(status);
}
