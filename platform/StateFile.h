// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QString>

#include <functional>
#include <optional>

namespace dorvane {

// One small file in which the program keeps what it knows of itself. Main thread only.
class StateFile {
public:
    virtual ~StateFile() = default;

    // What the file holds, empty when there is no file. Nothing when it is there and cannot be
    // read, as a pipe or a device cannot. Waits for the disk.
    [[nodiscard]] virtual std::optional<QByteArray> read() = 0;

    // Makes the contents of the file, on another thread. Empty ones are not written.
    using Contents = std::function<QByteArray()>;

    // Told, later and once, that these contents or newer ones are on the disk; else what kept them
    // from it.
    using Written = std::function<void(const std::optional<QString>& problem)>;

    // Has the file replaced, as a whole and by another thread, unless it would be the same; of
    // several calls in a row only the last may come to be written. What cannot be written is
    // logged, once until it can be again.
    virtual void write(Contents contents, Written written = {}) = 0;

    // Waits until what write() was given is on the disk.
    virtual void flush() = 0;

    // A file that was not there, or could not be read, when it was read or written here: that of a
    // folder that is mounted late. It is not written over before `found` was told of what it holds,
    // as of read(), and comes to be replaced by what is then written.
    using Found = std::function<void(const std::optional<QByteArray>& contents)>;
    virtual void setFound(Found found) = 0;

    // Looks for such a file, by another thread, and then calls back, later and once.
    virtual void lookAgain(std::function<void()> looked) = 0;

    // Gives the file another name, under which it stays. False, with a line in the log, when that
    // cannot be done; it must not be written over then.
    [[nodiscard]] virtual bool putAside() = 0;
};

} // namespace dorvane
