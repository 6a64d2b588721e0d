// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QImage>

namespace dorvane {

// A picture in the status area, for screens of ordinary and of doubled density.
struct IconPicture {
    static constexpr int size = 22; // points

    QImage single;  // of `size` pixels a side
    QImage doubled; // of twice as many

    friend bool operator==(const IconPicture&, const IconPicture&) = default;
};

} // namespace dorvane
