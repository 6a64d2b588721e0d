// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/network/ModuleDocumentFetcher.h"
#include "platform/linux/session/QtRunLoop.h"
#include "tests/support/Testing.h"

#include <QTest>

using namespace dorvane::testing;

namespace {

// To be run by tests/support/tls-rig.
TEST(NetworkTest, takesShortDocumentsFromTrustedServersOnly) {
    const QString server = qEnvironmentVariable("DORVANE_TLS_SERVER");
    const QString stranger = qEnvironmentVariable("DORVANE_TLS_STRANGER");
    const auto redirection = [&](const QString& target) { return server + u"/to?"_qs + target; };
    const struct {
        QString url;
        QByteArray document;
        const char* error;
    } rows[] = {
        {server + u"/feed"_qs, "a feed", ""},
        {redirection(server + u"/feed"_qs), "a feed", ""},
        {redirection(QString(server).replace(u"https"_qs, u"http"_qs) + u"/feed"_qs),
         {},
         "Insecure redirect"},
        {redirection(u"file:///etc/hostname"_qs), {}, "protocol"},
        {redirection(u"/to?/to?/to?/to?/to?/to?/feed"_qs), {}, "redirects"},
        {redirection(stranger + u"/feed"_qs), {}, "self-signed"},
        {stranger + u"/feed"_qs, {}, "self-signed"},
        {server + u"/flood"_qs, {}, "the document is too long"},
        {server + u"/nothing"_qs, {}, "Not Found"},
        {u"http://localhost/feed"_qs, {}, "only https and file"},
        {u"https://localhost:1/feed"_qs, {}, "refused"},
    };
    QtRunLoop loop;
    ModuleDocumentFetcher fetcher(loop, QStringLiteral(DORVANE_NETWORK_MODULE));
    for (const auto& [url, document, error] : rows) {
        std::optional<DocumentFetcher::Answer> answer;
        fetcher.fetch(QUrl(url), [&](const auto& given) { answer = given; });
        ASSERT_TRUE(QTest::qWaitFor([&] { return answer.has_value(); })) << qPrintable(url);
        EXPECT_EQ(answer->document.toStdString(), document.toStdString()) << qPrintable(url);
        EXPECT_THAT(answer->error.toStdString(), ::testing::HasSubstr(error)) << qPrintable(url);
        EXPECT_EQ(answer->error.isEmpty(), error[0] == '\0') << qPrintable(url);
    }
}

} // namespace
