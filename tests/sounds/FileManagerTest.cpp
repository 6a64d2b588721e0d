// SPDX-License-Identifier: GPL-3.0-or-later
#include "sounds/FileManager.h"

#include "sounds/DictionaryWithURL.h"
#include "tests/sounds/SoundLibraryFixture.h"
#include "tests/support/FakePropertyListFormat.h"
#include "tests/support/LogCapture.h"

#include <csignal>
#include <sys/resource.h>
#include <sys/stat.h>

namespace dorvane::testing {
namespace {

class CopyItem : public SoundLibraryFixture {};

// Lets no file of this process grow beyond a size, as a full disk would.
class FullDisk {
public:
    FullDisk() : m_handler(std::signal(SIGXFSZ, SIG_IGN)) {
        getrlimit(RLIMIT_FSIZE, &m_limit);
        const rlimit small{100'000, m_limit.rlim_max};
        setrlimit(RLIMIT_FSIZE, &small);
    }
    FullDisk(const FullDisk&) = delete;
    FullDisk& operator=(const FullDisk&) = delete;
    ~FullDisk() {
        setrlimit(RLIMIT_FSIZE, &m_limit);
        std::signal(SIGXFSZ, m_handler);
    }

private:
    rlimit m_limit{};
    void (*m_handler)(int);
};

TEST_F(CopyItem, LeavesAWholeFileOrNothing) {
    const QString to = path("to/sound.aiff");
    QDir().mkpath(path("to"));
    const QByteArray large(300'000, 'x');
    write(path("large"), large);
    write(path("empty"), {});
    ASSERT_EQ(mkfifo(qPrintable(path("pipe")), 0600), 0);
    std::stop_source stopped;
    stopped.request_stop();

    EXPECT_FALSE(copyItem(path("missing"), to));
    EXPECT_FALSE(copyItem(path("empty"), to));
    EXPECT_FALSE(copyItem(path("pipe"), to)) << "must not wait for a writer either";
    EXPECT_FALSE(copyItem(path("large"), to, stopped.get_token()));
    {
        const FullDisk full;
        EXPECT_FALSE(copyItem(path("large"), to));
    }
    EXPECT_EQ(held(path("to")), QStringList());

    write(to, {});
    EXPECT_TRUE(copyItem(path("large"), to)) << "in the place of a copy that a power cut emptied";
    write(path("small"), "y");
    EXPECT_FALSE(copyItem(path("small"), to)) << "the name is taken";
    EXPECT_EQ(held(path("to")), QStringList(u"sound.aiff="_qs + QString::fromUtf8(large)));
}

TEST_F(CopyItem, FindsAFreeNameAmongAHundred) {
    const QDateTime now(QDate(2001, 1, 2), QTime(0, 0), Qt::UTC);
    const auto name = [&](int i) { return dir.filePath(u"86400%1.aiff"_qs.arg(i)); };
    for (int i = 0; i < 100; ++i) {
        EXPECT_EQ(uniqueFileInDirectory(dir.path(), u"aiff"_qs, now), name(i));
        write(name(i), {});
    }
    EXPECT_EQ(uniqueFileInDirectory(dir.path(), u"aiff"_qs, now), std::nullopt);
}

TEST_F(CopyItem, ReadsDictionariesFromFilesAndDataAddresses) {
    const FakePropertyListFormat format;
    const QVariantMap expected{{u"a"_qs, 1.0}};
    write(path("list.plist"), R"({"a": 1})");
    struct {
        QString address;
        std::optional<QVariantMap> read;
        qsizetype warnings;
    } const cases[] = {
        {u"file://"_qs + path("list.plist"), expected, 0},
        {u"data:,%7B%22a%22:%201%7D"_qs, expected, 0},
        {u"data:text/plain;base64,eyJhIjogMX0="_qs, expected, 0},
        {u"data:,[1]"_qs, {}, 0},
        {u"data:nothing"_qs, {}, 0},
        {u"file:///missing"_qs, {}, 1},
        {u"http://example.org/list.plist"_qs, {}, 1},
    };
    for (const auto& [address, read, warnings] : cases) {
        const LogCapture log;
        EXPECT_EQ(dictionaryWithContentsOfURLUnzipped(QUrl(address), format), read)
            << qPrintable(address);
        EXPECT_EQ(log.messages().size(), warnings) << qPrintable(address);
    }
}

} // namespace
} // namespace dorvane::testing
