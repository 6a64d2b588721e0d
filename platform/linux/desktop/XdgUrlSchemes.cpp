// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/desktop/XdgUrlSchemes.h"

#include "platform/linux/preferences/AtomicFile.h"
#include "platform/Log.h"

#include <QDir>
#include <QFileInfo>
#include <QProcess>
#include <QStandardPaths>

#include <utility>

namespace dorvane {

namespace {

const QString tool = QStringLiteral("xdg-mime");
const QString desktopFileName = QStringLiteral("com.brackenfold.Dorvane.url.desktop");

QString typeOf(const QString& scheme) {
    return QStringLiteral("x-scheme-handler/") + scheme;
}

// The folder of the program that a desktop file starts; empty when that cannot be told.
QString bundleOf(const QString& desktopFile) {
    QFile file(QStandardPaths::locate(QStandardPaths::ApplicationsLocation, desktopFile));
    if (desktopFile.isEmpty() || !file.open(QIODevice::ReadOnly))
        return {};
    const QString exec = QStringLiteral("Exec=");
    for (const QString& line : QString::fromUtf8(file.readAll()).split(QLatin1Char('\n'))) {
        if (!line.startsWith(exec))
            continue;
        const QString command = QProcess::splitCommand(line.mid(exec.size())).value(0);
        const QString program =
            command.contains(QLatin1Char('/')) ? command : QStandardPaths::findExecutable(command);
        return QFileInfo(QFileInfo(program).canonicalFilePath()).path();
    }
    return {};
}

QByteArray desktopFile(const QString& bundlePath, const QString& scheme) {
    return QStringLiteral("[Desktop Entry]\n"
                          "Type=Application\n"
                          "Name=Dorvane\n"
                          "NoDisplay=true\n"
                          "Exec=\"%1/dorvane\" %u\n"
                          "MimeType=%2;\n")
        .arg(bundlePath, typeOf(scheme))
        .toUtf8();
}

} // namespace

XdgUrlSchemes::XdgUrlSchemes(const UserFolders& folders)
    : m_applicationsFolder(folders.data + QStringLiteral("/applications")) {}

void XdgUrlSchemes::applicationForScheme(const QString& scheme,
                                         std::function<void(const Handler&)> answer) {
    auto* process = new QProcess(&m_context);
    const auto finish = [process, answer = std::move(answer)](int status) {
        const QString file = QString::fromUtf8(process->readAllStandardOutput()).trimmed();
        process->disconnect();
        process->deleteLater();
        if (status == 0 && file.isEmpty())
            status = 4; // what the tool itself says when it does not succeed
        answer({.status = status, .bundlePath = status == 0 ? bundleOf(file) : QString()});
    };
    QObject::connect(process, &QProcess::errorOccurred, process, [finish] { finish(-1); });
    QObject::connect(process, &QProcess::finished, process, [finish](int code) { finish(code); });
    process->setStandardErrorFile(QProcess::nullDevice());
    process->start(tool, {QStringLiteral("query"), QStringLiteral("default"), typeOf(scheme)});
}

void XdgUrlSchemes::registerBundle(const QString& bundlePath, const QString& scheme) {
    QDir().mkpath(m_applicationsFolder);
    const auto error = writeFileAtomically(
        m_applicationsFolder + QLatin1Char('/') + desktopFileName, desktopFile(bundlePath, scheme));
    const QStringList arguments{QStringLiteral("default"), desktopFileName, typeOf(scheme)};
    QProcess process;
    process.setProgram(tool);
    process.setArguments(arguments);
    process.setStandardErrorFile(QProcess::nullDevice());
    if (error || !process.startDetached())
        qCWarning(logPlatform).noquote()
            << "cannot register for" << scheme << "addresses" << error.value_or(QString());
}

} // namespace dorvane
