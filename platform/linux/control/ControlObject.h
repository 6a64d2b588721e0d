// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/Lifeline.h"
#include "platform/linux/bus/ServedBus.h"
#include "platform/linux/control/ListAnswers.h"
#include "platform/RemoteControl.h"

#include <functional>
#include <memory>
#include <systemd/sd-bus.h>

namespace dorvane {

// The interface com.brackenfold.Dorvane1, described in docs/bus.md: hands each request on, and
// tells the bus of what changes. Main thread only.
class ControlObject final {
public:
    // Becomes the listener of the control. All of it must outlive this.
    ControlObject(ServedBus& bus, RunLoop& runLoop, RemoteControl& control);
    ~ControlObject();
    ControlObject(const ControlObject&) = delete;
    ControlObject& operator=(const ControlObject&) = delete;

private:
    static const sd_bus_vtable interface[];

    // Called by sd-bus; `data` is the object.
    static int get(sd_bus* bus, const char* path, const char* interface, const char* name,
                   sd_bus_message* message, void* data, sd_bus_error* error);
    static int make(sd_bus_message* call, void* data, sd_bus_error* error);
    static int startStored(sd_bus_message* call, void* data, sd_bus_error* error);
    static int list(sd_bus_message* call, void* data, sd_bus_error* error);
    static int listNext(sd_bus_message* call, void* data, sd_bus_error* error);
    static int snooze(sd_bus_message* call, void* data, sd_bus_error* error);
    static int onOne(sd_bus_message* call, void* data, sd_bus_error* error);
    static int onBreaks(sd_bus_message* call, void* data, sd_bus_error* error);

    class Call;
    using CallPtr = std::shared_ptr<Call>;

    [[nodiscard]] CallPtr admit(sd_bus_message* call);
    void whenStillAsked(const CallPtr& call, std::function<void(bool isAsked)> then);
    [[nodiscard]] RemoteControl::Asker askerOf(const CallPtr& call);
    template<typename Result>
    void answerWhenSaved(const CallPtr& call, const Result& result);
    void tellState(const RemoteState& before, const RemoteState& now);
    void tellEvent(RemoteListener::Event event, const QString& id, const QString& title);
    void tell(const char* signal);

    ServedBus& m_bus;
    RunLoop& m_runLoop;
    RemoteControl& m_control;
    ListAnswers m_lists;
    int m_unanswered = 0; // calls that change something
    Lifeline<ControlObject> m_lifeline{*this};
};

} // namespace dorvane
