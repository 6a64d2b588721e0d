// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/control/ControlObject.h"

#include "platform/linux/bus/BusPresence.h"
#include "platform/linux/control/AlarmMessage.h"
#include "platform/linux/control/ControlNames.h"
#include "platform/RemoteMethods.h"

#include <algorithm>
#include <array>
#include <memory>
#include <string_view>
#include <tuple>
#include <type_traits>
#include <utility>

namespace dorvane {

namespace {

constexpr auto path = "/com/brackenfold/Dorvane";
constexpr auto interfaceName = "com.brackenfold.Dorvane1";
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

// One that is short.
int answer(sd_bus_message* call, const AlarmListing& listing) {
    const BusMessagePtr reply = replyTo(call);
    BusWriter writer(reply);
    writer.container('a', "a{sv}", [&] {
        for (std::size_t i = 0; i < listing.count; ++i)
            writeReport(writer, listing.report(i));
    });
    return writer.send();
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

// sd-bus keeps the table and all that it points to.
const std::vector<sd_bus_vtable>& ControlObject::interface() {
    struct Texts {
        QByteArray signature, result, names;
        void add(QByteArray& types, const std::vector<RemoteArgument>& arguments) {
            for (const RemoteArgument& argument : arguments) {
                types += argument.type;
                names += argument.name + '\0';
            }
        }
    };
    static std::array<Texts, remote::all.size()> texts;
    static const std::vector<sd_bus_vtable> table = [] {
        std::vector<sd_bus_vtable> rows{
            SD_BUS_VTABLE_START(0),
            SD_BUS_PROPERTY("NextDue", "x", get, 0, changes),
            SD_BUS_PROPERTY("NextAlarm", "s", get, 0, changes),
            SD_BUS_PROPERTY("Ringing", "as", get, 0, changes),
            SD_BUS_PROPERTY("BreaksRunning", "b", get, 0, changes),
            SD_BUS_PROPERTY("BreakPhase", "s", get, 0, changes),
            SD_BUS_PROPERTY("NextBreak", "x", get, 0, changes),
            SD_BUS_PROPERTY("BreakEnd", "x", get, 0, changes),
            SD_BUS_PROPERTY("Paused", "b", get, 0, changes),
            SD_BUS_PROPERTY("PausedUntil", "x", get, 0, changes),
            SD_BUS_SIGNAL("RunningChanged", "", 0),
            SD_BUS_SIGNAL("StoredChanged", "", 0),
            SD_BUS_SIGNAL_WITH_ARGS("Rang", SD_BUS_ARGS("s", id, "s", title), 0),
            SD_BUS_SIGNAL_WITH_ARGS("Snoozed", SD_BUS_ARGS("s", id, "s", title), 0),
            SD_BUS_SIGNAL_WITH_ARGS("Cleared", SD_BUS_ARGS("s", id, "s", title), 0),
            SD_BUS_SIGNAL_WITH_ARGS("WentUnanswered", SD_BUS_ARGS("s", id, "s", title), 0),
        };
        for (std::size_t i = 0; i < remote::all.size(); ++i) {
            Texts& text = texts.at(i);
            text.add(text.signature, argumentsOf(remote::all.at(i)));
            text.add(text.result, resultsOf(remote::all.at(i)));
            sd_bus_vtable row SD_BUS_METHOD(remote::all.at(i).name, text.signature.constData(),
                                            text.result.constData(), serve, unprivileged);
            row.x.method.names = text.names.constData();
            rows.push_back(row);
        }
        rows.push_back(SD_BUS_VTABLE_END);
        return rows;
    }();
    return table;
}

ControlObject::ControlObject(ServedBus& bus, RunLoop& runLoop, RemoteControl& control)
    : m_bus(bus), m_runLoop(runLoop), m_control(control), m_lists(bus, runLoop) {
    m_bus.addObject(path, interfaceName, interface().data(), this);
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
    else if (property == "BreakPhase")
        reply.text(state.breaks.phase);
    else if (property == "NextBreak")
        reply.moment(state.breaks.next);
    else if (property == "BreakEnd")
        reply.moment(state.breaks.end);
    else if (property == "Paused")
        reply.flag(state.isPaused ? 1 : 0);
    else if (property == "PausedUntil")
        reply.moment(state.pausedUntil);
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

template<typename Type>
std::optional<Refusal> ControlObject::readArgument(const CallPtr& call, Type& argument) {
    const auto take = [&argument](auto read) {
        Refusal* const refusal = std::get_if<Refusal>(&read);
        if (!refusal)
            argument = std::move(std::get<Type>(read));
        return refusal ? std::optional(std::move(*refusal)) : std::nullopt;
    };
    if constexpr (std::is_same_v<Type, RemoteControl::Asker>) {
        argument = askerOf(call);
        return std::nullopt;
    } else if constexpr (std::is_same_v<Type, QString>)
        return take(readText(call->message()));
    else if constexpr (std::is_same_v<Type, QVariantMap>)
        return take(readDescription(call->message()));
    else if constexpr (std::is_same_v<Type, qint64>)
        return take(readMoment(call->message()));
    else
        return take(readCount(call->message()));
}

// Reads the arguments of the operation, calls it, and answers with what it returns.
template<typename Result, typename... Arguments>
int ControlObject::carryOut(sd_bus_message* message,
                            Result (RemoteControl::*operation)(Arguments...)) {
    constexpr bool isListing = std::is_same_v<Result, AlarmListing>; // which changes nothing
    const CallPtr call = isListing ? std::make_shared<Call>(*this, message) : admit(message);
    if (!call)
        return 1;
    std::tuple<std::decay_t<Arguments>...> arguments;
    std::optional<Refusal> refusal;
    std::apply(
        [&](auto&... argument) {
            (void)(... && !(refusal = readArgument(call, argument)).has_value());
        },
        arguments);
    if (refusal)
        return refuse(message, *refusal);
    const auto perform = [this, operation, arguments = std::move(arguments)] {
        return std::apply(
            [&](const auto&... argument) { return (m_control.*operation)(argument...); },
            arguments);
    };
    if constexpr (std::is_void_v<Result>)
        perform(); // it has the asker
    else if constexpr (isListing && sizeof...(Arguments) == 0)
        return m_lists.add(message, perform) ? 1 : refuse(message, busy());
    else if constexpr (isListing)
        return answer(message, perform());
    else if constexpr (std::is_same_v<Result, AlarmAnswer>)
        whenStillAsked(call, [this, call, perform](bool isAsked) {
            if (isAsked)
                answerWhenSaved(call, perform());
        });
    else
        answerWhenSaved(call, perform());
    return 1;
}

int ControlObject::serve(sd_bus_message* call, void* data, sd_bus_error* /*error*/) {
    const auto method =
        std::find_if(remote::all.begin(), remote::all.end(),
                     [name = memberOf(call)](const RemoteMethod& row) { return name == row.name; });
    return std::visit(
        [&](auto operation) {
            return static_cast<ControlObject*>(data)->carryOut(call, operation);
        },
        method->operation);
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
    std::array<const char*, 9> changed{};
    std::size_t count = 0;
    for (const auto& [differs, name] :
         {std::pair{before.nextDue != now.nextDue, "NextDue"},
          std::pair{before.nextAlarm != now.nextAlarm, "NextAlarm"},
          std::pair{before.ringing != now.ringing, "Ringing"},
          std::pair{before.breaksRun != now.breaksRun, "BreaksRunning"},
          std::pair{before.breaks.phase != now.breaks.phase, "BreakPhase"},
          std::pair{before.breaks.next != now.breaks.next, "NextBreak"},
          std::pair{before.breaks.end != now.breaks.end, "BreakEnd"},
          std::pair{before.isPaused != now.isPaused, "Paused"},
          std::pair{before.pausedUntil != now.pausedUntil, "PausedUntil"}})
        if (differs)
            changed.at(count++) = name;
    std::array<char*, 10> names{}; // with a null behind the last
    for (std::size_t i = 0; i < count; ++i)
        names.at(i) = const_cast<char*>(changed.at(i)); // sd-bus only reads them
    if (m_bus.get() &&
        sd_bus_emit_properties_changed_strv(m_bus.get(), path, interfaceName, names.data()) >= 0)
        m_bus.flush();
}

} // namespace dorvane
