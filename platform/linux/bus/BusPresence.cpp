// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/bus/BusPresence.h"

#include <memory>
#include <systemd/sd-bus.h>
#include <utility>

namespace dorvane {

namespace {

using namespace std::chrono_literals;

// The answer waits behind all that others ask of us.
constexpr auto oldestAnswer = 1s;

struct Question {
    ServedBus& bus;
    RunLoop& runLoop;
    QByteArray name;
    std::function<void(bool)> then;
    RunLoop::Milliseconds asked{0}; // uptime
};

void send(std::unique_ptr<Question> question);

int answered(sd_bus_message* reply, void* data, sd_bus_error* /*error*/) {
    Question& question = *static_cast<Question*>(data);
    int isThere = 0;
    if (sd_bus_message_is_method_error(reply, nullptr) == 0)
        (void)sd_bus_message_read_basic(reply, 'b', &isThere);
    if (isThere != 0 && question.runLoop.uptime() - question.asked > oldestAnswer)
        send(std::make_unique<Question>(std::move(question)));
    else
        question.then(isThere != 0);
    return 1;
}

// The connection keeps the question from here on, and ends it with itself.
void send(std::unique_ptr<Question> question) {
    question->asked = question->runLoop.uptime();
    sd_bus_slot* slot = nullptr;
    const int result =
        sd_bus_call_method_async(question->bus.get(), &slot, "org.freedesktop.DBus",
                                 "/org/freedesktop/DBus", "org.freedesktop.DBus", "NameHasOwner",
                                 answered, question.get(), "s", question->name.constData());
    if (result < 0) {
        question->runLoop.defer([then = std::move(question->then)] { then(false); });
        return;
    }
    ServedBus& bus = question->bus;
    (void)question.release();
    sd_bus_slot_set_destroy_callback(slot, [](void* data) { delete static_cast<Question*>(data); });
    sd_bus_slot_set_floating(slot, 1);
    sd_bus_slot_unref(slot);
    bus.flush();
}

} // namespace

void askWhetherOnBus(ServedBus& bus, RunLoop& runLoop, const QByteArray& name,
                     std::function<void(bool isThere)> then) {
    send(std::make_unique<Question>(Question{bus, runLoop, name, std::move(then)}));
}

} // namespace dorvane
