// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/network/ModuleDocumentFetcher.h"

#include <QFile>
#include <QFileInfo>
#include <QLibrary>

#include <utility>

namespace dorvane {

namespace {

DocumentFetcher::Answer contentsOf(const QString& path) {
    // Opening a pipe would wait for whoever writes to it.
    if (!QFileInfo(path).isFile())
        return {{}, QStringLiteral("%1 is not a file").arg(path)};
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return {{}, file.errorString()};
    const QByteArray document = file.read(DocumentFetcher::longestDocument + 1);
    if (document.size() > DocumentFetcher::longestDocument)
        return {{}, QStringLiteral("the document is too long")};
    return {document, {}};
}

} // namespace

ModuleDocumentFetcher::ModuleDocumentFetcher(RunLoop& loop, QString modulePath)
    : m_loop(loop), m_modulePath(std::move(modulePath)) {
    m_worker.setMaxThreadCount(1);
    m_worker.setObjectName(QStringLiteral("network"));
}

ModuleDocumentFetcher::~ModuleDocumentFetcher() {
    m_worker.clear();
    m_worker.waitForDone();
}

void ModuleDocumentFetcher::fetch(const QUrl& url, std::function<void(const Answer&)> answer) {
    m_worker.start([this, url, answer = std::move(answer)] {
        m_loop.post(m_lifeline.guard(
            [answer, fetched = get(url)](ModuleDocumentFetcher&) { answer(fetched); }));
    });
}

DocumentFetcher::Answer ModuleDocumentFetcher::get(const QUrl& url) {
    if (url.isLocalFile())
        return contentsOf(url.toLocalFile());
    if (url.scheme() != QStringLiteral("https"))
        return {{}, QStringLiteral("only https and file addresses are fetched")};
    if (!m_module) {
        QLibrary library(m_modulePath);
        const auto entry =
            reinterpret_cast<NetworkModuleEntry>(library.resolve(networkModuleEntryName));
        if (!entry)
            return {{}, library.errorString()};
        m_module.reset(entry());
    }
    return m_module->get(url);
}

} // namespace dorvane
