// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/preferences/PropertyListDefaults.h"

#include "platform/linux/preferences/PropertyListCodec.h"
#include "platform/linux/state/BackgroundFile.h"
#include "tests/platform/SyncWatch.h"
#include "tests/support/Files.h"
#include "tests/support/Testing.h"

#include <QSemaphore>

#include <atomic>
#include <sys/stat.h>

using namespace dorvane::testing;
using ::testing::Pair;

namespace {

const QString a = u"a"_qs;
const QString b = u"b"_qs;

class PropertyListDefaultsTest : public ::testing::Test {
protected:
    PropertyListDefaultsTest() : m_path(m_folder.filePath(u"Dorvane/x.plist"_qs)) {}

    [[nodiscard]] std::unique_ptr<PropertyListDefaults> open() {
        return std::make_unique<PropertyListDefaults>(m_path, m_format, m_runLoop);
    }
    // Whether all changes are on the disk; what the disk says is told once.
    [[nodiscard]] static bool isWritten(PropertyListDefaults& defaults) {
        std::vector<bool> told;
        defaults.synchronize([&](const auto& problem) { told.push_back(!problem); });
        const bool isFinished = defaults.finish();
        EXPECT_THAT(told, ElementsAre(isFinished));
        return told.back();
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
    EXPECT_TRUE(isWritten(*first));
    EXPECT_EQ(QFile(m_path).permissions() & (QFile::ReadGroup | QFile::ReadOther),
              QFile::Permissions());

    const auto second = open();
    second->registerDefaults({{a, qint64(1)}, {b, qint64(2)}});
    EXPECT_EQ(second->value(a), qint64(10));
    EXPECT_EQ(second->value(b), qint64(2));
    second->removeValue(a);
    EXPECT_EQ(second->value(a), qint64(1)) << "a removed value uncovers the registered one";
    EXPECT_TRUE(isWritten(*second));
    EXPECT_EQ(onDisk(), QVariantMap());
}

TEST_F(PropertyListDefaultsTest, mergesWithWhatOthersWroteMeanwhile) {
    const QString theirs = u"theirs"_qs;
    put({{a, qint64(1)}, {b, qint64(1)}});
    const auto defaults = open();
    put({{a, qint64(2)}, {theirs, 0.5}}); // changes a, removes b, adds a key of its own
    defaults->setValue(u"ours"_qs, true);
    EXPECT_TRUE(isWritten(*defaults));
    EXPECT_EQ(onDisk(), (QVariantMap{{a, qint64(2)}, {theirs, 0.5}, {u"ours"_qs, true}}));
    EXPECT_EQ(defaults->value(a), qint64(2));

    put({{a, qint64(3)}});
    defaults->setValue(a, qint64(4));
    const LogCapture log;
    EXPECT_TRUE(isWritten(*defaults));
    EXPECT_EQ(onDisk(), (QVariantMap{{a, qint64(4)}})) << "our own change wins";
    EXPECT_EQ(others().size(), 1U) << "what it replaced was not read before";
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
        EXPECT_TRUE(isWritten(*defaults));
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
        EXPECT_TRUE(isWritten(*defaults));
        EXPECT_EQ(log.messages().size(), isDeleted ? 0 : 1);
        EXPECT_EQ(onDisk(), (QVariantMap{{a, qint64(1)}, {b, true}}));
    }
}

// A home that is mounted late, a disk that does not answer yet, something else in the file's place:
// the program starts at once, and replaces nothing that it has not read.
TEST_F(PropertyListDefaultsTest, fileThatComesIntoReachLaterIsJoinedAndCopiedBeforeItIsReplaced) {
    const QString list = u"list"_qs;
    const struct {
        const char* what;
        std::function<void()> hide;
        bool isAbsent = false;
    } cases[] = {
        {"absent", [] {}, true},
        {"a pipe", [&] { ASSERT_EQ(::mkfifo(qPrintable(m_path), 0600), 0); }},
        {"a socket", [&] { ASSERT_EQ(::mknod(qPrintable(m_path), S_IFSOCK | 0600, 0), 0); }},
        {"a folder", [&] { QDir().mkpath(m_path); }},
        {"below a file", [&] { QDir(folder()).removeRecursively(), writeFile(folder()); }},
    };
    for (const auto& each : cases) {
        QDir().mkpath(folder());
        each.hide();
        const LogCapture log;
        const auto defaults = open();
        defaults->setJoin(list, [](const auto& base, const auto& ours, const auto& theirs) {
            return theirs.toString() + (base == ours ? QString() : ours.toString());
        });
        if (!each.isAbsent) {
            defaults->setValue(u"other"_qs, true);
            EXPECT_FALSE(isWritten(*defaults)) << each.what;
        }

        QDir(folder()).removeRecursively(), QFile::remove(folder());
        put({{a, false}, {b, true}, {list, u"Work Gym "_qs}});
        const QByteArray unread = contentsOf(m_path);
        defaults->setValue(list, u"New "_qs);
        for (const bool value : {true, false}) { // one copy
            defaults->setValue(a, value);
            EXPECT_TRUE(isWritten(*defaults)) << each.what;
            EXPECT_EQ(onDisk()[a], value);
            EXPECT_EQ(onDisk()[b], true) << each.what;
            EXPECT_EQ(onDisk()[list], u"Work Gym New "_qs) << each.what;
            EXPECT_EQ(defaults->value(list), u"Work Gym New "_qs) << "here as well";
        }
        EXPECT_THAT(others(), ElementsAre(Pair(u"x.plist.unread-2026-11-21T03-15-00"_qs, unread)));
        QDir(folder()).removeRecursively();
    }
}

TEST_F(PropertyListDefaultsTest, changesOutliveAFailedWriteAndAreTriedAgain) {
    writeFile(folder()); // where the folder would have to be
    const LogCapture log;
    const auto defaults = open();
    QStringList shown;
    defaults->setFailing([&](const QString& problem) { shown << problem; });
    defaults->setValue(a, true);
    EXPECT_FALSE(isWritten(*defaults));
    QFile::remove(folder());
    defaults->setValue(b, QTime(7, 0)); // no property
    EXPECT_FALSE(isWritten(*defaults));
    EXPECT_EQ(shown.size(), 1);
    EXPECT_EQ(log.messages().size(), 2) << "at the start, and once that nothing can be written";
    defaults->removeValue(b);
    EXPECT_EQ(defaults->value(a), true);
    m_runLoop.advance(PropertyListDefaults::pause);
    EXPECT_TRUE(defaults->finish());
    EXPECT_EQ(onDisk(), (QVariantMap{{a, true}}));
}

// Each writing is held up until the test lets it go on.
TEST_F(PropertyListDefaultsTest, slowDiskHoldsNobodyUpAndGetsTheNewest) {
    put({{b, true}});
    const auto defaults = open();
    QSemaphore disk;
    std::atomic<int> syncs = 0;
    beforeSync = [&](int) { ++syncs, disk.acquire(); };
    std::string told;
    for (int i = 0; i < 20; ++i) {
        defaults->setValue(a, qint64(i));
        defaults->synchronize([&, i](const auto&) { told += std::to_string(i) + " "; });
    }
    EXPECT_EQ(defaults->value(a), 19);
    EXPECT_EQ(onDisk(), (QVariantMap{{b, true}}));
    EXPECT_EQ(told, "");
    disk.release(100);
    EXPECT_TRUE(defaults->finish());
    beforeSync = {};
    EXPECT_EQ(onDisk(), (QVariantMap{{a, qint64(19)}, {b, true}}));
    EXPECT_EQ(told, "0 1 2 3 4 5 6 7 8 9 10 11 12 13 14 15 16 17 18 19 ");
    EXPECT_EQ(syncs, 4) << "two files and their folder";
}

TEST_F(PropertyListDefaultsTest, stateFileThatComesLateIsToldOfBeforeItIsReplaced) {
    BackgroundFile file(m_path, m_runLoop);
    EXPECT_EQ(file.read(), QByteArray());
    std::vector<QByteArray> found;
    file.setFound([&](const auto& late) {
        found.push_back(late.value());
        file.write([] { return QByteArray("joined"); });
    });
    for (const QByteArray& late : {QByteArray("late"), QByteArray("later")}) {
        put(late);
        file.write([] { return QByteArray("joined"); });
        file.flush();
        EXPECT_EQ(contentsOf(m_path), late);
        m_runLoop.runPending();
        file.flush();
        EXPECT_EQ(found.back(), late);
        EXPECT_EQ(contentsOf(m_path), "joined");
    }
    put(QByteArray("joined")); // ours, touched by others
    file.write([] { return QByteArray("joined again"); });
    file.flush();
    EXPECT_EQ(contentsOf(m_path), "joined again");
    EXPECT_EQ(found.size(), 2U);
    QFile::remove(m_path); // an empty home
    int looks = 0;
    file.lookAgain([&] { ++looks; });
    file.flush();
    m_runLoop.runPending();
    EXPECT_EQ(looks, 1);
    EXPECT_EQ(contentsOf(m_path), "joined again");
}

} // namespace
