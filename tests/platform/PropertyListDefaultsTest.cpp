// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/preferences/PropertyListDefaults.h"

#include "platform/linux/preferences/PropertyListCodec.h"
#include "tests/support/Files.h"
#include "tests/support/Testing.h"

#include <sys/stat.h>

using namespace dorvane::testing;
using ::testing::Pair;

namespace {

const QString a = u"a"_qs;
const QString b = u"b"_qs;

class PropertyListDefaultsTest : public ::testing::Test {
protected:
    PropertyListDefaultsTest() : m_path(m_folder.filePath(u"Dorvane/x.plist"_qs)) {}

    [[nodiscard]] std::unique_ptr<PropertyListDefaults> open() const {
        return std::make_unique<PropertyListDefaults>(m_path, m_format, m_runLoop);
    }
    [[nodiscard]] QVariantMap onDisk() const {
        return m_format.parse(contentsOf(m_path)).value_or(QVariant()).toMap();
    }
    void put(const QByteArray& data) const { writeFile(m_path, data); }
    void put(const QVariantMap& values) const { put(*m_format.binary(values)); }
    [[nodiscard]] QString folder() const { return m_folder.filePath(u"Dorvane"_qs); }
    // Every file of the folder but the preferences, oldest name first, and what is in it.
    [[nodiscard]] std::vector<std::pair<QString, QByteArray>> others() const {
        std::vector<std::pair<QString, QByteArray>> found;
        for (const QString& name : QDir(folder()).entryList(QDir::Files | QDir::Hidden, QDir::Name))
            if (name != u"x.plist"_qs)
                found.emplace_back(name, contentsOf(folder() + u'/' + name));
        return found;
    }

    QTemporaryDir m_folder;
    QString m_path;
    PropertyListCodec m_format;
    VirtualRunLoop m_runLoop{QDateTime(QDate(2026, 11, 21), QTime(3, 15))};
};

TEST_F(PropertyListDefaultsTest, keepsValuesInAFileThatOnlyTheUserCanRead) {
    const auto first = open();
    first->setValue(a, qint64(10));
    EXPECT_FALSE(QFile::exists(m_path)) << "nothing is written before synchronize()";
    EXPECT_TRUE(first->synchronize());
    EXPECT_EQ(QFile(m_path).permissions() & (QFile::ReadGroup | QFile::ReadOther),
              QFile::Permissions());

    const auto second = open();
    second->registerDefaults({{a, qint64(1)}, {b, qint64(2)}});
    EXPECT_EQ(second->value(a), qint64(10));
    EXPECT_EQ(second->value(b), qint64(2));
    second->removeValue(a);
    EXPECT_EQ(second->value(a), qint64(1)) << "a removed value uncovers the registered one";
    EXPECT_TRUE(second->synchronize());
    EXPECT_EQ(onDisk(), QVariantMap());
}

TEST_F(PropertyListDefaultsTest, mergesWithWhatOthersWroteMeanwhile) {
    const QString theirs = u"theirs"_qs;
    put({{a, qint64(1)}, {b, qint64(1)}});
    const auto defaults = open();
    put({{a, qint64(2)}, {theirs, 0.5}}); // changes a, removes b, adds a key of its own
    defaults->setValue(u"ours"_qs, true);
    EXPECT_TRUE(defaults->synchronize());
    EXPECT_EQ(onDisk(), (QVariantMap{{a, qint64(2)}, {theirs, 0.5}, {u"ours"_qs, true}}));
    EXPECT_EQ(defaults->value(a), qint64(2));

    put({{a, qint64(3)}});
    defaults->setValue(a, qint64(4));
    EXPECT_TRUE(defaults->synchronize());
    EXPECT_EQ(onDisk(), (QVariantMap{{a, qint64(4)}})) << "our own change wins";
}

TEST_F(PropertyListDefaultsTest, damagedFileIsPutAsideAndNeverOverwritten) {
    const QByteArray cut = m_format.binary(QVariantMap{{a, qint64(1)}})->chopped(7);
    const QByteArray list = *m_format.binary(QVariantList{true});
    for (const QByteArray& damaged : {QByteArray(), cut, list}) { // all in the same second
        put(damaged);
        const LogCapture log;
        const auto defaults = open();
        EXPECT_EQ(log.messages().size(), 1);
        EXPECT_FALSE(QFile::exists(m_path));
        defaults->setValue(b, true);
        EXPECT_TRUE(defaults->synchronize());
        EXPECT_EQ(onDisk(), (QVariantMap{{b, true}}));
    }
    const QString name = u"x.plist.damaged-2026-11-21T03-15-00"_qs;
    EXPECT_THAT(others(), ElementsAre(Pair(name, QByteArray()), Pair(name + u"-2"_qs, cut),
                                      Pair(name + u"-3"_qs, list)));
}

TEST_F(PropertyListDefaultsTest, fileThatGoesBadUnderARunningProgramLosesNothing) {
    for (const bool isDeleted : {true, false}) {
        put({{a, qint64(1)}});
        const auto defaults = open();
        if (isDeleted)
            QFile::remove(m_path);
        else
            put("rubbish");
        defaults->setValue(b, true);
        const LogCapture log;
        EXPECT_TRUE(defaults->synchronize());
        EXPECT_EQ(log.messages().size(), isDeleted ? 0 : 1);
        EXPECT_EQ(onDisk(), (QVariantMap{{a, qint64(1)}, {b, true}}));
    }
}

// A folder in the file's place: like a file without permission, but for root as well.
TEST_F(PropertyListDefaultsTest, unreadFileIsLeftAloneAndCopiedBeforeItIsWrittenOver) {
    QDir().mkpath(folder());
    ASSERT_EQ(::mknod(qPrintable(m_path), S_IFSOCK | 0600, 0), 0); // not even root can read it
    const LogCapture log;
    const auto defaults = open();
    defaults->setValue(a, true);
    EXPECT_FALSE(defaults->synchronize());

    QFile::remove(m_path);
    put({{a, false}, {b, true}});
    const QByteArray unread = contentsOf(m_path);
    for (const bool value : {true, false}) { // one copy
        defaults->setValue(a, value);
        EXPECT_TRUE(defaults->synchronize());
        EXPECT_EQ(onDisk(), (QVariantMap{{a, value}, {b, true}}));
    }
    EXPECT_THAT(others(), ElementsAre(Pair(u"x.plist.unread-2026-11-21T03-15-00"_qs, unread)));
}

TEST_F(PropertyListDefaultsTest, changesOutliveAFailedWrite) {
    writeFile(folder()); // where the folder would have to be
    const LogCapture log;
    const auto defaults = open();
    defaults->setValue(a, true);
    EXPECT_FALSE(defaults->synchronize());
    QFile::remove(folder());
    defaults->setValue(b, QTime(7, 0)); // no property
    EXPECT_FALSE(defaults->synchronize());
    EXPECT_EQ(log.messages().size(), 2);
    defaults->removeValue(b);
    EXPECT_EQ(defaults->value(a), true);
    EXPECT_TRUE(defaults->synchronize());
    EXPECT_EQ(onDisk(), (QVariantMap{{a, true}}));
}

} // namespace
