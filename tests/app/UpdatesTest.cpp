// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/UpdateChecker.h"
#include "platform/linux/network/ModuleDocumentFetcher.h"
#include "platform/linux/session/QtRunLoop.h"
#include "tests/support/Files.h"
#include "tests/support/MemoryDefaults.h"
#include "tests/support/Windows.h"

using namespace dorvane::testing;

namespace {

// What a feed of releases looks like.
QByteArray feedOf(const QByteArray& version, const QByteArray& link = "https://a.org/") {
    return "{\"version\":\"" + version + "\",\"link\":\"" + link + "\"}";
}

TEST(UpdatesTest, believesAFeedOnlyWhatItCanProve) {
    const char* const noFeed = "what the server sent is no feed";
    const char* const noVersion = "the feed names no version";
    const char* const noLink = "the feed has no https link";
    const std::pair<QByteArray, const char*> rows[] = {
        {feedOf("1.10"), ""},
        {"", noFeed},
        {QByteArray(60'000, '['), noFeed},
        {"{\"version\":9.9,\"link\":\"https://a.org/\"}", noVersion},
        {feedOf("9.9 <a href='x'>"), noVersion},
        {feedOf("9.9\\n"), noVersion},
        {feedOf("999999.1"), noVersion},
        {feedOf("9.9", "http://a.org/"), noLink},
        {feedOf("9.9", "javascript:alert(1)"), noLink},
        {feedOf("9.9", "https://good.org@bad.org/"), noLink},
        {feedOf("9.9", "https:///a"), noLink},
        {feedOf("9.9", "https://a.org/" + QByteArray(500, 'a')), noLink},
    };
    for (const auto& [feed, fault] : rows) {
        QString reason;
        EXPECT_EQ(releaseInFeed(feed, reason).has_value(), *fault == '\0');
        EXPECT_EQ(reason, QLatin1String(fault)) << feed.left(80).constData();
    }
}

// Version 1.2.0 and a feed in a file.
TEST(UpdatesTest, isToldOfAVersionOnceAndLooksNowhereElse) {
    const QTemporaryDir root;
    const QString path = root.filePath(u"feed.json"_qs);
    QtRunLoop loop;
    ModuleDocumentFetcher fetcher(loop, u"/nowhere/dorvane_network.so"_qs);
    MemoryDefaults defaults;
    QStringList found;
    const auto checker = [&](const QString& feed) {
        return UpdateChecker({.fetcher = fetcher,
                              .defaults = defaults,
                              .feed = feed,
                              .version = u"1.2.0"_qs,
                              .found = [&](const Release& release) { found << release.version; }});
    };
    UpdateChecker updates = checker(QUrl::fromLocalFile(path).toString());
    LogCapture log;
    for (const char* version : {"1.2", "1.3.0", "1.3.0", "nonsense", "1.10"}) {
        writeFile(path, feedOf(version));
        updates.checkForUpdatesInBackground();
        bool isDone = false;
        updates.checkForUpdates([&](const UpdateResult&) { isDone = true; });
        EXPECT_TRUE(QTest::qWaitFor([&] { return isDone; }));
    }
    EXPECT_EQ(found, (QStringList{u"1.3.0"_qs, u"1.10"_qs}));
    EXPECT_EQ(log.messages(),
              QStringList(u"dorvane.app: cannot look for updates: the feed names no version"_qs));

    for (const auto& feed : {u""_qs, u"http://a.org/f"_qs, u"file://server/f"_qs, u"/tmp/f"_qs})
        EXPECT_FALSE(checker(feed).isOn()) << qPrintable(feed);
    EXPECT_EQ(log.messages().size(), 4) << "one line for each that is no feed, none for none";
}

} // namespace
