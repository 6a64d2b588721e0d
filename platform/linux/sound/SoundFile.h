// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/linux/sound/SoundModule.h"

#include <QByteArray>
#include <QString>

#include <memory>

namespace dorvane {

// A sound's file: a short one is held in memory, of a long one only what is being read. What the
// file was when it was opened is played to its end, even if another takes its name.
class SoundFile final : public SoundInput {
public:
    explicit SoundFile(QByteArray contents);
    ~SoundFile() override;
    SoundFile(const SoundFile&) = delete;
    SoundFile& operator=(const SoundFile&) = delete;

    // Waits for the disk. Null with the reason in `error` when there is no regular file that can be
    // read, or nothing is in it.
    [[nodiscard]] static std::shared_ptr<const SoundInput> open(const QString& path,
                                                                QString& error);

    [[nodiscard]] std::int64_t size() const override { return m_size; }
    [[nodiscard]] bool isHeld() const override { return m_descriptor < 0; }
    [[nodiscard]] std::int64_t read(std::int64_t position, void* out,
                                    std::int64_t count) const override;

private:
    SoundFile(int descriptor, std::int64_t size) : m_descriptor(descriptor), m_size(size) {}

    [[nodiscard]] QByteArray wholeContents() const;

    const QByteArray m_contents;
    const int m_descriptor = -1; // of a file that is not in m_contents
    const std::int64_t m_size;
};

} // namespace dorvane
