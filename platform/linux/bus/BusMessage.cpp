// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/bus/BusMessage.h"

#include <string>

namespace dorvane {

BusMessagePtr replyTo(sd_bus_message* call) {
    sd_bus_message* reply = nullptr;
    sd_bus_message_new_method_return(call, &reply);
    return BusMessagePtr(reply);
}

BusMessagePtr busSignal(sd_bus* bus, const char* path, const char* interface, const char* member) {
    sd_bus_message* signal = nullptr;
    if (bus)
        sd_bus_message_new_signal(bus, &signal, path, interface, member);
    return BusMessagePtr(signal);
}

BusWriter& BusWriter::basic(char type, const void* value) {
    if (m_result >= 0)
        m_result = sd_bus_message_append_basic(m_message, type, value);
    return *this;
}

BusWriter& BusWriter::bytes(const QByteArray& value) {
    if (m_result >= 0)
        m_result = sd_bus_message_append_array(m_message, 'y', value.constData(),
                                               std::size_t(value.size()));
    return *this;
}

BusWriter& BusWriter::numbers(const std::vector<qint32>& values) {
    if (m_result >= 0)
        m_result = sd_bus_message_append_array(m_message, 'i', values.data(),
                                               values.size() * sizeof(qint32));
    return *this;
}

// Unicode's noncharacters may be in a title, but sd-bus would refuse the whole message.
BusWriter& BusWriter::text(const QString& value) {
    std::u32string letters = value.toStdU32String();
    for (char32_t& letter : letters)
        if (QChar::isNonCharacter(letter))
            letter = QChar::ReplacementCharacter;
    return text(QString::fromStdU32String(letters).toUtf8().constData());
}

int BusWriter::send() const {
    return m_result < 0 ? m_result
                        : sd_bus_send(sd_bus_message_get_bus(m_message), m_message, nullptr);
}

std::vector<qint32> readNumbers(sd_bus_message* call) {
    const void* data = nullptr;
    std::size_t size = 0;
    if (sd_bus_message_read_array(call, 'i', &data, &size) < 0)
        return {};
    const auto* first = static_cast<const qint32*>(data);
    return {first, first + size / sizeof(qint32)};
}

QStringList readStrings(sd_bus_message* call) {
    QStringList strings;
    const char* utf8 = nullptr;
    if (sd_bus_message_enter_container(call, 'a', "s") >= 0) {
        while (sd_bus_message_read_basic(call, 's', &utf8) > 0)
            strings << QString::fromUtf8(utf8);
        sd_bus_message_exit_container(call);
    }
    return strings;
}

} // namespace dorvane
