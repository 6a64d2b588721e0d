// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/PropertyList.h"
#include "platform/UserDefaults.h"

#include <QMap>

#include <optional>

namespace dorvane {

class RunLoop;

// One domain in one property-list file, read at once and written in the binary format. Other
// programs may change the file meanwhile: keys that were not changed here keep what they wrote, and
// keys nobody here knows are kept.
//
// A damaged file is put aside under a new name beside it, never overwritten. A file that cannot be
// read, or not be put aside, is left alone: the preferences then live in memory only, and every
// synchronize() looks whether that has changed. What such a file then turns out to hold was decided
// without: it is copied under a new name before it is written over.
class PropertyListDefaults final : public UserDefaults {
public:
    // `path` is the full path of the file, which need not exist, nor its folder. The format and the
    // run loop (which dates the names of damaged files) must outlive the object.
    PropertyListDefaults(const QString& path, const PropertyListFormat& format,
                         const RunLoop& runLoop);

    [[nodiscard]] QVariant value(const QString& key) const override;
    // An invalid value removes the key.
    void setValue(const QString& key, const QVariant& value) override;
    void removeValue(const QString& key) override;
    void registerDefaults(const QVariantMap& defaults) override;
    bool synchronize() override;

private:
    // Tells one state of the file from another; a replaced file has another inode.
    struct Stamp {
        quint64 inode = 0;
        qint64 size = 0;
        qint64 modifiedSeconds = 0;
        qint64 modifiedNanoseconds = 0;
        friend bool operator==(const Stamp&, const Stamp&) = default;
    };

    [[nodiscard]] std::optional<Stamp> stampOfFile() const;
    [[nodiscard]] bool readIfChanged();
    [[nodiscard]] bool putAside();
    [[nodiscard]] bool copyUnread();
    [[nodiscard]] QString newName(const char* reason) const;
    [[nodiscard]] QVariantMap merged() const;
    [[nodiscard]] bool write(const QVariantMap& values);

    const QString m_path; // behind symbolic links
    const PropertyListFormat& m_format;
    const RunLoop& m_runLoop;
    QVariantMap m_stored;              // what the file holds, or held when it was last seen whole
    QMap<QString, QVariant> m_changes; // not written yet; an invalid value is a removed key
    QVariantMap m_registered;
    std::optional<Stamp> m_stamp; // of the file that m_stored was read from; none: there is no file
    bool m_wasUnread;             // the file was there at the start and could not be read
};

} // namespace dorvane
