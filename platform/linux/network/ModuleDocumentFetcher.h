// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/DocumentFetcher.h"
#include "platform/Lifeline.h"
#include "platform/linux/network/NetworkModule.h"
#include "platform/RunLoop.h"

#include <QThreadPool>

#include <memory>

namespace dorvane {

// Reads files itself and leaves https: to a module that is loaded for the first of its addresses,
// both on a thread of its own.
class ModuleDocumentFetcher final : public DocumentFetcher {
public:
    // The run loop must outlive the object.
    ModuleDocumentFetcher(RunLoop& loop, QString modulePath);
    // Waits for a fetch that is on its way.
    ~ModuleDocumentFetcher() override;

    void fetch(const QUrl& url, std::function<void(const Answer&)> answer) override;

private:
    [[nodiscard]] Answer get(const QUrl& url);

    RunLoop& m_loop;
    QString m_modulePath;
    std::unique_ptr<NetworkModule> m_module; // the worker's
    QThreadPool m_worker;
    Lifeline<ModuleDocumentFetcher> m_lifeline{*this};
};

} // namespace dorvane
