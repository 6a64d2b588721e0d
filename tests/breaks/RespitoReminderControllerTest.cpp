// SPDX-License-Identifier: GPL-3.0-or-later
#include "breaks/RespitoReminderController.h"

#include "platform/Bundle.h"
#include "sounds/ReminderStrings.h"
#include "tests/support/FakeDesktop.h"
#include "tests/support/Windows.h"

using namespace dorvane::testing;

namespace {

// One window for good: what was recorded in it is kept, what was discarded is not, and it opens
// again after it was closed.
using RespitoReminderTest = FakeDesktopTest;

TEST_F(RespitoReminderTest, recordsWithOneButtonAndOpensAgain) {
    const Bundle bundle{QStringLiteral(DORVANE_BUNDLE), {}};
    const auto controller = RespitoReminderController::create(
        {loop, notifications, recorder, player, workspace, bundle, user,
         [](const QString& path) { return path.endsWith(u".aiff"_qs); },
         [](const QString&) { return QStringList(); }});
    for (const char* title : {"Stand up", "Sit down"}) {
        {
            const LogCapture platformNotes; // of the offscreen platform
            controller->show();
        }
        QWidget* const window = windowsNamed("RespitoReminderController").value(0);
        ASSERT_NE(window, nullptr);
        EXPECT_EQ(window->windowTitle(), u"Record Break Sound"_qs);
        auto& record = *window->findChild<QAbstractButton*>(u"recordButton"_qs);
        auto& name = *window->findChild<QLineEdit*>(u"reminderTitle"_qs);
        name.clear();
        EXPECT_FALSE(record.isEnabled());
        name.setText(QString::fromLatin1(title));
        record.click();
        loop.advance(1s);
        record.click();
        loop.runPending();
        EXPECT_EQ(controller->reminderString(), QString::fromLatin1(title));
        controller->acceptReminder();
        EXPECT_FALSE(window->isVisible());
        loop.runPending();
    }
    EXPECT_EQ(QDir(ReminderStrings::soundDirectory(user)).entryList(QDir::Files, QDir::Name),
              QStringList({u"Sit down.aiff"_qs, u"Stand up.aiff"_qs}));
}

} // namespace
