// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/control/ControlObject.h"

#include "platform/linux/bus/BusPresence.h"
#include "platform/linux/control/AlarmMessage.h"
#include "platform/linux/control/ControlNames.h"

#include <algorithm>
#include <array>
#include <memory>
#include <string_view>
#include <utility>

namespace dorvane {

namespace {

constexpr auto path = "/com/brackenfold/Dorvane";
constexpr auto interfaceName = "com.brackenfold.Dorvane1";
constexpr quint32 mostNext = 100;
constexpr int mostUnanswered = 1000; // the disk may not answer either

constexpr auto unprivileged = SD_BUS_VTABLE_UNPRIVILEGED; // whoever is on the bus may call
constexpr auto changes = SD_BUS_VTABLE_PROPERTY_EMITS_CHANGE;

int refuse(sd_bus_message* call, const Refusal& refusal) {
    const QByteArray name = (bus::errorPrefix + refusal.name).toUtf8();
    const QByteArray reason = refusal.reason.toUtf8();
    const sd_bus_error error = SD_BUS_ERROR_MAKE_CONST(name.constData(), reason.constData());
    return sd_bus_reply_method_error(call, &error);
}

int answer(sd_bus_message* call, const Outcome& outcome) {
    return outcome ? refuse(call, *outcome) : sd_bus_reply_method_return(call, "");
}

int answer(sd_bus_message* call, const AlarmAnswer& made) {
    if (const Refusal* const refusal = std::get_if<Refusal>(&made))
        return refuse(call, *refusal);
    return BusWriter(replyTo(call)).text(std::get<QString>(made)).send();
}

Refusal busy() {
    return {QStringLiteral("Busy"), QStringLiteral("too many requests are waiting")};
}

Refusal notSaved(const QString& problem) {
    return {QStringLiteral("NotSaved"),
            QStringLiteral("it is done, but lost when Dorvane ends, because it cannot be saved: ") +
                problem};
}

bool isRefused(const Outcome& outcome) {
    return outcome.has_value();
}

bool isRefused(const AlarmAnswer& made) {
    return std::holds_alternative<Refusal>(made);
}

std::string_view memberOf(sd_bus_message* call) {
    return sd_bus_message_get_member(call);
}

} // namespace

const sd_bus_vtable ControlObject::interface[] = {
    SD_BUS_VTABLE_START(0),
    SD_BUS_PROPERTY("NextDue", "x", get, 0, changes),
    SD_BUS_PROPERTY("NextAlarm", "s", get, 0, changes),
    SD_BUS_PROPERTY("Ringing", "as", get, 0, changes),
    SD_BUS_PROPERTY("BreaksRunning", "b", get, 0, changes),
    SD_BUS_PROPERTY("NextBreak", "x", get, 0, changes),
    SD_BUS_METHOD_WITH_ARGS("AddTimer", SD_BUS_ARGS("u", minutes, "s", title),
                            SD_BUS_RESULT("s", id), make, unprivileged),
    SD_BUS_METHOD_WITH_ARGS("AddAlarm", SD_BUS_ARGS("a{sv}", alarm), SD_BUS_RESULT("s", id), make,
                            unprivileged),
    SD_BUS_METHOD_WITH_ARGS("StartStored", SD_BUS_ARGS("s", title), SD_BUS_RESULT("s", id),
                            startStored, unprivileged),
    SD_BUS_METHOD_WITH_ARGS("ListRunning", SD_BUS_NO_ARGS, SD_BUS_RESULT("aa{sv}", alarms), list,
                            unprivileged),
    SD_BUS_METHOD_WITH_ARGS("ListStored", SD_BUS_NO_ARGS, SD_BUS_RESULT("aa{sv}", alarms), list,
                            unprivileged),
    SD_BUS_METHOD_WITH_ARGS("ListNext", SD_BUS_ARGS("u", most), SD_BUS_RESULT("aa{sv}", alarms),
                            listNext, unprivileged),
    SD_BUS_METHOD_WITH_ARGS("Snooze", SD_BUS_ARGS("s", id), SD_BUS_NO_RESULT, snooze, unprivileged),
    SD_BUS_METHOD_WITH_ARGS("SnoozeFor", SD_BUS_ARGS("s", id, "u", minutes), SD_BUS_NO_RESULT,
                            snooze, unprivileged),
    SD_BUS_METHOD_WITH_ARGS("Clear", SD_BUS_ARGS("s", id), SD_BUS_NO_RESULT, onOne, unprivileged),
    SD_BUS_METHOD_WITH_ARGS("Delete", SD_BUS_ARGS("s", id), SD_BUS_NO_RESULT, onOne, unprivileged),
    SD_BUS_METHOD_WITH_ARGS("DeleteStored", SD_BUS_ARGS("s", title), SD_BUS_NO_RESULT, onOne,
                            unprivileged),
    SD_BUS_METHOD("StartBreaks", "", "", onBreaks, unprivileged),
    SD_BUS_METHOD("StopBreaks", "", "", onBreaks, unprivileged),
    SD_BUS_METHOD("SkipBreak", "", "", onBreaks, unprivileged),
    SD_BUS_SIGNAL("RunningChanged", "", 0),
    SD_BUS_SIGNAL("StoredChanged", "", 0),
    SD_BUS_SIGNAL_WITH_ARGS("Rang", SD_BUS_ARGS("s", id, "s", title), 0),
    SD_BUS_SIGNAL_WITH_ARGS("Snoozed", SD_BUS_ARGS("s", id, "s", title), 0),
    SD_BUS_SIGNAL_WITH_ARGS("Cleared", SD_BUS_ARGS("s", id, "s", title), 0),
    SD_BUS_SIGNAL_WITH_ARGS("WentUnanswered", SD_BUS_ARGS("s", id, "s", title), 0),
    SD_BUS_VTABLE_END,
};

ControlObject::ControlObject(ServedBus& bus, RunLoop& runLoop, RemoteControl& control)
    : m_bus(bus), m_runLoop(runLoop), m_control(control), m_lists(bus, runLoop) {
    m_bus.addObject(path, interfaceName, interface, this);
    m_control.setListener(
        {.befell = [this](auto event, const QString& id,
                          const QString& title) { tellEvent(event, id, title); },
         .alarmsChanged = [this] { tell("RunningChanged"); },
         .storedAlarmsChanged = [this] { tell("StoredChanged"); },
         .stateChanged = [this](const RemoteState& before,
                                const RemoteState& now) { tellState(before, now); }});
}

ControlObject::~ControlObject() {
    m_control.setListener({});
}

// -- What is asked --------------------------------------------------------------------------------

int ControlObject::get(sd_bus* /*bus*/, const char* /*path*/, const char* /*interface*/,
                       const char* name, sd_bus_message* message, void* data,
                       sd_bus_error* /*error*/) {
    const RemoteState state = static_cast<ControlObject*>(data)->m_control.state();
    const std::string_view property(name);
    BusWriter reply(message);
    if (property == "NextDue")
        reply.moment(state.nextDue);
    else if (property == "NextAlarm")
        reply.text(state.nextAlarm);
    else if (property == "BreaksRunning")
        reply.flag(state.breaksRun ? 1 : 0);
    else if (property == "NextBreak")
        reply.moment(state.nextBreak);
    else
        reply.container('a', "s", [&] {
            for (const QString& id : state.ringing)
                reply.text(id);
        });
    return reply.result();
}

// One that changes something, from when it comes in until it was answered or its caller has gone.
class ControlObject::Call {
public:
    Call(ControlObject& object, sd_bus_message* call)
        : m_object(object.m_lifeline.weak())
        , m_call(sd_bus_message_ref(call))
        , m_isInTime(object.m_bus.isUpToDate()) {
        ++object.m_unanswered;
    }
    Call(const Call&) = delete;
    Call& operator=(const Call&) = delete;
    ~Call() {
        if (ControlObject* const object = m_object.get())
            --object->m_unanswered;
    }

    [[nodiscard]] ControlObject* object() const { return m_object.get(); }
    [[nodiscard]] sd_bus_message* message() const { return m_call.get(); }
    [[nodiscard]] bool isInTime() const { return m_isInTime; }

private:
    const Lifeline<ControlObject>::Weak m_object;
    const BusMessagePtr m_call;
    const bool m_isInTime;
};

// Null, and nothing is to be done, when too many wait for an answer.
ControlObject::CallPtr ControlObject::admit(sd_bus_message* call) {
    if (m_unanswered < mostUnanswered)
        return std::make_shared<Call>(*this, call);
    (void)refuse(call, busy());
    return nullptr;
}

// A call may have waited in the socket for longer than its caller did. One who leaves right after a
// call that was taken in time did not wait for an answer.
void ControlObject::whenStillAsked(const CallPtr& call, std::function<void(bool isAsked)> then) {
    if (call->isInTime())
        return then(true);
    askWhetherOnBus(m_bus, m_runLoop, sd_bus_message_get_sender(call->message()),
                    [call, then = std::move(then)](bool isThere) {
                        if (call->object())
                            then(isThere);
                    });
}

RemoteControl::Asker ControlObject::askerOf(const CallPtr& call) {
    return {.made =
                [call](const AlarmAnswer& made) {
                    if (ControlObject* const self = call->object())
                        self->answerWhenSaved(call, made);
                },
            .stillAsked =
                [call](std::function<void(bool)> then) {
                    if (ControlObject* const self = call->object())
                        self->whenStillAsked(call, std::move(then));
                }};
}

// Whoever is told that an alarm is set may switch the machine off. A caller that has gone meanwhile
// is answered all the same: the bus drops that.
template<typename Result>
void ControlObject::answerWhenSaved(const CallPtr& call, const Result& result) {
    const auto told = [call, result](const std::optional<QString>& problem) {
        ControlObject* const self = call->object();
        if (!self)
            return;
        (void)(problem ? refuse(call->message(), notSaved(*problem))
                       : answer(call->message(), result));
        self->m_bus.flush();
    };
    if (isRefused(result))
        told(std::nullopt);
    else
        m_control.whenSaved(told);
}

int ControlObject::make(sd_bus_message* message, void* data, sd_bus_error* /*error*/) {
    auto& self = *static_cast<ControlObject*>(data);
    const CallPtr call = self.admit(message);
    if (!call)
        return 1;
    if (memberOf(message) == "AddAlarm") {
        const auto description = readDescription(message);
        if (const auto* const refusal = std::get_if<Refusal>(&description))
            return refuse(message, *refusal);
        self.m_control.addAlarm(std::get<QVariantMap>(description), self.askerOf(call));
        return 1;
    }
    quint32 minutes = 0;
    sd_bus_message_read_basic(message, 'u', &minutes);
    const auto title = readText(message);
    if (const auto* const refusal = std::get_if<Refusal>(&title))
        return refuse(message, *refusal);
    self.m_control.addTimer(minutes, std::get<QString>(title), self.askerOf(call));
    return 1;
}

int ControlObject::startStored(sd_bus_message* message, void* data, sd_bus_error* /*error*/) {
    auto& self = *static_cast<ControlObject*>(data);
    const auto title = readText(message);
    if (const auto* const refusal = std::get_if<Refusal>(&title))
        return refuse(message, *refusal);
    if (const CallPtr call = self.admit(message))
        self.whenStillAsked(call, [&self, call, title](bool isAsked) {
            if (isAsked)
                self.answerWhenSaved(call, self.m_control.startStored(std::get<QString>(title)));
        });
    return 1;
}

int ControlObject::list(sd_bus_message* call, void* data, sd_bus_error* /*error*/) {
    auto& self = *static_cast<ControlObject*>(data);
    const bool isOfRunning = memberOf(call) == "ListRunning";
    const auto ask = [&control = self.m_control, isOfRunning] {
        return isOfRunning ? control.runningAlarms() : control.storedAlarms();
    };
    return self.m_lists.add(call, ask) ? 1 : refuse(call, busy());
}

int ControlObject::listNext(sd_bus_message* call, void* data, sd_bus_error* /*error*/) {
    quint32 most = 0;
    if (const int result = sd_bus_message_read_basic(call, 'u', &most); result < 0)
        return result;
    const AlarmListing next = static_cast<ControlObject*>(data)->m_control.nextAlarms(
        std::min<std::size_t>(most, mostNext));
    const BusMessagePtr reply = replyTo(call);
    BusWriter writer(reply);
    writer.container('a', "a{sv}", [&] {
        for (std::size_t i = 0; i < next.count; ++i)
            writeReport(writer, next.report(i));
    });
    return writer.send();
}

int ControlObject::snooze(sd_bus_message* call, void* data, sd_bus_error* /*error*/) {
    const auto named = readText(call);
    if (const auto* const refusal = std::get_if<Refusal>(&named))
        return refuse(call, *refusal);
    std::optional<quint32> minutes;
    if (memberOf(call) == "SnoozeFor")
        sd_bus_message_read_basic(call, 'u', &minutes.emplace());
    auto& self = *static_cast<ControlObject*>(data);
    if (const CallPtr admitted = self.admit(call))
        self.answerWhenSaved(admitted, self.m_control.snooze(std::get<QString>(named), minutes));
    return 1;
}

int ControlObject::onOne(sd_bus_message* call, void* data, sd_bus_error* /*error*/) {
    using Method = Outcome (RemoteControl::*)(const QString&);
    static constexpr std::array methods{
        std::pair<std::string_view, Method>{"Clear", &RemoteControl::clear},
        std::pair<std::string_view, Method>{"Delete", &RemoteControl::remove},
        std::pair<std::string_view, Method>{"DeleteStored", &RemoteControl::removeStored}};
    const auto named = readText(call);
    if (const auto* const refusal = std::get_if<Refusal>(&named))
        return refuse(call, *refusal);
    auto& self = *static_cast<ControlObject*>(data);
    const CallPtr admitted = self.admit(call);
    for (const auto& [member, method] : methods)
        if (admitted && memberOf(call) == member)
            self.answerWhenSaved(admitted, (self.m_control.*method)(std::get<QString>(named)));
    return 1;
}

int ControlObject::onBreaks(sd_bus_message* call, void* data, sd_bus_error* /*error*/) {
    RemoteControl& control = static_cast<ControlObject*>(data)->m_control;
    if (memberOf(call) == "StartBreaks")
        return answer(call, control.startBreaks());
    return answer(call,
                  memberOf(call) == "StopBreaks" ? control.stopBreaks() : control.skipBreak());
}

// -- What is told ---------------------------------------------------------------------------------

void ControlObject::tell(const char* signal) {
    if (m_bus.get() && sd_bus_emit_signal(m_bus.get(), path, interfaceName, signal, "") >= 0)
        m_bus.flush();
}

void ControlObject::tellEvent(RemoteListener::Event event, const QString& id,
                              const QString& title) {
    static constexpr std::array names{"Rang", "Snoozed", "Cleared", "WentUnanswered"};
    const BusMessagePtr signal =
        busSignal(m_bus.get(), path, interfaceName, names.at(std::size_t(event)));
    if (signal && BusWriter(signal).text(id).text(title).send() >= 0)
        m_bus.flush();
}

void ControlObject::tellState(const RemoteState& before, const RemoteState& now) {
    std::array<const char*, 5> changed{};
    std::size_t count = 0;
    for (const auto& [differs, name] :
         {std::pair{before.nextDue != now.nextDue, "NextDue"},
          std::pair{before.nextAlarm != now.nextAlarm, "NextAlarm"},
          std::pair{before.ringing != now.ringing, "Ringing"},
          std::pair{before.breaksRun != now.breaksRun, "BreaksRunning"},
          std::pair{before.nextBreak != now.nextBreak, "NextBreak"}})
        if (differs)
            changed.at(count++) = name;
    std::array<char*, 6> names{}; // with a null behind the last
    for (std::size_t i = 0; i < count; ++i)
        names.at(i) = const_cast<char*>(changed.at(i)); // sd-bus only reads them
    if (m_bus.get() &&
        sd_bus_emit_properties_changed_strv(m_bus.get(), path, interfaceName, names.data()) >= 0)
        m_bus.flush();
}

} // namespace dorvane
