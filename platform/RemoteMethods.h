// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/RemoteControl.h"

#include <QByteArray>

#include <array>
#include <tuple>
#include <type_traits>
#include <variant>
#include <vector>

namespace dorvane {

// A call of the session bus: which operation of the program it is, and all that both ends, the
// introspection and docs/bus.md need to know of it.
struct RemoteMethod {
    // What it takes and returns on the bus follows from its type. Another shape is one more of
    // these.
    using Asker = RemoteControl::Asker;
    template<typename Result, typename... Arguments>
    using Shape = Result (RemoteControl::*)(Arguments...);
    using Operation = std::variant<Shape<void, const Asker&, quint32, const QString&>,
                                   Shape<void, const Asker&, const QVariantMap&>,
                                   Shape<void, const Asker&, const QString&, const QVariantMap&>,
                                   Shape<AlarmAnswer, const QString&>, Shape<AlarmListing>,
                                   Shape<AlarmListing, quint32>, Shape<Outcome, const QString&>,
                                   Shape<Outcome, const QString&, quint32>, Shape<Outcome>,
                                   Shape<Outcome, qint64>, Shape<AlarmAnswer>>;

    const char* name;
    const char* takes; // the names of its arguments
    Operation operation;
    const char* says;           // for who reads docs/bus.md
    bool startsProgram = false; // the terminal starts the program where it does not run
};

namespace remote {

inline constexpr RemoteMethod addTimer{"AddTimer", "minutes title", &RemoteControl::addTimer,
                                       "with an empty title, one of the menu's timers", true};
inline constexpr RemoteMethod addAlarm{"AddAlarm", "alarm", &RemoteControl::addAlarm, "see below",
                                       true};
inline constexpr RemoteMethod quick{"Quick", "", &RemoteControl::quick,
                                    "opens the field that reads a timer or an alarm", true};
inline constexpr RemoteMethod editAlarm{"EditAlarm", "id changes", &RemoteControl::editAlarm,
                                        "a running alarm: what the description leaves out stays as "
                                        "it is; its entry in the library goes "
                                        "along"};
inline constexpr RemoteMethod editStored{"EditStored", "title changes", &RemoteControl::editStored,
                                         "the same for a stored one, which answers with its title"};
inline constexpr RemoteMethod startStored{
    "StartStored", "title", &RemoteControl::startStored,
    "a weekday alarm whose moment has passed goes on to its next day", true};
inline constexpr RemoteMethod listRunning{"ListRunning", "", &RemoteControl::runningAlarms, ""};
inline constexpr RemoteMethod listStored{"ListStored", "", &RemoteControl::storedAlarms, ""};
inline constexpr RemoteMethod listNext{
    "ListNext", "most", &RemoteControl::nextAlarms,
    "running alarms, 100 at most: those that ring, then the soonest"};
inline constexpr RemoteMethod snooze{"Snooze", "id", &RemoteControl::snooze,
                                     "an alarm that rings, for its own minutes"};
inline constexpr RemoteMethod snoozeFor{"SnoozeFor", "id minutes", &RemoteControl::snoozeFor,
                                        "the same for others this once, 1 to 1,440"};
inline constexpr RemoteMethod clear{
    "Clear", "id", &RemoteControl::clear,
    "answers an alarm that rings, as *Clear* in its window; ends any other"};
inline constexpr RemoteMethod remove{"Delete", "id", &RemoteControl::remove,
                                     "ends a running alarm for good, even one that repeats"};
inline constexpr RemoteMethod removeStored{"DeleteStored", "title", &RemoteControl::removeStored,
                                           ""};
inline constexpr RemoteMethod skip{
    "Skip", "id", &RemoteControl::skip,
    "a repeating alarm goes on as if it had rung and been cleared, in silence"};
inline constexpr RemoteMethod pause{
    "Pause", "until", &RemoteControl::pause,
    "holds the alarms of every day, of every week and those that repeat; until so many seconds "
    "since the epoch, or with 0 until `Resume`",
    true};
inline constexpr RemoteMethod resume{"Resume", "", &RemoteControl::resume, "", true};
inline constexpr RemoteMethod undo{"Undo", "", &RemoteControl::undo,
                                   "brings back what was deleted last"};
inline constexpr RemoteMethod showAlarms{"ShowAlarms", "", &RemoteControl::showAlarms,
                                         "opens the window of all alarms", true};
inline constexpr RemoteMethod startBreaks{"StartBreaks", "", &RemoteControl::startBreaks, "", true};
inline constexpr RemoteMethod stopBreaks{"StopBreaks", "", &RemoteControl::stopBreaks, ""};
inline constexpr RemoteMethod skipBreak{
    "SkipBreak", "", &RemoteControl::skipBreak,
    "the working time begins anew; a break that has begun is done"};

inline constexpr std::array all{
    addTimer, addAlarm, quick,      editAlarm,   editStored, startStored,  listRunning, listStored,
    listNext, snooze,   snoozeFor,  clear,       remove,     removeStored, skip,        pause,
    resume,   undo,     showAlarms, startBreaks, stopBreaks, skipBreak};

} // namespace remote

// An argument or a result of a call: its type in the letters of the bus, and its name.
struct RemoteArgument {
    QByteArray type;
    QByteArray name;
};
[[nodiscard]] std::vector<RemoteArgument> argumentsOf(const RemoteMethod& method);
[[nodiscard]] std::vector<RemoteArgument> resultsOf(const RemoteMethod& method);

} // namespace dorvane
