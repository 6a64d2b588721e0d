// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QImage>

class QIcon;

namespace dorvane {

// What a panel shows of an icon: its pixels at the ordinary and at the doubled size. Two icons
// that look the same have equal pictures, however they came to be.
class IconPicture {
public:
    static constexpr int size = 22; // pixels

    IconPicture() = default;
    explicit IconPicture(const QIcon& icon);

    [[nodiscard]] const QImage& single() const { return m_single; }
    [[nodiscard]] const QImage& doubled() const { return m_double; }

    friend bool operator==(const IconPicture&, const IconPicture&) = default;

private:
    QImage m_single;
    QImage m_double;
};

} // namespace dorvane
