// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/preferences/AtomicFile.h"

#include "tests/platform/SyncWatch.h"
#include "tests/support/Files.h"
#include "tests/support/FullDisk.h"
#include "tests/support/Testing.h"

#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

using namespace dorvane::testing;

std::function<void(int)> dorvane::testing::beforeSync;

// In the place of the system's, for the whole test program.
extern "C" int fsync(int descriptor) {
    if (beforeSync)
        beforeSync(descriptor);
    return int(::syscall(SYS_fsync, descriptor));
}

namespace {

class AtomicFileTest : public ::testing::Test {
protected:
    AtomicFileTest() : m_path(m_folder.filePath(u"file"_qs)) {}

    QTemporaryDir m_folder;
    QString m_path;
    const QByteArray m_old = QByteArray(50'000, 'o');
    const QByteArray m_new = QByteArray(200'000, 'n');
};

TEST_F(AtomicFileTest, isOnTheDiskBeforeItTakesTheOldOnesPlaceAndSoIsItsNameAfterwards) {
    ASSERT_FALSE(writeFileAtomically(m_path, m_old));
    QStringList synced; // and how the file began at that moment
    beforeSync = [&](int descriptor) {
        struct stat status {};
        ::fstat(descriptor, &status);
        synced << (S_ISDIR(status.st_mode) ? u"folder "_qs : u"file "_qs) +
                      QString::fromLatin1(contentsOf(m_path).first(1));
    };
    EXPECT_FALSE(writeFileAtomically(m_path, m_new));
    beforeSync = {};
    EXPECT_EQ(synced, (QStringList{u"file o"_qs, u"folder n"_qs}));
}

TEST_F(AtomicFileTest, fullDiskLeavesTheOldFileAndNoRubbish) {
    ASSERT_FALSE(writeFileAtomically(m_path, m_old));
    {
        const FullDisk full;
        EXPECT_TRUE(writeFileAtomically(m_path, m_new)) << "the error is reported";
    }
    EXPECT_EQ(contentsOf(m_path), m_old);
    EXPECT_EQ(QDir(m_folder.path()).entryList(QDir::Files), QStringList{u"file"_qs});
}

TEST_F(AtomicFileTest, whatAPowerCutLeftGoesInTime) {
    const QDateTime longAgo = QDateTime::currentDateTime().addSecs(-4000);
    for (const char* name : {"file", "file.unfinished-aB3xYz", "file.backup", "file.unfinished-1",
                             "other.unfinished-aB3xYz"}) {
        const QString path = m_folder.filePath(QLatin1String(name));
        writeFile(path);
        QFile file(path);
        ASSERT_TRUE(file.open(QIODevice::ReadWrite));
        ASSERT_TRUE(file.setFileTime(longAgo, QFileDevice::FileModificationTime));
    }
    writeFile(m_folder.filePath(u"file.unfinished-Being0"_qs));
    removeUnfinishedWrites(m_path, longAgo.addSecs(4000));
    EXPECT_EQ(
        QDir(m_folder.path()).entryList(QDir::Files).join(u' '),
        u"file file.backup file.unfinished-1 file.unfinished-Being0 other.unfinished-aB3xYz"_qs);
}

TEST_F(AtomicFileTest, keepsPermissionsAndLinks) {
    const QString target = m_folder.filePath(u"elsewhere"_qs);
    ASSERT_TRUE(QFile::link(u"elsewhere"_qs, m_path));
    EXPECT_FALSE(writeFileAtomically(m_path, "made behind a link that led nowhere"));
    const auto userOnly = QFile::ReadUser | QFile::WriteUser | QFile::ReadOwner | QFile::WriteOwner;
    EXPECT_EQ(QFile::permissions(target), userOnly);

    ASSERT_TRUE(QFile::setPermissions(target, userOnly | QFile::ReadGroup));
    EXPECT_FALSE(writeFileAtomically(m_path, m_new));
    EXPECT_EQ(QFile::symLinkTarget(m_path), target);
    EXPECT_EQ(contentsOf(target), m_new);
    EXPECT_EQ(QFile::permissions(target), userOnly | QFile::ReadGroup);
}

} // namespace
