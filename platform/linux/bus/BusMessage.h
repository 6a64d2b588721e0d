// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <memory>
#include <systemd/sd-bus.h>
#include <vector>

namespace dorvane {

struct BusMessageRelease {
    void operator()(sd_bus_message* message) const { sd_bus_message_unref(message); }
};
using BusMessagePtr = std::unique_ptr<sd_bus_message, BusMessageRelease>;

// Null when the connection is gone.
[[nodiscard]] BusMessagePtr replyTo(sd_bus_message* call);
[[nodiscard]] BusMessagePtr busSignal(sd_bus* bus, const char* path, const char* interface,
                                      const char* member);

// Writes arguments to a message of sd-bus. The first failure stays, and stops what follows it.
class BusWriter {
public:
    // Borrows the message.
    explicit BusWriter(sd_bus_message* message) : m_message(message) {}
    explicit BusWriter(const BusMessagePtr& message) : m_message(message.get()) {}

    BusWriter& number(qint32 value) { return basic('i', &value); }
    BusWriter& count(quint32 value) { return basic('u', &value); }
    BusWriter& moment(qint64 value) { return basic('x', &value); }
    BusWriter& flag(int value) { return basic('b', &value); }
    BusWriter& path(const char* value) { return basic('o', value); }
    BusWriter& text(const char* utf8) { return basic('s', utf8); }
    BusWriter& text(const QString& value);
    BusWriter& bytes(const QByteArray& value);
    BusWriter& numbers(const std::vector<qint32>& values);

    // An array 'a', structure 'r', entry of a dictionary 'e' or variant 'v', with what `write`
    // writes inside.
    template<typename Write>
    BusWriter& container(char type, const char* contents, Write write) {
        if (m_result >= 0)
            m_result = sd_bus_message_open_container(m_message, type, contents);
        if (m_result >= 0)
            write();
        if (m_result >= 0)
            m_result = sd_bus_message_close_container(m_message);
        return *this;
    }

    // Negative errno when something could not be written.
    [[nodiscard]] int result() const { return m_result; }

    // Sends the message if all could be written; as result().
    [[nodiscard]] int send() const;

private:
    BusWriter& basic(char type, const void* value);

    sd_bus_message* m_message;
    int m_result = 0;
};

// The next argument of a call whose signature has been checked: an array of numbers or of strings.
[[nodiscard]] std::vector<qint32> readNumbers(sd_bus_message* call);
[[nodiscard]] QStringList readStrings(sd_bus_message* call);

} // namespace dorvane
