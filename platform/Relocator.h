// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <QStringList>

#include <optional>

namespace dorvane {

// What the machine does when the program's bundle moves to another folder. Paths are full, without
// a slash at the end. Any thread; what says "waits" waits for the disk or for a person.
class Relocator {
public:
    struct Folders {
        QStringList applications; // where programs live: the user's, the machine's, the system's
        QString destination;      // the one of them that a program moves to, behind links
        QStringList downloads;
    };

    enum class Authorised { Done, Refused, Failed };

    virtual ~Relocator() = default;

    [[nodiscard]] virtual Folders folders() const = 0;
    [[nodiscard]] virtual bool exists(const QString& path) const = 0;
    [[nodiscard]] virtual bool isWritable(const QString& path) const = 0;

    // The device of the disk image that the folder lies on; nothing when it lies on no image.
    [[nodiscard]] virtual std::optional<QString> diskImageDevice(const QString& folder) const = 0;

    // Whether a program runs from the bundle now, this one aside.
    [[nodiscard]] virtual bool isRunning(const QString& bundlePath) const = 0;

    // Copies the bundle beside the destination, under a name that nobody starts, and compares the
    // two. Answers what went wrong, in words for the log; then nothing of the copy is left. Waits.
    [[nodiscard]] virtual std::optional<QString> copyBeside(const QString& source,
                                                            const QString& destination) = 0;

    // Gives that copy its name at last. Answers what went wrong, for example that the name is
    // taken; the copy is then gone. Waits.
    [[nodiscard]] virtual std::optional<QString> putInPlace(const QString& destination) = 0;

    // Removes that copy, which is not wanted after all. Waits.
    virtual void discardCopy(const QString& destination) = 0;

    // All of that with an administrator's rights, for which a person is asked; what is at the
    // destination is replaced. Waits.
    [[nodiscard]] virtual Authorised copyWithAuthorisation(const QString& source,
                                                           const QString& destination) = 0;

    // Removes from the source what the copy has, too, which is all of it unless somebody has
    // changed it meanwhile. Answers what went wrong, in words for the log. Waits.
    [[nodiscard]] virtual std::optional<QString> removeCopied(const QString& source,
                                                              const QString& copy) = 0;
    [[nodiscard]] virtual bool moveToTrash(const QString& path) = 0;

    // Starts the program of a bundle: now, or as soon as this process has ended.
    virtual void open(const QString& bundlePath) = 0;
    virtual void openAfterTheEnd(const QString& bundlePath) = 0;

    // Detaches the disk image in five seconds, whatever becomes of this process.
    virtual void detachSoon(const QString& device) = 0;
};

} // namespace dorvane
