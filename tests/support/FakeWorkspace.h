// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/Workspace.h"
#include "tests/support/Trace.h"

#include <QMimeDatabase>

namespace dorvane::testing {

// Opens nothing, finds out what a file is as the desktop does, and writes "reveal <path>" to the
// trace.
class FakeWorkspace final : public Workspace {
public:
    explicit FakeWorkspace(Trace& trace) : m_trace(trace) {}

    void openUrl(const QUrl&) override {}
    void reveal(const QString& path) override { m_trace.add(u"reveal "_qs + path); }
    [[nodiscard]] QString typeOfFile(const QString& path) const override {
        return QMimeDatabase().mimeTypeForFile(path).name();
    }

private:
    Trace& m_trace;
};

} // namespace dorvane::testing
