// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/session/InstanceLock.h"

#include "platform/linux/session/LaunchRequest.h"
#include "platform/Log.h"

#include <QDir>
#include <QFile>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <poll.h>
#include <sys/file.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>
#include <utility>

namespace dorvane {

namespace {

constexpr std::size_t largestRequest = 64 * 1024; // bytes
constexpr std::chrono::milliseconds interval{20};
constexpr char accepted = '+';

// A datagram: the action, then the addresses, with a zero byte before each.
QByteArray packed(const LaunchRequest& request) {
    QByteArray data = request.action.toUtf8();
    for (const QString& uri : request.uris)
        data += '\0' + uri.toUtf8();
    return data;
}

LaunchRequest unpacked(const QByteArray& data) {
    QStringList parts;
    for (const QByteArray& part : data.split('\0'))
        parts.append(QString::fromUtf8(part));
    const QString action = parts.takeFirst();
    return {action, parts};
}

// Nothing for a path that is too long for a socket.
std::optional<sockaddr_un> addressOf(const QByteArray& path) {
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    if (static_cast<std::size_t>(path.size()) >= sizeof address.sun_path)
        return std::nullopt;
    std::memcpy(address.sun_path, path.constData(), static_cast<std::size_t>(path.size()));
    return address;
}

const sockaddr* generic(const sockaddr_un& address) {
    return reinterpret_cast<const sockaddr*>(&address);
}

int newSocket(int flags) {
    return ::socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC | flags, 0);
}

// A socket that sends to the address; less than 0 when nobody listens there.
int connectedTo(const sockaddr_un& address) {
    const int socket = newSocket(0);
    // With an address of its own, which the system makes up, it can be answered.
    sockaddr_un own{};
    own.sun_family = AF_UNIX;
    if (socket >= 0 && ::bind(socket, generic(own), sizeof own.sun_family) == 0 &&
        ::connect(socket, generic(address), sizeof address) == 0)
        return socket;
    if (socket >= 0)
        ::close(socket);
    return -1;
}

bool isListenedAt(const sockaddr_un& address) {
    const int socket = connectedTo(address);
    if (socket >= 0)
        ::close(socket);
    return socket >= 0;
}

bool isAnswered(int socket, std::chrono::milliseconds within) {
    pollfd answer{socket, POLLIN, 0};
    char byte = 0;
    return ::poll(&answer, 1, static_cast<int>(within.count())) == 1 &&
           ::recv(socket, &byte, 1, MSG_DONTWAIT) == 1 && byte == accepted;
}

} // namespace

InstanceLock::InstanceLock(const QString& folder) {
    QDir().mkpath(folder);
    const QString base = folder + QStringLiteral("/com.brackenfold.Dorvane");
    m_lockPath = QFile::encodeName(base + QStringLiteral(".lock"));
    m_socketPath = QFile::encodeName(base + QStringLiteral(".socket"));
}

InstanceLock::~InstanceLock() {
    stopListening();
    if (m_lock >= 0)
        ::close(m_lock);
}

void InstanceLock::stopListening() {
    m_notifier.reset();
    if (m_socket < 0)
        return;
    ::unlink(m_socketPath.constData());
    ::close(std::exchange(m_socket, -1));
}

bool InstanceLock::acquire() {
    if (!take())
        return false;
    openSocket();
    return true;
}

bool InstanceLock::take() {
    if (m_isHeld)
        return true;
    if (m_lock < 0)
        m_lock = ::open(m_lockPath.constData(), O_RDWR | O_CREAT | O_CLOEXEC, 0600);
    m_isHeld = m_lock >= 0 && ::flock(m_lock, LOCK_EX | LOCK_NB) == 0;
    if (m_isHeld || (m_lock >= 0 && errno == EWOULDBLOCK))
        return m_isHeld;
    qCWarning(logPlatform, "A second copy of the program would go unnoticed; no lock on %s: %s",
              m_lockPath.constData(), std::strerror(errno));
    return true;
}

void InstanceLock::openSocket() {
    const auto address = addressOf(m_socketPath);
    const int socket = newSocket(SOCK_NONBLOCK);
    ::unlink(m_socketPath.constData()); // of an instance that crashed; the lock is ours
    if (socket >= 0 && address && ::bind(socket, generic(*address), sizeof *address) == 0) {
        m_socket = socket;
        return;
    }
    qCWarning(logPlatform, "Further launches cannot reach this one: no socket at %s",
              m_socketPath.constData());
    if (socket >= 0)
        ::close(socket);
}

// The request is sent once to each that listens, or it would be carried out twice.
InstanceLock::Answer InstanceLock::ask(const LaunchRequest& request, Patience patience) {
    const auto address = addressOf(m_socketPath);
    const QByteArray data = packed(request);
    int socket = -1;
    Answer answer = Answer::Silent;
    for (auto left = patience.end; left.count() > 0; left -= interval) {
        if (socket < 0 && address && (socket = connectedTo(*address)) >= 0) {
            left = std::min(left, patience.answer);
            if (::send(socket, data.constData(), static_cast<std::size_t>(data.size()),
                       MSG_NOSIGNAL) != data.size())
                break;
        }
        if (socket >= 0 && isAnswered(socket, interval)) {
            answer = Answer::Taken;
            break;
        }
        if (socket < 0)
            ::poll(nullptr, 0, static_cast<int>(interval.count()));
        if (take()) {
            answer = Answer::Gone;
            break;
        }
        if (socket >= 0 && !isListenedAt(*address)) { // it is ending, with the request unread
            ::close(std::exchange(socket, -1));
            left = patience.end;
        }
    }
    if (socket >= 0)
        ::close(socket);
    return answer;
}

void InstanceLock::listen(std::function<void(const LaunchRequest&)> requested) {
    if (m_socket < 0)
        return;
    m_notifier.emplace(m_socket, QSocketNotifier::Read);
    QObject::connect(&*m_notifier, &QSocketNotifier::activated, &*m_notifier,
                     [this, callback = std::move(requested)] { receive(callback); });
}

void InstanceLock::receive(const std::function<void(const LaunchRequest&)>& requested) const {
    QByteArray data(static_cast<qsizetype>(largestRequest), Qt::Uninitialized);
    sockaddr_un sender{};
    socklen_t senderSize = sizeof sender;
    const auto size = ::recvfrom(m_socket, data.data(), largestRequest, MSG_DONTWAIT,
                                 reinterpret_cast<sockaddr*>(&sender), &senderSize);
    if (size < 0)
        return;
    // An asker that has gone already needs no answer.
    [[maybe_unused]] const auto sent =
        ::sendto(m_socket, &accepted, 1, MSG_DONTWAIT | MSG_NOSIGNAL, generic(sender), senderSize);
    requested(unpacked(data.first(size)));
}

} // namespace dorvane
