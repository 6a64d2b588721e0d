// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/session/ZoneData.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QStringView>

#include <algorithm>
#include <iterator>

namespace dorvane {

namespace {

// Both run at every start, and a regular expression would bring half a mebibyte of its library in.

bool meansUtc(QStringView zone) {
    if (zone.startsWith(QLatin1String("Etc/")))
        zone = zone.sliced(4);
    constexpr const char* names[] = {"", "UTC", "UCT", "GMT", "Universal", "Zulu", "Greenwich"};
    return std::any_of(std::begin(names), std::end(names),
                       [&](const char* name) { return zone == QLatin1String(name); });
}

// "EST5EDT" or "<+03>-3": says its own offsets and needs no data.
bool isSelfContained(const QString& zone) {
    const bool isQuoted = zone.startsWith(QLatin1Char('<'));
    const auto nameEnd = isQuoted ? zone.indexOf(QLatin1Char('>')) + 1
                                  : std::find_if_not(zone.begin(), zone.end(), [](QChar letter) {
                                        return letter.isLetter();
                                    }) - zone.begin();
    if (nameEnd < 3)
        return false;
    QStringView offset = QStringView(zone).sliced(nameEnd);
    if (offset.startsWith(QLatin1Char('+')) || offset.startsWith(QLatin1Char('-')))
        offset = offset.sliced(1);
    return !offset.isEmpty() && offset.front().isDigit();
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
