// SPDX-License-Identifier: GPL-3.0-or-later
// What most sources of every folder include, read once for all of them. A source still names what
// it uses: clang-tidy and the fuzz targets are built without this.
#pragma once

#include <QByteArray>
#include <QDateTime>
#include <QDebug>
#include <QDir>
#include <QFileInfo>
#include <QLocale>
#include <QLoggingCategory>
#include <QObject>
#include <QPointer>
#include <QString>
#include <QStringList>
#include <QTime>
#include <QUrl>
#include <QVariant>

#include <algorithm>
#include <array>
#include <chrono>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <utility>
#include <variant>
#include <vector>
