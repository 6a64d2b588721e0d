// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/session/ZoneData.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>

namespace dorvane {

namespace {

bool meansUtc(const QString& zone) {
    static const QRegularExpression utc(
        QStringLiteral("^(Etc/)?(UTC|UCT|GMT|Universal|Zulu|Greenwich)?$"));
    return utc.match(zone).hasMatch();
}

// "EST5EDT" or "<+03>-3": says its own offsets and needs no data.
bool isSelfContained(const QString& zone) {
    static const QRegularExpression rule(QStringLiteral("^(<[^>]+>|[A-Za-z]{3,})[+-]?\\d"));
    return rule.match(zone).hasMatch();
}

QString readLine(const QString& path) {
    QFile file(path);
    return file.open(QFile::ReadOnly) ? QString::fromUtf8(file.readLine()).trimmed() : QString();
}

} // namespace

ZoneSources ZoneSources::ofThisProcess() {
    ZoneSources sources;
    if (qEnvironmentVariableIsSet("TZ"))
        sources.variable = qgetenv("TZ");
    if (qEnvironmentVariableIsSet("TZDIR"))
        sources.folder = qEnvironmentVariable("TZDIR");
    return sources;
}

std::optional<QString> zoneWithoutData(const ZoneSources& sources) {
    const QString prefix = sources.folder + QLatin1Char('/');
    QString zone;
    if (sources.variable) {
        zone = QString::fromUtf8(*sources.variable);
        if (zone.startsWith(QLatin1Char(':')))
            zone.remove(0, 1);
        if (isSelfContained(zone))
            return std::nullopt;
    } else {
        const QFileInfo link(sources.link);
        if (link.exists())
            return std::nullopt;
        zone = link.isSymLink() ? QDir::cleanPath(link.symLinkTarget()) : readLine(sources.name);
    }
    if (zone.startsWith(prefix))
        zone.remove(0, prefix.size());
    const bool isThere =
        QFileInfo::exists(zone.startsWith(QLatin1Char('/')) ? zone : prefix + zone);
    return meansUtc(zone) || isThere ? std::nullopt : std::optional(zone);
}

} // namespace dorvane
