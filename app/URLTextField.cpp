// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/URLTextField.h"

#include "platform/EscapedText.h"

#include <QKeyEvent>
#include <QMouseEvent>

namespace dorvane {

URLTextField::URLTextField(QWidget* parent) : QLabel(parent) {
    setTextFormat(Qt::PlainText);
}

void URLTextField::awakeFromNib() {
    const QUrl url(text(), QUrl::StrictMode);
    if (url.isValid() && !url.scheme().isEmpty())
        setURL(url);
}

void URLTextField::setURL(const QUrl& url) {
    m_url = url;
    QFont underlined = font();
    underlined.setUnderline(true);
    setFont(underlined);
    setForegroundRole(QPalette::Link); // the blue that can be read on this window
    setCursor(Qt::PointingHandCursor);
    setFocusPolicy(Qt::StrongFocus);
    setToolTip(escapedText(url.toString()));
    showUrl();
}

// What does not fit is left out in the middle; the tool tip has all of it.
void URLTextField::showUrl() {
    if (!m_url.isEmpty())
        setText(fontMetrics().elidedText(m_url.toString(), Qt::ElideMiddle, width()));
}

void URLTextField::resizeEvent(QResizeEvent* event) {
    QLabel::resizeEvent(event);
    showUrl();
}

void URLTextField::mouseReleaseEvent(QMouseEvent* event) {
    if (event->button() == Qt::LeftButton && rect().contains(event->pos()))
        press();
}

void URLTextField::keyPressEvent(QKeyEvent* event) {
    const int key = event->key();
    if (key == Qt::Key_Return || key == Qt::Key_Enter || key == Qt::Key_Space)
        press();
    else
        QLabel::keyPressEvent(event);
}

void URLTextField::press() {
    if (!m_url.isEmpty() && m_opener)
        m_opener(m_url);
    Q_EMIT clicked();
}

} // namespace dorvane
