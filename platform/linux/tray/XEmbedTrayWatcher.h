// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QAbstractNativeEventFilter>

#include <cstdint>
#include <functional>

struct xcb_connection_t;

namespace dorvane {

// Whether a panel with an XEmbed tray owns the tray selection of the X server. Sees the program's
// X events; on any other platform there is never a tray. Main thread only.
class XEmbedTrayWatcher final : public QAbstractNativeEventFilter {
public:
    // Needs the application object. `changed` is called after present() changed, never from inside
    // this constructor.
    explicit XEmbedTrayWatcher(std::function<void()> changed);
    ~XEmbedTrayWatcher() override;

    [[nodiscard]] bool present() const { return m_owner != 0; }

    bool nativeEventFilter(const QByteArray& eventType, void* message, qintptr* result) override;

private:
    void look();

    std::function<void()> m_changed;
    xcb_connection_t* m_connection; // null when the application is not on X11
    std::uint32_t m_selection = 0;  // atoms
    std::uint32_t m_manager = 0;
    std::uint32_t m_owner = 0; // the tray's window
};

} // namespace dorvane
