// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QString>

namespace dorvane {

// The file in which announcers remember what they announced: one of them at a time, so that nothing
// is announced twice. Waits for the disk; main thread only.
class AnnouncedFile {
public:
    // The folder must exist.
    explicit AnnouncedFile(QString path);
    ~AnnouncedFile();
    AnnouncedFile(const AnnouncedFile&) = delete;
    AnnouncedFile& operator=(const AnnouncedFile&) = delete;

    // False when another process has the file to itself. From then on until the end of the process,
    // in whatever way that comes, no other gets it. Where no lock can be had, true: twice is better
    // than never.
    [[nodiscard]] bool acquire();

    // Empty when there is none.
    [[nodiscard]] QByteArray read() const;
    // Replaces it as a whole, for the user alone. What fails is logged.
    void write(const QByteArray& contents) const;

private:
    const QString m_path;
    int m_lock = -1; // file descriptor
};

} // namespace dorvane
