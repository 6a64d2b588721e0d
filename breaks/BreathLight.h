// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/Sound.h"

#include <QWidget>

namespace dorvane {

// A light that grows and shrinks once in ten seconds, as a calm breath does: the length of a bar of
// the track. For the eye only. It moves when it is told the time, and by nothing else.
class BreathLight final : public QWidget {
public:
    explicit BreathLight(QWidget* parent = nullptr) : QWidget(parent) {}

    void setTime(Sound::Seconds time);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    double m_breath = 0; // 0 is breathed out
};

} // namespace dorvane
