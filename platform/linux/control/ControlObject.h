// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/Lifeline.h"
#include "platform/linux/bus/ServedBus.h"
#include "platform/linux/control/ListAnswers.h"
#include "platform/RemoteControl.h"

#include <functional>
#include <memory>
#include <optional>
#include <systemd/sd-bus.h>
#include <vector>

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
    // Called by sd-bus; `data` is the object.
    static int get(sd_bus* bus, const char* path, const char* interface, const char* name,
                   sd_bus_message* message, void* data, sd_bus_error* error);
    static int serve(sd_bus_message* call, void* data, sd_bus_error* error);
    static const std::vector<sd_bus_vtable>& interface();

    class Call;
    using CallPtr = std::shared_ptr<Call>;

    [[nodiscard]] CallPtr admit(sd_bus_message* call);
    void whenStillAsked(const CallPtr& call, std::function<void(bool isAsked)> then);
    [[nodiscard]] RemoteControl::Asker askerOf(const CallPtr& call);
    template<typename Result, typename... Arguments>
    int carryOut(sd_bus_message* message, Result (RemoteControl::*operation)(Arguments...));
    template<typename Type>
    [[nodiscard]] std::optional<Refusal> readArgument(const CallPtr& call, Type& argument);
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
