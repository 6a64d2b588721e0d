// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/tray/IconPicture.h"

#include <QIcon>

namespace dorvane {

namespace {

QImage pixels(const QIcon& icon, int size) {
    return icon.pixmap(QSize(size, size), 1.0).toImage();
}

} // namespace

IconPicture::IconPicture(const QIcon& icon)
    : m_single(pixels(icon, size)), m_double(pixels(icon, 2 * size)) {}

} // namespace dorvane
