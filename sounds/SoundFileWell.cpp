// SPDX-License-Identifier: GPL-3.0-or-later
#include "sounds/SoundFileWell.h"

#include "platform/EscapedText.h"
#include "platform/Log.h"
#include "platform/NotificationCenter.h"
#include "platform/PropertyList.h"

#include <QClipboard>
#include <QDragEnterEvent>
#include <QGuiApplication>
#include <QMimeData>
#include <QPainter>

namespace dorvane {

namespace {

// What a music library calls its tracks on the clipboard: its four-character code in hexadecimal.
const QString trackFlavor = QStringLiteral("CorePasteboardFlavorType 0x6974756E");

[[nodiscard]] QUrl firstLocalFile(const QMimeData& data) {
    for (const QUrl& url : data.urls()) {
        if (url.isLocalFile())
            return url;
    }
    return {};
}

[[nodiscard]] bool isAcceptable(const QMimeData& data) {
    return data.hasFormat(trackFlavor) || !firstLocalFile(data).isEmpty();
}

void paintFrame(QPainter& painter, const QRect& bounds, const QColor& color, int width,
                qreal radius) {
    const qreal inset = width / 2.0;
    painter.setPen(QPen(color, width, Qt::SolidLine, Qt::SquareCap, Qt::MiterJoin));
    painter.setBrush(Qt::NoBrush);
    painter.drawRoundedRect(QRectF(bounds).adjusted(inset, inset, -inset, -inset), radius, radius);
}

} // namespace

SoundFileWell::SoundFileWell(AudioStorageController& library, NotificationCenter& notifications,
                             const PropertyListFormat& propertyLists, const QIcon& image,
                             QWidget* parent)
    : QAbstractButton(parent), m_library(library), m_propertyLists(propertyLists) {
    setIcon(image);
    setAcceptDrops(true);
    setFocusPolicy(Qt::StrongFocus);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    setToolTip(escapedText(
        QStringLiteral("Drop a sound file here to add it, click to show the folder of sounds")));
    setAccessibleName(QStringLiteral("Sound files"));
    setAccessibleDescription(QStringLiteral(
        "Press to show the folder of sounds. Drop or paste a sound file to add it."));
    connect(this, &QAbstractButton::clicked, this,
            [this, &notifications] { notifications.post(soundFileWellClickedNotification, this); });
}

void SoundFileWell::dragEnterEvent(QDragEnterEvent* event) {
    if (!(event->possibleActions() & Qt::CopyAction) || !isAcceptable(*event->mimeData()))
        return;
    setDragging(true);
    event->setDropAction(Qt::CopyAction); // whatever was proposed, the source keeps its file
    event->accept();
}

void SoundFileWell::dragMoveEvent(QDragMoveEvent* event) {
    event->setDropAction(Qt::CopyAction);
    event->accept();
}

void SoundFileWell::dragLeaveEvent(QDragLeaveEvent* event) {
    setDragging(false);
    event->accept();
}

void SoundFileWell::dropEvent(QDropEvent* event) {
    setDragging(false);
    event->setDropAction(Qt::CopyAction);
    event->accept();
    take(*event->mimeData());
}

void SoundFileWell::keyPressEvent(QKeyEvent* event) {
    if (event->matches(QKeySequence::Paste)) {
        if (const QMimeData* copied = QGuiApplication::clipboard()->mimeData())
            take(*copied);
    } else if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) {
        click();
    } else {
        QAbstractButton::keyPressEvent(event);
    }
}

void SoundFileWell::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    icon().paint(&painter, rect(), Qt::AlignCenter, isEnabled() ? QIcon::Normal : QIcon::Disabled);
    if (m_dragging)
        paintFrame(painter, rect(), QColor(0xe0, 0x1b, 0x24), 4, 0);
    else if (hasFocus())
        paintFrame(painter, rect(), palette().color(QPalette::Highlight), 2, 10);
}

void SoundFileWell::setDragging(bool dragging) {
    m_dragging = dragging;
    update();
}

// Files that are dragged from a music library come as tracks and as files; the track knows where
// the file really is.
void SoundFileWell::take(const QMimeData& contents) {
    QUrl accepted;
    if (const QString location = trackLocation(contents); !location.isEmpty()) {
        accepted = QUrl(location, QUrl::StrictMode);
        if (!accepted.isValid())
            qCWarning(logSounds) << "bad url" << location;
    }
    if (!accepted.isValid())
        accepted = firstLocalFile(contents);
    if (accepted.isEmpty())
        return;
    setURL(accepted);
    m_library.addAudioFilesWithURLs({accepted}, m_report);
}

// Where the first track of a drag from a music library lies, empty when there is none.
QString SoundFileWell::trackLocation(const QMimeData& contents) const {
    const auto list = m_propertyLists.parse(contents.data(trackFlavor));
    if (!list)
        return {};
    const QVariantMap tracks = list->toMap().value(QStringLiteral("Tracks")).toMap();
    const QVariantMap track = tracks.isEmpty() ? QVariantMap() : tracks.first().toMap();
    return track.value(QStringLiteral("Location")).toString();
}

} // namespace dorvane
