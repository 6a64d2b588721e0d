// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/support/LogCapture.h"

#include <QApplication>
#include <QStandardPaths>
#include <QTemporaryDir>

#include <gtest/gtest.h>

// Unit tests need no display, no session bus and nothing of the user's: an offscreen platform, a
// home of their own, English texts and a fixed zone unless the caller chose one.
int main(int argc, char** argv) {
    const QTemporaryDir home;
    const auto set = [](const char* name, const QByteArray& value) { qputenv(name, value); };
    set("HOME", home.path().toUtf8());
    set("XDG_RUNTIME_DIR", home.path().toUtf8()); // a temporary folder is private already
    for (const char* name : {"XDG_CONFIG_HOME", "XDG_CACHE_HOME", "XDG_DATA_HOME"})
        set(name, (home.path() + u"/"_qs + QLatin1String(name)).toUtf8());
    set("QT_QPA_PLATFORM", "offscreen");
    set("LC_ALL", "C.UTF-8");
    if (!qEnvironmentVariableIsSet("TZ"))
        set("TZ", "Europe/Berlin");

    ::testing::InitGoogleTest(&argc, argv);
    dorvane::testing::LogCapture::install();
    QApplication application(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    return RUN_ALL_TESTS();
}
