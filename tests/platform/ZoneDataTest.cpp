// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/session/ZoneData.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

using namespace dorvane;

namespace {

// A machine that knows Berlin only.
TEST(ZoneDataTest, tellsOfAZoneThatIsSetAndNotThere) {
    const struct {
        const char* what;
        std::optional<QByteArray> variable;
        const char* link; // where it leads in the folder of zones; null: there is none
        const char* name; // what stands in the file; null: there is none
        const char* missing = nullptr;
    } cases[] = {
        {"TZ, there", "Europe/Berlin", nullptr, nullptr},
        {"TZ, there, as a path", ":Europe/Berlin", nullptr, nullptr},
        {"TZ, not there", "Asia/Tokyo", "Europe/Berlin", nullptr, "Asia/Tokyo"},
        {"TZ of three letters is a name", "CET", nullptr, nullptr, "CET"},
        {"TZ that needs no data", "CET-1CEST,M3.5.0,M10.5.0/3", nullptr, nullptr},
        {"TZ, a fixed offset", "<+0330>-3:30", nullptr, nullptr},
        {"TZ, empty", "", nullptr, "Asia/Tokyo"},
        {"TZ, UTC", "Etc/UTC", nullptr, nullptr},
        {"link, there", std::nullopt, "Europe/Berlin", "Asia/Tokyo"},
        {"link, not there", std::nullopt, "Asia/Tokyo", nullptr, "Asia/Tokyo"},
        {"link to UTC, not there", std::nullopt, "Etc/UTC", nullptr},
        {"a name alone", std::nullopt, nullptr, "Asia/Tokyo", "Asia/Tokyo"},
        {"nothing set", std::nullopt, nullptr, nullptr},
    };
    for (const auto& c : cases) {
        const QTemporaryDir root;
        ZoneSources sources{.variable = c.variable,
                            .link = root.filePath(QStringLiteral("localtime")),
                            .name = root.filePath(QStringLiteral("timezone")),
                            .folder = root.filePath(QStringLiteral("zoneinfo"))};
        QDir().mkpath(sources.folder + QStringLiteral("/Europe"));
        EXPECT_TRUE(QFile(sources.folder + QStringLiteral("/Europe/Berlin")).open(QFile::NewOnly));
        if (c.link)
            QFile::link(sources.folder + QLatin1Char('/') + QLatin1String(c.link), sources.link);
        if (QFile file(sources.name); c.name && file.open(QFile::WriteOnly))
            file.write(QByteArray(c.name) + '\n');
        EXPECT_EQ(zoneWithoutData(sources).value_or(QString()), QString::fromLatin1(c.missing))
            << c.what;
    }
}

} // namespace
