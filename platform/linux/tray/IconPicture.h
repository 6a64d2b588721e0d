// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/StatusItem.h"

#include <QIcon>
#include <QImage>

#include <vector>

namespace dorvane {

// A picture in the status area.
class IconPicture {
public:
    static constexpr int size = 22; // points, in a panel of ordinary height

    IconPicture() = default;
    IconPicture(StatusItem::DrawIcon draw, StatusItem::IconSizes sizes);

    // What panels are sent.
    [[nodiscard]] const std::vector<QImage>& images() const { return m_images; }
    // Of any size, and drawn for it.
    [[nodiscard]] QIcon icon() const;

    // Pictures that look the same to a panel compare equal.
    friend bool operator==(const IconPicture& one, const IconPicture& other) {
        return one.m_images == other.m_images;
    }

private:
    StatusItem::DrawIcon m_draw;
    std::vector<QImage> m_images;
};

} // namespace dorvane
