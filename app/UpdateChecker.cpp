// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/UpdateChecker.h"

#include "platform/DocumentFetcher.h"
#include "platform/Log.h"
#include "platform/UserDefaults.h"

#include <utility>

namespace dorvane {

namespace {

const auto toldKey = QStringLiteral("UpdateToldVersion");

} // namespace

UpdateChecker::UpdateChecker(Surroundings surroundings)
    : m_surroundings(std::move(surroundings)), m_feed(m_surroundings.feed, QUrl::StrictMode) {
    if (!m_surroundings.feed.isEmpty() && !isOn())
        qCWarning(logApp).noquote()
            << "no updates are looked for: not an https or file address:" << m_surroundings.feed;
}

void UpdateChecker::checkForUpdates(std::function<void(const UpdateResult& result)> told) {
    m_waiting.push_back(std::move(told));
    if (m_waiting.size() == 1)
        m_surroundings.fetcher.fetch(m_feed, [this](const DocumentFetcher::Answer& answer) {
            tell(answer.error.isEmpty() ? read(answer.document) : UpdateResult{{}, answer.error});
        });
}

void UpdateChecker::checkForUpdatesInBackground() {
    if (!isOn())
        return;
    checkForUpdates([this](const UpdateResult& result) {
        if (!result.fault.isEmpty())
            qCInfo(logApp).noquote() << "cannot look for updates:" << result.fault;
        if (!result.newer || m_surroundings.defaults.value(toldKey) == result.newer->version)
            return;
        m_surroundings.defaults.setValue(toldKey, result.newer->version);
        m_surroundings.defaults.synchronize();
        m_surroundings.found(*result.newer);
    });
}

UpdateResult UpdateChecker::read(const QByteArray& feed) const {
    UpdateResult result;
    result.newer = releaseInFeed(feed, result.fault);
    if (result.newer && !isNewer(result.newer->version, m_surroundings.version))
        result.newer.reset();
    return result;
}

void UpdateChecker::tell(const UpdateResult& result) {
    for (const auto& told : std::exchange(m_waiting, {}))
        told(result);
}

} // namespace dorvane
