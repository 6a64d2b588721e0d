// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

#include <functional>
#include <memory>
#include <vector>

namespace dorvane {

// One notification of the desktop's that can be answered and taken back. Destroying it takes it
// back. Main thread only.
class Notice {
public:
    struct Action {
        QString key;
        QString label; // plain text
    };

    virtual ~Notice() = default;

    // Takes the place of the one before; a desktop that shows none is told of in the log. `chosen`
    // is called with the key of the action that somebody chose.
    virtual void show(const QString& title, const QString& text, const std::vector<Action>& actions,
                      std::function<void(const QString& key)> chosen) = 0;
    virtual void withdraw() = 0;
};

// Makes one that is not shown yet.
using MakeNotice = std::function<std::unique_ptr<Notice>()>;

} // namespace dorvane
