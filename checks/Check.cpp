// SPDX-License-Identifier: GPL-3.0-or-later
#include "checks/Check.h"

#include "core/Isolated.h"

#include <QFileInfo>

#include <algorithm>

namespace dorvane {

namespace {

using Obstacle = SoundOutputState::Obstacle;
using Checks = std::vector<Check>;

constexpr int faintVolume = 10; // percent

QString text(const char* english) {
    return QString::fromUtf8(english);
}

Check fine(const char* name, const QString& line) {
    return {text(name), CheckStatus::Fine, line, {}};
}

Check warning(const char* name, const QString& line, const char* advice) {
    return {text(name), CheckStatus::Warning, line, text(advice)};
}

Check failure(const char* name, const QString& line, const char* advice) {
    return {text(name), CheckStatus::Failure, line, text(advice)};
}

Check checkRunning(const RingingFacts& facts) {
    return facts.icon ? fine("running", text("Dorvane is running."))
                      : failure("running", text("Dorvane is not running: nothing will ring."),
                                "Start it; have it started at login in its preferences.");
}

Check checkModule(const std::optional<SoundOutputState>& output) {
    if (output && output->obstacle == Obstacle::NoModule)
        return failure("sound-module", text("Sounds cannot be played: ") + output->detail,
                       "Install Dorvane again.");
    return fine("sound-module", text("Sounds can be decoded and played."));
}

Check checkServer(const std::optional<SoundOutputState>& output) {
    if (!output)
        return failure("sound-server", text("The sound server does not answer."),
                       "Log out and in again, or restart PipeWire or PulseAudio.");
    if (output->obstacle == Obstacle::NoServer)
        return failure("sound-server", text("No sound server answers: ") + output->detail,
                       "Start PipeWire or PulseAudio.");
    return fine("sound-server", text("A sound server answers."));
}

Check checkOutput(const SoundOutputState& output) {
    if (output.obstacle == Obstacle::NoOutput)
        return failure("sound-output",
                       output.detail.isEmpty() ? text("There is no sound output.")
                                               : text("Nothing is plugged in: ") + output.detail,
                       "Connect loudspeakers or headphones, or choose another output.");
    if (output.obstacle == Obstacle::DummyOutput)
        return failure("sound-output", text("The only sound output is a dummy that nobody hears."),
                       "Connect loudspeakers or headphones, or look for their driver.");
    return fine("sound-output", text("Sounds go to ") + output.detail + QLatin1Char('.'));
}

Check checkMute(const SoundOutputState& output) {
    if (output.obstacle == Obstacle::Muted)
        return failure("sound-mute", text("The sound is muted."),
                       "Switch it on in the sound settings, for the output and for Dorvane.");
    return fine("sound-mute", text("The sound is not muted."));
}

Check checkVolume(const SoundOutputState& output) {
    if (output.obstacle == Obstacle::VolumeZero || output.volume == 0)
        return failure("sound-volume", text("The volume is zero."), "Turn it up.");
    const QString line = text("The volume is %1 %.").arg(output.volume);
    if (output.volume <= faintVolume)
        return warning("sound-volume", line, "Turn it up, or an alarm may not be noticed.");
    return fine("sound-volume", line);
}

// What cannot be asked any more, once something before it has failed, is left out.
Checks checkSound(const std::optional<SoundOutputState>& output) {
    Checks checks{checkModule(output)};
    if (checks.back().status == CheckStatus::Fine)
        checks.push_back(checkServer(output));
    if (checks.back().status == CheckStatus::Fine)
        checks.push_back(checkOutput(*output));
    if (checks.back().status == CheckStatus::Fine) {
        checks.push_back(checkMute(*output));
        checks.push_back(checkVolume(*output));
    }
    return checks;
}

Check checkProof(SoundProof proof) {
    constexpr auto name = "sound-proof";
    switch (proof) {
    case SoundProof::Heard:
        return fine(name, text("A test sound was played and came out."));
    case SoundProof::Silent:
        return failure(name, text("A test sound was played and did not come out."),
                       "Look at the output and the volumes in the sound settings.");
    case SoundProof::Drowned:
        return warning(name, text("A test sound was not to be found in what came out."),
                       "Try again while nothing else plays.");
    case SoundProof::NotPlayed:
        return failure(name, text("The test sound could not be played."),
                       "See what the other checks say of the sound.");
    case SoundProof::Deaf:
        return warning(name, text("The output cannot be listened to."),
                       "Play the test sound, and listen for yourself.");
    }
    return {};
}

Check checkSoundOf(const AlarmFacts& alarm) {
    const QString line = text("“%1”: the sound %2 ")
                             .arg(isolated(alarm.title), QFileInfo(alarm.soundPath).fileName());
    constexpr auto advice = "Choose another sound for it; until then Ping rings.";
    if (!alarm.isReadInTime)
        return warning("alarm-sound", line + text("is not read in time."),
                       "Copy it to a disk that is always there; Ping rings in its place.");
    if (alarm.sound == SoundFault::Gone)
        return warning("alarm-sound", line + text("is missing."), advice);
    if (alarm.sound == SoundFault::Unplayable)
        return warning("alarm-sound", line + text("cannot be played."), advice);
    return warning("alarm-sound", line + text("is silent."),
                   "Choose another sound for it, or record it anew.");
}

bool hasBadSound(const AlarmFacts& alarm) {
    return !alarm.soundPath.isEmpty() &&
           (!alarm.isReadInTime || alarm.isSilent || alarm.sound == SoundFault::Gone ||
            alarm.sound == SoundFault::Unplayable);
}

// Where it has been said before that nothing comes out, no alarm is said to be heard.
QString lineOfSound(std::size_t alarms, bool isOutputFine) {
    if (alarms == 1)
        return isOutputFine ? text("The alarm that is set can be heard.")
                            : text("The alarm that is set has all that it plays.");
    return (isOutputFine ? text("All %1 alarms that are set can be heard.")
                         : text("All %1 alarms that are set have all that they play."))
        .arg(alarms);
}

// One line for all that are well, one for each that is not.
Checks checkAlarms(const std::vector<AlarmFacts>& alarms, bool isOutputFine) {
    Checks checks;
    for (const AlarmFacts& alarm : alarms) {
        if (hasBadSound(alarm))
            checks.push_back(checkSoundOf(alarm));
        if (!alarm.voice.isEmpty() && !alarm.hasVoice)
            checks.push_back(failure("alarm-voice",
                                     text("“%1” will be silent: its voice %2 is not installed.")
                                         .arg(isolated(alarm.title), alarm.voice),
                                     "Choose another voice for it."));
        if (alarm.soundPath.isEmpty() && alarm.voice.isEmpty())
            checks.push_back(warning("alarm-silent",
                                     text("“%1” plays no sound.").arg(isolated(alarm.title)),
                                     "Choose a sound for it, if it is to be heard."));
    }
    if (alarms.empty())
        checks.push_back(fine("alarms", text("No alarm is set.")));
    else if (checks.empty())
        checks.push_back(fine("alarms", lineOfSound(alarms.size(), isOutputFine)));
    return checks;
}

Check checkIcon(StatusItem::Shown icon) {
    switch (icon) {
    case StatusItem::Shown::InPanel:
        return fine("icon", text("The clock is in the panel."));
    case StatusItem::Shown::Floating:
        return fine("icon", text("The clock floats on the desktop, since no panel takes it."));
    case StatusItem::Shown::Nowhere:
        break;
    }
    return warning("icon", text("The clock is not to be seen."),
                   "Add a status area (system tray) to the panel.");
}

Check checkLogin(bool startsAtLogin) {
    return startsAtLogin ? fine("login", text("Dorvane starts when you log in."))
                         : warning("login", text("Dorvane does not start when you log in."),
                                   "Tick “Start Dorvane when I log in” in its preferences.");
}

Checks checkDesktop(const DesktopAbilities& desktop) {
    return {
        desktop.schedulesAnnouncements
            ? fine("announcements", text("Alarms are announced while Dorvane does not run."))
            : warning("announcements",
                      text("Alarms cannot be announced while Dorvane does not run."),
                      "Leave Dorvane running: there is no systemd for this user."),
        desktop.showsAnnouncements ? fine("notifications", text("Somebody shows announcements."))
                                   : warning("notifications", text("Nobody shows announcements."),
                                             "Start a notification service."),
        desktop.tellsOfWaking
            ? fine("waking-up", text("Dorvane learns when the computer wakes up."))
            : warning("waking-up", text("Dorvane does not learn when the computer wakes up."),
                      "Start logind; after a sleep an alarm may ring late."),
        desktop.clockIsSynchronised
            ? fine("clock", text("The clock is synchronised."))
            : warning("clock", text("The clock is not synchronised and may be wrong."),
                      "Switch on network time: timedatectl set-ntp true."),
    };
}

// A machine that nothing can wake is never all right. Of a right that is missing, only who wants to
// be woken is warned.
Check checkWaking(WakeAlarm::Ability ability, bool isToWake) {
    constexpr auto name = "wake";
    if (ability == WakeAlarm::Ability::Able)
        return fine(name, isToWake ? text("A sleeping computer wakes for the next alarm.")
                                   : text("The computer could wake for an alarm, but is not to."));
    const bool isPermission = ability == WakeAlarm::Ability::NotPermitted;
    const QString line =
        isPermission ? text("A sleeping computer does not wake for an alarm: Dorvane lacks the "
                            "right to (CAP_WAKE_ALARM).")
                     : text("A sleeping computer does not wake for an alarm: it has no clock that "
                            "could.");
    if (isPermission && !isToWake)
        return fine(name, line);
    return warning(name, line,
                   isPermission
                       ? "Newer logins grant it (systemd 254); else keep the computer awake."
                       : "Keep the computer awake.");
}

} // namespace

QString nameOf(CheckStatus status) {
    switch (status) {
    case CheckStatus::Fine:
        return text("fine");
    case CheckStatus::Warning:
        return text("warning");
    case CheckStatus::Failure:
        break;
    }
    return text("failure");
}

CheckStatus worstOf(const std::vector<Check>& checks) {
    CheckStatus worst = CheckStatus::Fine;
    for (const Check& check : checks)
        worst = std::max(worst, check.status);
    return worst;
}

std::vector<Check> checksOf(const RingingFacts& facts) {
    Checks all{checkRunning(facts)};
    const auto add = [&all](const Checks& checks) {
        all.insert(all.end(), checks.begin(), checks.end());
    };
    add(checkSound(facts.output));
    if (facts.proof)
        all.push_back(checkProof(*facts.proof));
    const bool isOutputFine = worstOf(all) != CheckStatus::Failure;
    add(checkAlarms(facts.alarms, isOutputFine));
    if (facts.icon)
        all.push_back(checkIcon(*facts.icon));
    all.push_back(checkLogin(facts.startsAtLogin));
    if (facts.desktop)
        add(checkDesktop(*facts.desktop));
    all.push_back(checkWaking(facts.wakes, facts.isToWake));
    return all;
}

} // namespace dorvane
