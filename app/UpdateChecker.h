// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/UpdateFeed.h"

#include <functional>
#include <vector>

namespace dorvane {

class DocumentFetcher;
class UserDefaults;

// What one look has found. Without a newer release and without a fault, this is the newest.
struct UpdateResult {
    std::optional<Release> newer;
    QString fault; // in words for the user
};

// Looks into the feed of releases, if whoever distributes the program has named one; without a feed
// updates are the package manager's business. Tells of a newer version and where it is; downloads
// and runs nothing. Main thread only.
class UpdateChecker final {
public:
    struct Surroundings {
        DocumentFetcher& fetcher;
        UserDefaults& defaults;
        QString feed; // as the information file has it
        QString version;
        std::function<void(const Release& release)> found;
    };

    // All of the surroundings must outlive the object.
    explicit UpdateChecker(Surroundings surroundings);

    // Whether there is a feed to look into.
    [[nodiscard]] bool isOn() const { return isFeedAddress(m_feed); }

    // Looks at the user's request. Whoever asks while a look is on its way gets its result.
    void checkForUpdates(std::function<void(const UpdateResult& result)> told);

    // Looks without being asked: says nothing but `found`, and that once for a version. Does
    // nothing without a feed.
    void checkForUpdatesInBackground();

private:
    [[nodiscard]] UpdateResult read(const QByteArray& feed) const;
    void tell(const UpdateResult& result);

    Surroundings m_surroundings;
    QUrl m_feed;
    std::vector<std::function<void(const UpdateResult&)>> m_waiting;
};

} // namespace dorvane
