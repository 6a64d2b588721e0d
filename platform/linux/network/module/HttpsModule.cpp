// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/network/NetworkModule.h"

#include <QDeadlineTimer>
#include <QEventLoop>
#include <QNetworkAccessManager>
#include <QNetworkProxyFactory>
#include <QNetworkReply>
#include <QNetworkRequest>

#include <memory>

namespace dorvane {

namespace {

using Answer = DocumentFetcher::Answer;

constexpr int longestSilence = 15'000; // milliseconds
constexpr int longestWait = 30'000;
constexpr int mostRedirections = 5;

QNetworkRequest requestFor(const QUrl& url) {
    QNetworkRequest request(url);
    request.setAttribute(QNetworkRequest::RedirectPolicyAttribute,
                         QNetworkRequest::NoLessSafeRedirectPolicy);
    request.setAttribute(QNetworkRequest::CookieSaveControlAttribute, QNetworkRequest::Manual);
    request.setMaximumRedirectsAllowed(mostRedirections);
    request.setTransferTimeout(longestSilence);
    // Or a little that is packed becomes a lot that is not.
    request.setRawHeader("Accept-Encoding", "identity");
    return request;
}

class HttpsModule final : public NetworkModule {
public:
    HttpsModule() { QNetworkProxyFactory::setUseSystemConfiguration(true); }

    [[nodiscard]] Answer get(const QUrl& url) const override {
        QNetworkAccessManager manager;
        const std::unique_ptr<QNetworkReply> reply(manager.get(requestFor(url)));
        const QDeadlineTimer deadline(longestWait);
        Answer answer;
        const auto read = [&] {
            answer.document += reply->readAll();
            if (answer.document.size() > DocumentFetcher::longestDocument)
                answer.error = QStringLiteral("the document is too long");
            else if (deadline.hasExpired())
                answer.error = QStringLiteral("the server takes too long");
            if (!answer.error.isEmpty())
                reply->abort();
        };
        QEventLoop loop; // of this thread, which has nothing else to do
        QObject::connect(reply.get(), &QNetworkReply::readyRead, &loop, read);
        QObject::connect(reply.get(), &QNetworkReply::finished, &loop, &QEventLoop::quit);
        if (!reply->isFinished())
            loop.exec();
        if (answer.error.isEmpty() && reply->error() != QNetworkReply::NoError)
            answer.error = reply->errorString();
        if (!answer.error.isEmpty())
            answer.document.clear();
        return answer;
    }
};

} // namespace

} // namespace dorvane

extern "C" Q_DECL_EXPORT dorvane::NetworkModule* dorvaneNetworkModule() {
    return new dorvane::HttpsModule;
}
