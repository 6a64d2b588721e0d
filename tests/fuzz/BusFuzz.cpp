// SPDX-License-Identifier: GPL-3.0-or-later
#include "control/AlarmRequest.h"
#include "core/AlarmBuilding.h"
#include "platform/linux/control/AlarmMessage.h"
#include "tests/fuzz/FuzzSupport.h"

#include <array>
#include <bit>
#include <fuzzer/FuzzedDataProvider.h>
#include <sys/socket.h>

using namespace dorvane;
using dorvane::testing::require;

namespace {

const char* const names[]{"title",     "minutes",  "hours",      "repeat",        "time", "date",
                          "every-day", "weekdays", "every-week", "sound",         "fade", "voice",
                          "snooze",    "seconds",  "softly",     "until-answered"};

// A bus on which nobody listens: messages need one.
sd_bus* nobody() {
    static sd_bus* const bus = [] {
        std::array<int, 2> ends{};
        sd_bus* made = nullptr;
        require(socketpair(AF_UNIX, SOCK_STREAM, 0, ends.data()) == 0 && sd_bus_new(&made) >= 0);
        require(sd_bus_set_fd(made, ends[0], ends[0]) >= 0 && sd_bus_start(made) >= 0);
        return made;
    }();
    return bus;
}

std::string text(FuzzedDataProvider& bytes) {
    std::string text = bytes.ConsumeRandomLengthString(300);
    if (bytes.ConsumeIntegralInRange(0, 60) == 0)
        text.append(20'000, 'x');
    return text;
}

// A value of any type that a signature of these letters has.
void append(sd_bus_message* message, FuzzedDataProvider& bytes, int depth) {
    static const std::array basics{"s", "b", "y", "n", "q", "i", "u", "x", "t", "d"};
    static const std::array others{"as", "av", "a{sv}", "ay"};
    const auto basic =
        bytes.ConsumeIntegralInRange<std::size_t>(0, basics.size() + others.size() - 1);
    if (basic >= basics.size() && depth < 3) {
        const char* const type = others.at(basic - basics.size());
        sd_bus_message_open_container(message, 'v', type);
        sd_bus_message_open_container(message, 'a', type + 1);
        for (int count = bytes.ConsumeIntegralInRange(0, 40); count > 0; --count)
            if (type[1] == 's')
                sd_bus_message_append(message, "s", text(bytes).c_str());
            else if (type[1] == 'y')
                sd_bus_message_append(message, "y", count);
            else if (type[1] == 'v')
                append(message, bytes, depth + 1);
            else
                sd_bus_message_append(message, "{sv}", text(bytes).c_str(), "i", count);
        sd_bus_message_close_container(message);
        sd_bus_message_close_container(message);
        return;
    }
    const char* const type = basics.at(basic % basics.size());
    if (*type == 's') {
        sd_bus_message_append(message, "v", "s", text(bytes).c_str());
    } else if (*type == 'd') {
        sd_bus_message_append(message, "v", type, // what is no number, too
                              std::bit_cast<double>(bytes.ConsumeIntegral<std::uint64_t>()));
    } else if (*type == 'x' || *type == 't') {
        sd_bus_message_append(message, "v", type, bytes.ConsumeIntegral<std::uint64_t>());
    } else {
        sd_bus_message_append(message, "v", type, bytes.ConsumeIntegral<int>());
    }
}

BusMessagePtr made() {
    sd_bus_message* message = nullptr;
    require(sd_bus_message_new_signal(nobody(), &message, "/a", "a.b", "C") >= 0);
    return BusMessagePtr(message);
}

} // namespace

// Whatever is said of an alarm is refused by name or read whole; what was read can be told again,
// and is refused or makes an alarm that the editor would take too and that is still to come.
int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    FuzzedDataProvider bytes(data, size);
    const BusMessagePtr message = made();
    sd_bus_message_open_container(message.get(), 'a', "{sv}");
    for (int count = 0; bytes.remaining_bytes() > 0 && count < 40; ++count) {
        sd_bus_message_open_container(message.get(), 'e', "sv");
        const bool isKnown = bytes.ConsumeIntegralInRange(0, 9) > 0;
        const std::string name = isKnown ? bytes.PickValueInArray(names) : text(bytes);
        sd_bus_message_append(message.get(), "s", name.c_str());
        append(message.get(), bytes, 0);
        sd_bus_message_close_container(message.get());
    }
    sd_bus_message_close_container(message.get());
    if (sd_bus_message_seal(message.get(), 1, 0) < 0) // a text that no message holds
        return 0;
    const auto isRefused = [](const auto& answer) {
        const Refusal* const refusal = std::get_if<Refusal>(&answer);
        require(!refusal || (!refusal->name.isEmpty() && !refusal->reason.isEmpty()));
        return refusal != nullptr;
    };
    const auto read = readDescription(message.get());
    if (isRefused(read))
        return 0;
    require(sd_bus_message_at_end(message.get(), 0) > 0); // of the entries
    const auto& description = std::get<QVariantMap>(read);
    const BusMessagePtr report = made();
    BusWriter writer(report);
    writeReport(writer, description);
    require(writer.result() >= 0);
    const QDateTime now({2026, 11, 24}, {10, 0, 0, 250});
    for (const auto row : {Alarm::Relative, Alarm::Dated, Alarm::Weekly}) {
        AlarmForm before = newAlarmForm(now, 5);
        before.title = QStringLiteral("Tea");
        before.row = row;
        const auto changed = readChanges(description, before, now);
        if (!isRefused(changed))
            require(faultsOf(std::get<AlarmRequest>(changed).form).message.isEmpty());
    }
    const auto request = readRequest(description, now);
    if (isRefused(request))
        return 0;
    const AlarmForm& form = std::get<AlarmRequest>(request).form;
    require(faultsOf(form).message.isEmpty());
    const AlarmPtr alarm = alarmBuiltFrom(form, now, weekdayName(now.date()));
    const auto due = alarm->due(instantOf(now));
    require(due && *due >= instantOf(now) - std::chrono::seconds(1));
    return 0;
}
