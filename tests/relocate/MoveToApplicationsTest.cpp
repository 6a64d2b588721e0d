// SPDX-License-Identifier: GPL-3.0-or-later
#include "relocate/MoveToApplications.h"

#include "platform/Relocator.h"
#include "tests/support/MemoryDefaults.h"
#include "tests/support/Windows.h"

#include <QApplication>
#include <QCheckBox>
#include <QMessageBox>
#include <QTest>
#include <QThreadPool>

using namespace dorvane::testing;

namespace {

const QString download = u"/home/a/Downloads/Dorvane.app"_qs;
const QString destination = u"/opt/Dorvane.app"_qs;

// A machine on which only what is named goes wrong, and which writes down what is done to it.
struct FakeRelocator final : Relocator {
    QStringList existing, readOnly, running, failing;
    std::optional<QString> device;
    Authorised authorised = Authorised::Done;
    QStringList done;

    using Error = std::optional<QString>;
    Error act(const QString& what) {
        done << what;
        return failing.contains(what) ? Error(u"broken"_qs) : std::nullopt;
    }

    Folders folders() const override {
        return {.applications = {u"/home/a/Applications"_qs, u"/opt"_qs, u"/usr"_qs},
                .destination = u"/opt"_qs,
                .downloads = {u"/home/a/Downloads"_qs}};
    }
    bool exists(const QString& path) const override { return existing.contains(path); }
    bool isWritable(const QString& path) const override { return !readOnly.contains(path); }
    std::optional<QString> diskImageDevice(const QString&) const override { return device; }
    bool isRunning(const QString& path) const override { return running.contains(path); }
    Error copyBeside(const QString&, const QString&) override { return act(u"copy"_qs); }
    Error putInPlace(const QString&) override { return act(u"place"_qs); }
    void discardCopy(const QString&) override { act(u"discard"_qs); }
    Authorised copyWithAuthorisation(const QString&, const QString&) override {
        act(u"copy as root"_qs);
        return authorised;
    }
    Error removeCopied(const QString&, const QString&) override { return act(u"remove"_qs); }
    bool moveToTrash(const QString& path) override { return !act(u"trash "_qs + path); }
    void open(const QString&) override { act(u"open"_qs); }
    void openAfterTheEnd(const QString&) override { act(u"reopen"_qs); }
    void detachSoon(const QString& name) override { act(u"detach "_qs + name); }
};

std::string lines(const QStringList& list) {
    return list.join(u'\n').toStdString();
}

// What the log says, without the complaints of a platform that cannot raise windows.
std::string said(const LogCapture& log) {
    return lines(log.messages()
                     .filter(u"dorvane.relocate: "_qs)
                     .replaceInStrings(u"dorvane.relocate: "_qs, QString()));
}

class MoveToApplicationsTest : public ::testing::Test {
protected:
    MoveToApplicationsTest() { m_relocator.existing << download + u"/Info.plist"_qs; }
    ~MoveToApplicationsTest() override {
        while (QMessageBox* const shown = alert())
            delete shown;
    }

    void offer(const QString& bundlePath = download) {
        m_mover.offer(bundlePath, [this] { m_relocator.act(u"stay"_qs); });
    }

    static QMessageBox* alert() {
        for (QWidget* const window : QApplication::topLevelWidgets())
            if (window->isVisible())
                return qobject_cast<QMessageBox*>(window);
        return nullptr;
    }

    void press(Qt::Key key) {
        QTest::keyClick(alert(), key);
        QThreadPool::globalInstance()->waitForDone();
        m_loop.runPending();
    }

    FakeRelocator m_relocator;
    VirtualRunLoop m_loop{at("11-21 12:00")};
    MemoryDefaults m_defaults;
    MoveToApplications m_mover{{.runLoop = m_loop,
                                .defaults = m_defaults,
                                .relocator = m_relocator,
                                .moved = [this](const QString&) { m_relocator.act(u"moved"_qs); },
                                .end = [this] { m_relocator.act(u"end"_qs); }}};
};

TEST_F(MoveToApplicationsTest, isOfferedOnlyToABundleThatLiesElsewhere) {
    const struct {
        QString bundle;
        bool isOffered;
    } rows[] = {
        {u"/usr/lib/dorvane/Dorvane.app"_qs, false},
        {u"/opt/Dorvane.app"_qs, false},
        {u"/home/a/Applications/Dorvane.app"_qs, false},
        {u"/media/disk/Applications/Dorvane.app"_qs, false},
        {u"/optional/Dorvane.app"_qs, true},
        {u"/opt/Other.app/parts/Dorvane.app"_qs, true},
        {u"/home/a/build/Dorvane.app"_qs, false}, // a build's own
        {u"/home/a/Downloads"_qs, false},         // the program alone, out of its bundle
    };
    for (const auto& [bundle, isOffered] : rows) {
        m_relocator.existing = {bundle + u"/Info.plist"_qs, u"/home/a/build/CMakeCache.txt"_qs};
        m_relocator.done.clear();
        offer(bundle);
        EXPECT_EQ(alert() != nullptr, isOffered) << qPrintable(bundle);
        EXPECT_EQ(lines(m_relocator.done), isOffered ? "" : "stay");
        delete alert();
    }
}

TEST_F(MoveToApplicationsTest, isSuppressedForGoodByABoxThatIsTickedAtANo) {
    const QString key = u"moveToApplicationsFolderAlertSuppress"_qs;
    offer();
    press(Qt::Key_Escape);
    EXPECT_TRUE(m_defaults.written().isEmpty());
    offer();
    alert()->checkBox()->click();
    press(Qt::Key_Escape);
    EXPECT_EQ(m_defaults.written(), (QVariantMap{{key, true}}));
    offer();
    EXPECT_EQ(alert(), nullptr);
    EXPECT_EQ(lines(m_relocator.done), "stay\nstay\nstay");
}

const QString copyFailed[] = {
    u"ERROR -- Could not copy '%1' to '%2' (broken)"_qs.arg(download, destination),
    u"ERROR -- Could not copy myself to "_qs + destination};
const QString rootFailed = u"ERROR -- Could not copy myself to /Applications with authorization"_qs;
const QString deleteFailed = u"WARNING -- Could not delete '%1': broken"_qs.arg(download);

using Machine = FakeRelocator;
constexpr auto hasOldVersion = [](Machine& machine) { machine.existing << destination; };
constexpr auto needsRoot = [](Machine& machine) { machine.readOnly << u"/opt"_qs; };

TEST_F(MoveToApplicationsTest, doesOnlyWhatTheCopyAllows) {
    const QString uncluttered = u" This will keep your Downloads folder uncluttered."_qs;
    const QString password = u" Note that this will require an administrator password."_qs;
    const QString trash = u"trash "_qs + destination;
    const QStringList leaving{u"moved"_qs, u"remove"_qs, u"reopen"_qs, u"end"_qs};
    const struct {
        const char* what;
        std::function<void(Machine&)> machine;
        QString note;
        QStringList done;
        QStringList log;
    } rows[] = {
        {"nothing there",
         [](Machine&) {},
         uncluttered,
         QStringList{u"copy"_qs, u"place"_qs} + leaving,
         {}},
        {"an old version there",
         hasOldVersion,
         uncluttered,
         QStringList{u"copy"_qs, trash, u"place"_qs} + leaving,
         {}},
        {"one that runs there",
         [](Machine& machine) {
             hasOldVersion(machine);
             machine.running << destination;
         },
         uncluttered,
         {u"open"_qs, u"end"_qs},
         {u"INFO -- Switching to an already running version"_qs}},
        {"no copy: the old version stays",
         [](Machine& machine) {
             hasOldVersion(machine);
             machine.failing << u"copy"_qs;
         },
         uncluttered,
         {u"copy"_qs, u"stay"_qs},
         {copyFailed[0], copyFailed[1]}},
        {"no trash for the old version",
         [trash](Machine& machine) {
             hasOldVersion(machine);
             machine.failing << trash;
         },
         uncluttered,
         {u"copy"_qs, trash, u"discard"_qs, u"stay"_qs},
         {}},
        {"the name is taken meanwhile",
         [](Machine& machine) { machine.failing << u"place"_qs; },
         uncluttered,
         {u"copy"_qs, u"place"_qs, u"stay"_qs},
         {copyFailed[0], copyFailed[1]}},
        {"a source that stays",
         [](Machine& machine) { machine.failing << u"remove"_qs; },
         uncluttered,
         {u"copy"_qs, u"place"_qs, u"moved"_qs, u"remove"_qs, u"trash "_qs + download, u"reopen"_qs,
          u"end"_qs},
         {deleteFailed}},
        {"a source that no trash takes",
         [](Machine& machine) {
             machine.failing = {u"remove"_qs, u"trash "_qs + download};
         },
         uncluttered,
         {u"copy"_qs, u"place"_qs, u"moved"_qs, u"remove"_qs, u"trash "_qs + download, u"reopen"_qs,
          u"end"_qs},
         {deleteFailed,
          u"WARNING -- Could not delete application after moving it to Applications folder"_qs}},
        {"a disk image",
         [](Machine& machine) { machine.device = u"/dev/loop7"_qs; },
         uncluttered,
         {u"copy"_qs, u"place"_qs, u"moved"_qs, u"reopen"_qs, u"detach /dev/loop7"_qs, u"end"_qs},
         {}},
        {"root", needsRoot, password, QStringList{u"copy as root"_qs} + leaving, {}},
        {"root, for a protected old version",
         [](Machine& machine) {
             hasOldVersion(machine);
             machine.readOnly << destination;
         },
         password,
         QStringList{u"copy as root"_qs} + leaving,
         {}},
        {"root, refused",
         [](Machine& machine) {
             needsRoot(machine);
             machine.authorised = Relocator::Authorised::Refused;
         },
         password,
         {u"copy as root"_qs, u"stay"_qs},
         {u"INFO -- Not moving because user canceled authorization"_qs}},
        {"root, failed",
         [](Machine& machine) {
             needsRoot(machine);
             machine.authorised = Relocator::Authorised::Failed;
         },
         password,
         {u"copy as root"_qs, u"stay"_qs},
         {rootFailed}},
    };
    const FakeRelocator untouched = m_relocator;
    for (const auto& row : rows) {
        m_relocator = untouched;
        row.machine(m_relocator);
        LogCapture log;
        offer();
        ASSERT_TRUE(alert()) << row.what;
        EXPECT_EQ(alert()->informativeText(),
                  u"I can move myself to the Applications folder if you'd like."_qs + row.note)
            << row.what;
        press(Qt::Key_Return);
        EXPECT_EQ(lines(m_relocator.done), lines(row.done)) << row.what;
        const QStringList expected =
            QStringList(u"INFO -- Moving myself to the Applications folder"_qs) + row.log;
        EXPECT_EQ(said(log), lines(expected)) << row.what;
        const bool isFailure = !row.log.isEmpty() && row.log.first().startsWith(u"ERROR"_qs);
        const bool isTrashFailure = row.done.contains(u"discard"_qs);
        EXPECT_EQ(alert() != nullptr, isFailure || isTrashFailure) << row.what;
        delete alert();
    }
}

TEST_F(MoveToApplicationsTest, keepsABundleThatLiesInAnother) {
    const QString nested = u"/opt/Other.app/Dorvane.app"_qs;
    m_relocator.existing << nested + u"/Info.plist"_qs;
    m_relocator.device = u"/dev/loop7"_qs;
    offer(nested);
    LogCapture log;
    press(Qt::Key_Return);
    EXPECT_EQ(lines(m_relocator.done), "copy\nplace\nmoved\nreopen\nend");
}

} // namespace
