// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/desktop/XdgUrlSchemes.h"

#include "platform/linux/desktop/DesktopExec.h"
#include "platform/linux/preferences/AtomicFile.h"
#include "platform/Log.h"

#include <QDir>
#include <QFileInfo>
#include <QProcess>
#include <QStandardPaths>

#include <optional>
#include <utility>

namespace dorvane {

namespace {

const QString tool = QStringLiteral("xdg-mime");

QString typeOf(const QString& scheme) {
    return QStringLiteral("x-scheme-handler/") + scheme;
}

// Where the program has been installed.
const QString installedFile = QStringLiteral("com.brackenfold.Dorvane.desktop");

// A file for each scheme, so that none takes another's place.
QString desktopFileName(const QString& scheme) {
    return QStringLiteral("com.brackenfold.Dorvane.url-%1.desktop").arg(scheme);
}

// The folder of the program that a desktop file starts; empty when that cannot be told.
QString bundleOf(const QString& desktopFile) {
    const QString path =
        desktopFile.isEmpty()
            ? QString()
            : QStandardPaths::locate(QStandardPaths::ApplicationsLocation, desktopFile);
    QFile file(path);
    if (path.isEmpty() || !file.open(QIODevice::ReadOnly))
        return {};
    const QString exec = QStringLiteral("Exec=");
    for (const QString& line : QString::fromUtf8(file.readAll()).split(QLatin1Char('\n'))) {
        if (!line.startsWith(exec))
            continue;
        const QString command = programOfDesktopExec(line.mid(exec.size()));
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
                          "Exec=%1\n"
                          "MimeType=%2;\n")
        .arg(desktopExec(bundlePath + QStringLiteral("/dorvane")), typeOf(scheme))
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
    const bool isInstalled = bundleOf(installedFile) == bundlePath;
    const QString file = isInstalled ? installedFile : desktopFileName(scheme);
    std::optional<QString> error;
    if (!isInstalled) {
        QDir().mkpath(m_applicationsFolder);
        error = writeFileAtomically(m_applicationsFolder + QLatin1Char('/') + file,
                                    desktopFile(bundlePath, scheme));
    }
    if (error) {
        qCWarning(logPlatform).noquote()
            << "cannot register for" << scheme << "addresses" << *error;
        return;
    }
    m_waiting.push_back({scheme, file});
    if (m_waiting.size() == 1)
        makeNextDefault();
}

// One after the other: the tool reads a list, changes it and writes it back.
void XdgUrlSchemes::makeNextDefault() {
    const auto [scheme, file] = m_waiting.front();
    auto* process = new QProcess(&m_context);
    const auto finish = [this, process, name = scheme](bool isDone) {
        if (!isDone)
            qCWarning(logPlatform).noquote() << "cannot register for" << name << "addresses";
        process->disconnect();
        process->deleteLater();
        m_waiting.pop_front();
        if (!m_waiting.empty())
            makeNextDefault();
    };
    QObject::connect(process, &QProcess::errorOccurred, process, [finish] { finish(false); });
    QObject::connect(process, &QProcess::finished, process,
                     [finish](int code) { finish(code == 0); });
    process->setStandardErrorFile(QProcess::nullDevice());
    process->start(tool, {QStringLiteral("default"), file, typeOf(scheme)});
}

} // namespace dorvane
