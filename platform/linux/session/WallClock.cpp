// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/session/WallClock.h"

#include "platform/Log.h"

#include <QFileInfo>
#include <QSocketNotifier>

#include <array>
#include <cerrno>
#include <cstdint>
#include <cstring>
#include <limits>
#include <sys/inotify.h>
#include <sys/timerfd.h>
#include <unistd.h>

namespace dorvane {

namespace {

using std::chrono::milliseconds;
using std::chrono::nanoseconds;
using std::chrono::seconds;

std::unique_ptr<QSocketNotifier> listenTo(int descriptor, const char* what) {
    if (descriptor < 0) {
        qCWarning(logPlatform, "cannot watch %s: %s", what, std::strerror(errno));
        return nullptr;
    }
    return std::make_unique<QSocketNotifier>(descriptor, QSocketNotifier::Read);
}

void closeDescriptor(const std::unique_ptr<QSocketNotifier>& notifier) {
    if (notifier)
        close(int(notifier->socket()));
}

} // namespace

WallClock::WallClock(Callbacks callbacks, const char* zoneLink)
    : m_callbacks(std::move(callbacks))
    , m_zoneLinkName(QFileInfo(QString::fromUtf8(zoneLink)).fileName().toUtf8())
    , m_timer(listenTo(timerfd_create(CLOCK_REALTIME, TFD_NONBLOCK | TFD_CLOEXEC), "the clock"))
    , m_folder(listenTo(inotify_init1(IN_NONBLOCK | IN_CLOEXEC), "the zone")) {
    if (m_timer)
        QObject::connect(m_timer.get(), &QSocketNotifier::activated, &m_context,
                         [this] { readTimer(); });
    // A zone is changed by putting another link in the place of the old one, which only the folder
    // can tell.
    const QByteArray folder = QFileInfo(QString::fromUtf8(zoneLink)).path().toUtf8();
    if (!m_folder)
        return;
    if (inotify_add_watch(int(m_folder->socket()), folder.constData(),
                          IN_CREATE | IN_MOVED_TO | IN_CLOSE_WRITE) < 0)
        qCWarning(logPlatform, "cannot watch the zone: %s", std::strerror(errno));
    QObject::connect(m_folder.get(), &QSocketNotifier::activated, &m_context,
                     [this] { readFolder(); });
}

WallClock::~WallClock() {
    for (const auto* notifier : {&m_timer, &m_folder}) {
        if (*notifier)
            (*notifier)->setEnabled(false);
        closeDescriptor(*notifier);
    }
}

bool WallClock::wakeAt(std::optional<Moment> moment) {
    if (!m_timer)
        return false;
    // A timer must run for the kernel to tell that the clock was set.
    constexpr Moment never(milliseconds(std::numeric_limits<std::int64_t>::max() / 1'000'000));
    const auto since = moment.value_or(never).time_since_epoch();
    const auto whole = std::chrono::floor<seconds>(since);
    itimerspec when{};
    when.it_value.tv_sec = whole.count();
    when.it_value.tv_nsec = nanoseconds(since - whole).count();
    if (timerfd_settime(int(m_timer->socket()), TFD_TIMER_ABSTIME | TFD_TIMER_CANCEL_ON_SET, &when,
                        nullptr) == 0)
        return true;
    if (errno != ECANCELED)
        return false;
    // Set since the last look; the timer runs all the same, but it will not tell of this again.
    QMetaObject::invokeMethod(&m_context, m_callbacks.wasSet, Qt::QueuedConnection);
    return true;
}

void WallClock::readTimer() {
    std::uint64_t expirations = 0;
    if (read(int(m_timer->socket()), &expirations, sizeof expirations) > 0)
        m_callbacks.reached();
    else if (errno == ECANCELED)
        m_callbacks.wasSet();
}

void WallClock::readFolder() {
    bool isRelinked = false;
    alignas(inotify_event) std::array<char, 4096> events{};
    ssize_t size = 0;
    while ((size = read(int(m_folder->socket()), events.data(), events.size())) > 0) {
        for (std::size_t at = 0; at < std::size_t(size);) {
            inotify_event event{};
            std::memcpy(&event, events.data() + at, sizeof event);
            const char* const name = events.data() + at + sizeof event;
            isRelinked = isRelinked || (event.len > 0 && m_zoneLinkName == name);
            at += sizeof event + event.len;
        }
    }
    if (isRelinked)
        m_callbacks.wasSet();
}

} // namespace dorvane
