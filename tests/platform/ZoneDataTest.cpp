// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/session/ZoneData.h"

#include "tests/support/Files.h"
#include "tests/support/Testing.h"

using namespace dorvane::testing;

namespace {

// A machine that knows Berlin only.
TEST(ZoneDataTest, tellsOfAZoneThatIsSetAndNotThere) {
    const struct {
        const char* expected;               // null: all is well
        std::optional<QByteArray> variable; // TZ
        const char* link = nullptr;         // where it leads in the folder of zones
        const char* name = nullptr;         // what stands in the file
    } cases[] = {
        {nullptr, "Europe/Berlin"},
        {nullptr, ":Europe/Berlin"},
        {"Asia/Tokyo", "Asia/Tokyo", "Europe/Berlin"},
        {"CET", "CET"},
        {nullptr, "CET-1CEST,M3.5.0,M10.5.0/3"}, // needs no data
        {nullptr, "", nullptr, "Asia/Tokyo"},
        {nullptr, "Etc/UTC"},
        {nullptr, std::nullopt, "Europe/Berlin", "Asia/Tokyo"},
        {"Asia/Tokyo", std::nullopt, "Asia/Tokyo"},
        {"Asia/Tokyo", std::nullopt, nullptr, "Asia/Tokyo"},
        {nullptr, std::nullopt},
    };
    for (const auto& c : cases) {
        const QTemporaryDir root;
        ZoneSources sources{.variable = c.variable,
                            .link = root.filePath(u"localtime"_qs),
                            .name = root.filePath(u"timezone"_qs),
                            .folder = root.filePath(u"zoneinfo"_qs)};
        writeFile(sources.folder + u"/Europe/Berlin"_qs);
        if (c.link)
            QFile::link(sources.folder + u'/' + QLatin1String(c.link), sources.link);
        if (c.name)
            writeFile(sources.name, QByteArray(c.name) + '\n');
        EXPECT_EQ(zoneWithoutData(sources).value_or(QString()), QString::fromLatin1(c.expected))
            << &c - cases;
    }
}

} // namespace
