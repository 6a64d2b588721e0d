// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/support/LogCapture.h"

#include <QMutex>

#include <gtest/gtest.h>

namespace dorvane::testing {

namespace {

// Messages come from other threads too.
QMutex mutex;
bool capturing = false;
QStringList captured;

void handle(QtMsgType type, const QMessageLogContext& context, const QString& text) {
    const QString line = QString::fromUtf8(context.category) + u": "_qs + text;
    const QMutexLocker lock(&mutex);
    if (capturing) {
        captured << line;
        return;
    }
    if (text.contains(u"This plugin does not support"_qs))
        return; // noise of the offscreen platform
    if (type == QtWarningMsg || type == QtCriticalMsg)
        ADD_FAILURE() << "unexpected warning: " << qPrintable(line);
    else
        fprintf(stderr, "%s\n", qPrintable(line));
    if (type == QtFatalMsg)
        abort();
}

} // namespace

LogCapture::LogCapture() {
    const QMutexLocker lock(&mutex);
    capturing = true;
    captured.clear();
}

LogCapture::~LogCapture() {
    const QMutexLocker lock(&mutex);
    capturing = false;
}

QStringList LogCapture::messages() const {
    const QMutexLocker lock(&mutex);
    return captured;
}

void LogCapture::install() {
    qInstallMessageHandler(handle);
}

} // namespace dorvane::testing
