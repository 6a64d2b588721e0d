// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/tray/IconPicture.h"

#include <QIconEngine>
#include <QPainter>

#include <algorithm>
#include <cmath>
#include <utility>

namespace dorvane {

namespace {

// The heights of panels, at once, one and a half times and twice the ordinary density of pixels.
constexpr int allSizes[] = {22, 24, 32, 36, 44, 48, 66};
constexpr int fewSizes[] = {22, 44};

class DrawnIcon final : public QIconEngine {
public:
    explicit DrawnIcon(StatusItem::DrawIcon draw) : m_draw(std::move(draw)) {}

    void paint(QPainter* painter, const QRect& rect, QIcon::Mode, QIcon::State) override {
        const int side = std::min(rect.width(), rect.height());
        QRect square(0, 0, side, side);
        square.moveCenter(rect.center());
        const qreal ratio = painter->device()->devicePixelRatio();
        painter->drawImage(square, m_draw(int(std::lround(side * ratio))));
    }
    QPixmap pixmap(const QSize& size, QIcon::Mode, QIcon::State) override {
        return QPixmap::fromImage(m_draw(std::min(size.width(), size.height())));
    }
    [[nodiscard]] QIconEngine* clone() const override { return new DrawnIcon(m_draw); }

private:
    const StatusItem::DrawIcon m_draw;
};

} // namespace

IconPicture::IconPicture(StatusItem::DrawIcon draw, StatusItem::IconSizes sizes)
    : m_draw(std::move(draw)) {
    const auto add = [this](int pixels) { m_images.push_back(m_draw(pixels)); };
    if (sizes == StatusItem::IconSizes::All)
        std::ranges::for_each(allSizes, add);
    else
        std::ranges::for_each(fewSizes, add);
}

QIcon IconPicture::icon() const {
    return m_draw ? QIcon(new DrawnIcon(m_draw)) : QIcon();
}

} // namespace dorvane
