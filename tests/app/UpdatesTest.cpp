// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/LaunchAtLoginController.h"
#include "app/PrefController.h"
#include "app/UpdateChecker.h"
#include "app/URLTextField.h"
#include "platform/Bundle.h"
#include "platform/linux/network/ModuleDocumentFetcher.h"
#include "platform/linux/session/AutostartLoginItems.h"
#include "platform/linux/session/QtRunLoop.h"
#include "tests/support/Files.h"
#include "tests/support/MemoryDefaults.h"
#include "tests/support/Windows.h"

using namespace dorvane::testing;

namespace {

// Version 1.2.0 and a feed in a file.
class UpdatesTest : public ::testing::Test {
protected:
    UpdateChecker checker(const QString& feed) {
        return UpdateChecker(
            {.fetcher = m_fetcher,
             .defaults = m_defaults,
             .feed = feed,
             .version = u"1.2.0"_qs,
             .found = [this](const Release& release) { m_found << release.version; }});
    }

    // What the preferences say after the button was pressed, and the link that they show.
    std::string lookFrom(PrefController& preferences) {
        const auto& window = preferences.prefsWindow();
        auto& button = *window.findChild<QPushButton*>(u"updateButton"_qs);
        button.click();
        EXPECT_FALSE(button.isEnabled());
        EXPECT_TRUE(QTest::qWaitFor([&] { return button.isEnabled(); }));
        const auto& link = *window.findChild<URLTextField*>(u"updateField"_qs);
        const auto text = window.findChild<QLabel*>(u"updateStatus"_qs)->text().toStdString();
        return link.isVisible() ? text + " " + link.url().toString().toStdString() : text;
    }

    QTemporaryDir m_root;
    QString m_path = m_root.filePath(u"feed.json"_qs);
    QtRunLoop m_loop;
    ModuleDocumentFetcher m_fetcher{m_loop, u"/nowhere/dorvane_network.so"_qs};
    MemoryDefaults m_defaults;
    QStringList m_found;
};

TEST_F(UpdatesTest, believesAFeedOnlyWhatItCanProve) {
    const char* const noFeed = "what the server sent is no feed";
    const char* const noVersion = "the feed names no version";
    const char* const noLink = "the feed has no https link";
    const char* const newest = "this is the newest version";
    const auto with = [](const QByteArray& version, const QByteArray& link = "https://a.org/") {
        return "{\"version\":\"" + version + "\",\"link\":\"" + link + "\"}";
    };
    const struct {
        QByteArray feed;
        std::string answer;
    } rows[] = {
        {with("1.10"), "version 1.10 is available https://a.org/"},
        {with("1.2.0.1"), "version 1.2.0.1 is available https://a.org/"},
        {with("1.2"), newest},
        {with("1.1.99"), newest},
        {"", noFeed},
        {"<!DOCTYPE a [<!ENTITY b \"b\">]><a>&b;</a>", noFeed},
        {QByteArray(60'000, '['), noFeed},
        {with("9.9") + QByteArray(70'000, ' '), "the document is too long"},
        {"{\"version\":9.9,\"link\":\"https://a.org/\"}", noVersion},
        {with("9.9 <a href='x'>"), noVersion},
        {with("9.9\\n"), noVersion},
        {with("999999.1"), noVersion},
        {with("9.9", "http://a.org/"), noLink},
        {with("9.9", "javascript:alert(1)"), noLink},
        {with("9.9", "https://good.org@bad.org/"), noLink},
        {with("9.9", "https:///a"), noLink},
        {with("9.9", "https://a.org/" + QByteArray(500, 'a')), noLink},
    };
    AutostartLoginItems items(
        {.home = {}, .caches = {}, .configuration = m_root.path(), .data = {}});
    LaunchAtLoginController login(items, m_root.path());
    const Bundle bundle(m_root.path(), {});
    UpdateChecker updates = checker(QUrl::fromLocalFile(m_path).toString());
    PrefController preferences(
        {.bundle = bundle,
         .launchAtLogin = login,
         .manual = {},
         .openUrl = {},
         .checkForUpdates = [&](auto told) { updates.checkForUpdates(std::move(told)); },
         .wakesComputer = [] { return false; },
         .setWakesComputer = {},
         .canWakeComputer = [] { return true; },
         .checkRinging = {},
         .openBreaks = {}});
    preferences.show();
    EXPECT_EQ(lookFrom(preferences), m_path.toStdString() + " is not a file");
    for (const auto& [feed, answer] : rows) {
        writeFile(m_path, feed);
        EXPECT_EQ(lookFrom(preferences), answer) << feed.left(80).constData();
    }
}

TEST_F(UpdatesTest, isToldOfAVersionOnceAndLooksNowhereElse) {
    UpdateChecker updates = checker(QUrl::fromLocalFile(m_path).toString());
    LogCapture log;
    const auto look = [&](const QByteArray& version) {
        writeFile(m_path, "{\"version\":\"" + version + "\",\"link\":\"https://a.org/\"}");
        updates.checkForUpdatesInBackground();
        bool isDone = false;
        updates.checkForUpdates([&](const UpdateResult&) { isDone = true; });
        EXPECT_TRUE(QTest::qWaitFor([&] { return isDone; }));
    };
    for (const char* version : {"1.2.0", "1.3.0", "1.3.0", "nonsense", "1.4.0"})
        look(version);
    EXPECT_EQ(m_found, (QStringList{u"1.3.0"_qs, u"1.4.0"_qs}));
    EXPECT_EQ(log.messages(),
              QStringList(u"dorvane.app: cannot look for updates: the feed names no version"_qs));

    for (const auto& feed : {u""_qs, u"http://a.org/f"_qs, u"file://server/f"_qs, u"/tmp/f"_qs})
        EXPECT_FALSE(checker(feed).isOn()) << qPrintable(feed);
    EXPECT_EQ(log.messages().size(), 4) << "one line for each that is no feed, none for none";
}

} // namespace
