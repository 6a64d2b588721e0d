// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "sounds/AudioStorageController.h"

#include <QAbstractButton>
#include <QUrl>

class QMimeData;

namespace dorvane {

class NotificationCenter;
class PropertyListFormat;

// Posted when a well was clicked, with that SoundFileWell as the sender.
inline const QString soundFileWellClickedNotification = QStringLiteral("SoundFileWellClicked");

// A picture that takes sound files into the sound library: files, or tracks of a music library,
// that are dropped on it, or pasted while it has the keyboard focus. Of several files the first
// one is taken. Pressing it does nothing by itself but posting SoundFileWellClicked.
class SoundFileWell final : public QAbstractButton {
    Q_OBJECT

public:
    // Everything passed by reference must outlive the well.
    SoundFileWell(AudioStorageController& library, NotificationCenter& notifications,
                  const PropertyListFormat& propertyLists, const QIcon& image,
                  QWidget* parent = nullptr);

    // Hears what became of each file that was taken.
    void setReport(AudioStorageController::Report report) { m_report = std::move(report); }

    // The last accepted file, empty when there was none.
    [[nodiscard]] const QUrl& url() const { return m_url; }
    void setURL(const QUrl& url) { m_url = url; }

    [[nodiscard]] QSize sizeHint() const override { return {64, 64}; }

protected:
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dragMoveEvent(QDragMoveEvent* event) override;
    void dragLeaveEvent(QDragLeaveEvent* event) override;
    void dropEvent(QDropEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    void setDragging(bool dragging);
    void take(const QMimeData& contents);
    [[nodiscard]] QString trackLocation(const QMimeData& contents) const;

    AudioStorageController& m_library;
    const PropertyListFormat& m_propertyLists;
    AudioStorageController::Report m_report;
    QUrl m_url;
    bool m_dragging = false;
};

} // namespace dorvane
