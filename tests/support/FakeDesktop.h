// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/NotificationCenter.h"
#include "platform/UserFolders.h"
#include "platform/Workspace.h"
#include "tests/support/FakeAudioRecorder.h"
#include "tests/support/FakeSoundPlayer.h"
#include "tests/support/FakeSpeechService.h"
#include "tests/support/Testing.h"

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

// What the parts of the program are given: virtual time, a folder that is all the user has, and
// fakes that write to one trace.
struct FakeDesktop {
    explicit FakeDesktop(const char* now = "11-24 07:30") : loop(at(now)) {}

    [[nodiscard]] QString path(const char* relative) const {
        return home.path() + u'/' + QString::fromUtf8(relative);
    }

    QTemporaryDir home;
    const UserFolders user{home.path(), home.path(), home.path(), path("share")};
    VirtualRunLoop loop;
    Trace trace{loop};
    FakeSoundPlayer player{loop, trace};
    FakeSpeechService speech{loop, trace};
    FakeAudioRecorder recorder{loop, trace};
    FakeWorkspace workspace{trace};
    NotificationCenter notifications;
};

class FakeDesktopTest : public ::testing::Test, protected FakeDesktop {
protected:
    using FakeDesktop::FakeDesktop;
};

} // namespace dorvane::testing
