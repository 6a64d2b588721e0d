// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/ActiveAlarms.h"
#include "core/AlarmArchive.h"
#include "journal/JournalContents.h"

#include <QByteArray>
#include <QVariantMap>

namespace dorvane {

// The journal as a property list. Stateless; any thread.
class JournalFormat {
public:
    // The format must outlive the object.
    explicit JournalFormat(const PropertyListFormat& format);

    // Empty when there is no memory for it.
    [[nodiscard]] QByteArray encode(const JournalContents& contents) const;

    struct Decoded {
        JournalContents contents;
        // False when something in the data could not be read; the rest is in the contents.
        bool isComplete = true;

        // What ran at the end of the run that wrote it; nothing where not all of it can be read.
        [[nodiscard]] std::optional<ActiveAlarms::Left> left() const;
    };
    // No data at all is an empty journal. Never fails.
    [[nodiscard]] Decoded decode(const QByteArray& data) const;

private:
    [[nodiscard]] bool decodeRunning(const QVariantMap& list,
                                     std::vector<RunningAlarm>& running) const;

    const PropertyListFormat& m_format;
    AlarmArchive m_archive;
};

} // namespace dorvane
