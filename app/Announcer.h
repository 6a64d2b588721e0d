// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/Announce.h"
#include "firing/SoundRepeat.h"
#include "journal/AnnouncementPlan.h"
#include "platform/Bundle.h"
#include "platform/linux/announcements/AnnouncedFile.h"
#include "platform/linux/announcements/AnnouncementPresenter.h"
#include "platform/linux/announcements/SystemdAnnouncer.h"
#include "platform/linux/preferences/PropertyListCodec.h"
#include "platform/linux/session/QtRunLoop.h"
#include "platform/linux/sound/ModuleSoundPlayer.h"
#include "platform/UserFolders.h"

#include <QDBusConnection>
#include <QObject>

#include <memory>
#include <optional>
#include <vector>

namespace dorvane {

// What the announcer does, step by step. Needs a core application object, whose loop it ends; main
// thread only.
class Announcer {
public:
    Announcer();

    // Ends the loop with the exit status.
    void begin(AnnounceAt moment);

private:
    [[nodiscard]] bool startsAtLogin();
    [[nodiscard]] JournalContents journal() const;
    void leaveItToTheProgram();
    void look();
    void show(const std::vector<UserNotification>& notifications);
    void shown(AnnouncementPresenter::Outcome outcome);
    void remember();
    void playPings();
    void end();

    QtRunLoop m_loop;
    PropertyListCodec m_propertyLists;
    Bundle m_bundle;
    UserFolders m_folders;
    QDBusConnection m_bus;
    SystemdAnnouncer m_scheduler;
    AnnouncedFile m_announced;
    ModuleSoundPlayer m_player;
    SoundRepeat m_repeat;
    AnnounceAt m_moment = AnnounceAt::DueTime;
    AnnouncementPlan m_plan;
    std::optional<std::vector<ToldAlarm>> m_told;
    std::vector<std::unique_ptr<AnnouncementPresenter>> m_presenters;
    std::size_t m_shown = 0; // of the presenters
    bool m_isToSound = false;
    bool m_isHeard = false; // three pings have been started
    bool m_isRefused = false;
    bool m_isEnding = false;
    RunLoopTimer m_alone;  // nobody shows it yet
    RunLoopTimer m_giveUp; // and nobody will
    RunLoopTimer m_rest;   // while it sounds
    QObject m_context;
};

} // namespace dorvane
