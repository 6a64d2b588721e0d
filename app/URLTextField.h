// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QLabel>
#include <QUrl>

#include <functional>

namespace dorvane {

// A line of text that is a link where its text is an address: underlined, with a hand for a
// pointer, opened by a click, Return or the space bar. Main thread only.
class URLTextField final : public QLabel {
    Q_OBJECT

public:
    explicit URLTextField(QWidget* parent = nullptr);

    // Makes the field's own text its address, if it is one; any other text stays plain.
    void awakeFromNib();

    [[nodiscard]] const QUrl& url() const { return m_url; }
    void setURL(const QUrl& url);

    // What opens an address.
    void setOpener(std::function<void(const QUrl& url)> opener) { m_opener = std::move(opener); }

Q_SIGNALS:
    // After every click, with an address or without.
    void clicked();

protected:
    void resizeEvent(QResizeEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    void press();
    void showUrl();

    QUrl m_url;
    std::function<void(const QUrl&)> m_opener;
};

} // namespace dorvane
