// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "checks/Check.h"
#include "core/Alarm.h"
#include "platform/Lifeline.h"
#include "platform/RunLoop.h"

#include <functional>
#include <map>
#include <memory>
#include <vector>

namespace dorvane {

class SpeechService;

// Finds out what the checks go by, and makes them. Main thread only.
class WillItRing {
public:
    // What is asked; all of it must outlive this. What takes time is asked by the interfaces, the
    // rest by functions.
    struct Surroundings {
        RunLoop& runLoop;
        SoundPlayer& player;
        SoundOutput& output;
        SpeechService& speech;
        DesktopProbe& desktop;
        const WakeAlarm& wakeAlarm;
        std::function<std::vector<AlarmPtr>()> alarms;
        // Nothing where the program does not run.
        std::function<std::optional<StatusItem::Shown>()> icon;
        std::function<bool()> startsAtLogin;
        std::function<bool()> isToWake;
        QString testSound;
    };
    enum class TestSound { None, Played };
    using Done = std::function<void(const std::vector<Check>& checks)>;

    explicit WillItRing(Surroundings surroundings);
    ~WillItRing();
    WillItRing(const WillItRing&) = delete;
    WillItRing& operator=(const WillItRing&) = delete;

    // Answers once, within some ten seconds, never from inside this call. Who asks while it is
    // being found out for another, with the same wish for the sound, gets the same answer.
    void ask(TestSound testSound, Done done);

private:
    struct Inquiry;

    void askOutput(const std::shared_ptr<Inquiry>& inquiry, TestSound testSound);
    void askSounds(const std::shared_ptr<Inquiry>& inquiry, TestSound testSound);
    void askVoices(const std::shared_ptr<Inquiry>& inquiry, TestSound testSound);
    // A callback that takes a value into the facts, if somebody still waits for it.
    template<typename Take>
    [[nodiscard]] auto answer(const std::shared_ptr<Inquiry>& inquiry, TestSound testSound,
                              Take take);
    void answered(Inquiry& inquiry, TestSound testSound);
    void finish(TestSound testSound);

    Surroundings m_surroundings;
    std::map<TestSound, std::shared_ptr<Inquiry>> m_inquiries;
    Lifeline<WillItRing> m_lifeline{*this};
};

} // namespace dorvane
