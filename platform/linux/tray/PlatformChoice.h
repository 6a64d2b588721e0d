// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QtGlobal>

namespace dorvane {

// While the application object is made: on Wayland no window chooses its place nor stays above
// others, so that the window of a ring opens anywhere and is gone with the next click. GNOME and
// Plasma bring an X server along, over which both are to be had: the program is shown there if that
// is possible. Leaves alone what the user has set. The choice is made in the environment, which
// programs that we start have from us: with this object it goes.
class PlatformChoice {
public:
    PlatformChoice();
    ~PlatformChoice();
    Q_DISABLE_COPY_MOVE(PlatformChoice)

private:
    bool m_isOurs = false;
};

} // namespace dorvane
