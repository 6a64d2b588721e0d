// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/RemoteMethods.h"

#include <QList>

namespace dorvane {

namespace {

template<typename Type>
constexpr const char* lettersOf() {
    if constexpr (std::is_same_v<Type, quint32>)
        return "u";
    else if constexpr (std::is_same_v<Type, qint64>)
        return "x";
    else if constexpr (std::is_same_v<Type, QString>)
        return "s";
    else if constexpr (std::is_same_v<Type, QVariantMap>)
        return "a{sv}";
    else {
        static_assert(std::is_same_v<Type, RemoteControl::Asker>); // which is no argument
        return "";
    }
}

template<typename Result, typename... Arguments>
QList<QByteArray> typesOf(Result (RemoteControl::*)(Arguments...)) {
    QList<QByteArray> types{lettersOf<std::decay_t<Arguments>>()...};
    types.removeAll(QByteArray(""));
    return types;
}

template<typename Result, typename... Arguments>
std::vector<RemoteArgument> resultsOfOperation(Result (RemoteControl::*)(Arguments...)) {
    if constexpr (std::is_same_v<Result, Outcome>)
        return {};
    else if constexpr (std::is_same_v<Result, AlarmListing>)
        return {{"aa{sv}", "alarms"}};
    else
        return {{"s", sizeof...(Arguments) == 0 ? "title" : "id"}};
}

} // namespace

std::vector<RemoteArgument> argumentsOf(const RemoteMethod& method) {
    const auto types =
        std::visit([](auto operation) { return typesOf(operation); }, method.operation);
    const QList<QByteArray> names = QByteArray(method.takes).split(' ');
    std::vector<RemoteArgument> arguments;
    for (qsizetype i = 0; i < types.size(); ++i)
        arguments.push_back({types[i], names.value(i)});
    return arguments;
}

std::vector<RemoteArgument> resultsOf(const RemoteMethod& method) {
    return std::visit([](auto operation) { return resultsOfOperation(operation); },
                      method.operation);
}

} // namespace dorvane
