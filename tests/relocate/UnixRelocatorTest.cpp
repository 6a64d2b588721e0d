// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/relocate/UnixRelocator.h"

#include "tests/support/Files.h"
#include "tests/support/FullDisk.h"
#include "tests/support/LogCapture.h"
#include "tests/support/Testing.h"

#include <QProcess>

#include <gtest/gtest.h>
#include <unistd.h>

using namespace dorvane::testing;

namespace {

const std::string placed = "./Dorvane.app 755|./Dorvane.app/Info.plist 644|"
                           "./Dorvane.app/Resources 755|./Dorvane.app/Resources/empty 755|"
                           "./Dorvane.app/Resources/sound 644|./Dorvane.app/dorvane 755|"
                           "./Dorvane.app/link 777|";

const std::string oldVersion = "./Dorvane.app 700|";

// A bundle to be moved, and a folder that stands for /opt.
class UnixRelocatorTest : public ::testing::Test {
protected:
    UnixRelocatorTest() {
        QDir().mkpath(m_opt);
        sh(u"mkdir -p \"$1/Resources/empty\" && cd \"$1\" && cp /bin/true dorvane && "
           "echo info > Info.plist && printf '%0170000d' 0 > Resources/sound && "
           "ln -s Resources/sound link && chmod 400 Resources/sound && chmod 555 Resources"_qs);
    }
    ~UnixRelocatorTest() override { sh(u"chmod -R u+w \"${1%/*}\""_qs); }

    // What a shell script prints; $1 is the bundle, $2 the destination.
    std::string sh(const QString& script) const {
        QProcess process;
        process.start(u"/bin/sh"_qs, {u"-c"_qs, script, u"sh"_qs, m_bundle, m_destination});
        EXPECT_TRUE(process.waitForFinished() && process.exitCode() == 0) << qPrintable(script);
        return process.readAll().toStdString();
    }

    // Every name below /opt, with its permissions.
    std::string opt() const {
        return sh(
            u"cd \"${2%/*}\" && find . -mindepth 1 -printf './%P %m|\n' | LC_ALL=C sort | tr -d '\n'"_qs);
    }

    // As somebody who puts `script` in the place of pkexec.
    Relocator::Authorised authorise(const QByteArray& script) {
        const QString pkexec = m_root.filePath(u"bin/pkexec"_qs);
        writeFile(pkexec, "#!/bin/sh\n" + script);
        QFile::setPermissions(pkexec, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
        return m_relocator.copyWithAuthorisation(m_bundle, m_destination);
    }

    QTemporaryDir m_root;
    QString m_opt = m_root.filePath(u"opt"_qs);
    QString m_bundle = m_root.filePath(u"it's \"$HOME\"/Dorvane.app"_qs);
    QString m_destination = m_opt + u"/Dorvane.app"_qs;
    UnixRelocator m_relocator{{.home = m_root.path(),
                               .caches = {},
                               .configuration = {},
                               .data = m_root.filePath(u"data"_qs)},
                              m_opt,
                              m_root.filePath(u"bin/pkexec"_qs)};
};

TEST_F(UnixRelocatorTest, copiesWholeAndOnlyThenRemoves) {
    sh(u"mkdir -p \"${2%/*}/.Dorvane.app.moving/left\""_qs); // by a copy that a power cut ended
    EXPECT_EQ(m_relocator.copyBeside(m_bundle, m_destination), std::nullopt);
    EXPECT_FALSE(m_relocator.exists(m_destination));
    EXPECT_EQ(m_relocator.putInPlace(m_destination), std::nullopt);
    EXPECT_EQ(opt(), placed);
    sh(u"diff -r --no-dereference \"$1\" \"$2\" && chmod 755 \"$1/Resources\""_qs);

    sh(u"echo changed >> \"$1/Info.plist\""_qs);
    EXPECT_NE(m_relocator.removeCopied(m_bundle, m_destination), std::nullopt);
    sh(u"diff -rq \"$1/Resources\" \"$2/Resources\""_qs);
    sh(u"cp \"$2/Info.plist\" \"$1\""_qs);
    EXPECT_EQ(m_relocator.removeCopied(m_bundle, m_destination), std::nullopt);
    EXPECT_FALSE(m_relocator.exists(m_bundle));
}

TEST_F(UnixRelocatorTest, leavesNothingOfACopyThatFails) {
    sh(u"mkfifo \"$1/Resources/pipe\""_qs);
    EXPECT_NE(m_relocator.copyBeside(m_bundle, m_destination), std::nullopt);
    EXPECT_EQ(opt(), "");
    sh(u"rm -f \"$1/Resources/pipe\""_qs);
    {
        const FullDisk full;
        EXPECT_NE(m_relocator.copyBeside(m_bundle, m_destination), std::nullopt);
    }
    EXPECT_EQ(opt(), "");

    EXPECT_EQ(m_relocator.copyBeside(m_bundle, m_destination), std::nullopt);
    sh(u"mkdir -m 700 \"$2\""_qs);
    EXPECT_NE(m_relocator.putInPlace(m_destination), std::nullopt);
    EXPECT_EQ(opt(), oldVersion);
}

TEST_F(UnixRelocatorTest, copiesAsRootOrLeavesWhatIsThere) {
    // Another stream, whose sum is right: one with a second name of a file of root's, one
    // compressed.
    const auto instead = [](const QByteArray& packed) {
        return "d=${0%/*}/d; mkdir -p $d; echo secret > $d/a; " + packed +
               "; s=$(sha256sum < $d.tar);" +
               R"(exec "$1" "$2" "$3" "$4" "$5" "$6" "${s%% *}" < $d.tar)";
    };
    const struct {
        QByteArray pkexec;
        Relocator::Authorised answer;
        std::string opt;
    } rows[] = {
        {"exit 126", Relocator::Authorised::Refused, oldVersion},
        {"exit 127", Relocator::Authorised::Failed, oldVersion},
        {"kill -9 $$", Relocator::Authorised::Failed, oldVersion},
        {"ulimit -f 50; trap '' XFSZ; exec \"$@\"", Relocator::Authorised::Failed, oldVersion},
        {"exec \"$@\"", Relocator::Authorised::Done, placed},
        {"s=\"mv() { case \\$3 in *.moving/*) return 1;; esac; command mv \\\"\\$@\\\"; }\n$3\""
         "; shift 3; exec /bin/sh -c \"$s\" \"$@\"",
         Relocator::Authorised::Failed, placed},
        // Who can exchange the stream, or what stands in it.
        {"echo more | cat - | exec \"$@\"", Relocator::Authorised::Failed, placed},
        {instead("ln -f $d/a $d/b; tar -cf $d.tar -C $d ."), Relocator::Authorised::Failed, placed},
        {instead("tar -czf $d.tar -C $d a"), Relocator::Authorised::Failed, placed},
    };
    if (::geteuid() != 0)
        GTEST_SKIP() << "only root can play the administrator";
    sh(u"mkdir -m 700 \"$2\" && chmod u+s \"$1/dorvane\""_qs);
    for (const auto& [pkexec, answer, left] : rows) {
        const LogCapture quietly;
        EXPECT_EQ(authorise(pkexec), answer) << pkexec.data();
        EXPECT_EQ(opt(), left) << pkexec.data();
    }
}

TEST_F(UnixRelocatorTest, knowsWhatRuns) {
    sh(u"mkdir \"$2\" && cp /bin/sleep \"$2/dorvane\""_qs);
    EXPECT_FALSE(m_relocator.isRunning(m_destination));
    QProcess process;
    process.start(m_destination + u"/dorvane"_qs, {u"60"_qs});
    ASSERT_TRUE(process.waitForStarted());
    EXPECT_TRUE(m_relocator.isRunning(m_destination));
    process.kill();
    process.waitForFinished();
}

} // namespace
