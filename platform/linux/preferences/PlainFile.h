// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QString>

#include <optional>

namespace dorvane {

// A file as it was read at one moment. What lies in its place and is no plain file (a pipe, a
// device, a folder) is never opened, so that nobody waits for its other end.
struct PlainFile {
    // Tells one state of a file from another; a replaced file has another inode.
    struct Stamp {
        quint64 device = 0;
        quint64 inode = 0;
        qint64 size = 0;
        qint64 modifiedSeconds = 0;
        qint64 modifiedNanoseconds = 0;
        friend bool operator==(const Stamp&, const Stamp&) = default;
    };

    // More than any file of ours; a larger one is not read.
    static constexpr qint64 mostBytes = 64 * 1024 * 1024;

    // Waits for the disk. Any thread.
    [[nodiscard]] static PlainFile read(const QString& path);
    // The same without the contents.
    [[nodiscard]] static PlainFile look(const QString& path);

    // There is no such file. Whatever else keeps it from being read, it may be there.
    [[nodiscard]] bool isAbsent() const { return !stamp && error.isEmpty(); }

    std::optional<Stamp> stamp; // of what `contents` was read from
    QByteArray contents;
    QString error; // why it cannot be read, for the log
};

} // namespace dorvane
