// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>

#include <ctime>

namespace dorvane::testing {

// Makes the local time that of another zone while it lives.
class ZoneScope {
public:
    explicit ZoneScope(const char* zone) : m_before(qgetenv("TZ")) { set(zone); }
    ~ZoneScope() { set(m_before); }
    void change(const char* zone) { set(zone); }
    ZoneScope(const ZoneScope&) = delete;
    ZoneScope& operator=(const ZoneScope&) = delete;

private:
    static void set(const QByteArray& zone) {
        qputenv("TZ", zone);
        tzset();
    }

    QByteArray m_before;
};

} // namespace dorvane::testing
