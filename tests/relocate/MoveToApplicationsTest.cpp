// SPDX-License-Identifier: GPL-3.0-or-later
#include "relocate/MoveToApplications.h"

#include "platform/Relocator.h"
#include "tests/support/MemoryDefaults.h"
#include "tests/support/Windows.h"

#include <QCheckBox>
#include <QMessageBox>
#include <QThreadPool>

using namespace dorvane::testing;

namespace {

const QString download = u"/home/a/Downloads/Dorvane.app"_qs;
const QString destination = u"/opt/Dorvane.app"_qs;

// A machine that is told in words what is out of the ordinary, and writes down what is done to it.
class FakeRelocator final : public Relocator {
public:
    using Error = std::optional<QString>;

    void setUp(const QStringList& words) {
        m_words = words;
        m_done.clear();
    }
    bool is(const char* word) const { return m_words.contains(QLatin1String(word)); }
    std::string done() const { return m_done.join(u' ').toStdString(); }
    Error act(const char* what) {
        m_done << QString::fromLatin1(what);
        return m_words.contains(u'!' + m_done.last()) ? Error(u"broken"_qs) : std::nullopt;
    }

    Folders folders() const override {
        return {.applications = {u"/home/a/Applications"_qs, u"/opt"_qs, u"/usr"_qs},
                .destination = u"/opt"_qs,
                .downloads = {u"/home/a/Downloads"_qs}};
    }
    bool exists(const QString& path) const override {
        return path.endsWith(u".app/Info.plist"_qs) || path == u"/home/a/build/CMakeCache.txt"_qs ||
               (path == destination && is("old"));
    }
    bool isWritable(const QString& path) const override {
        return !is(path == destination ? "protected" : "root");
    }
    std::optional<QString> diskImageDevice(const QString&) const override {
        return is("image") ? std::optional(u"/dev/loop7"_qs) : std::nullopt;
    }
    bool isRunning(const QString&) const override { return is("runs"); }
    Error copyBeside(const QString&, const QString&) override { return act("copy"); }
    Error putInPlace(const QString&) override { return act("place"); }
    void discardCopy(const QString&) override { act("discard"); }
    Authorised copyWithAuthorisation(const QString&, const QString&) override {
        if (act("copy-as-root"))
            return Authorised::Failed;
        return is("refused") ? Authorised::Refused : Authorised::Done;
    }
    Error removeCopied(const QString&, const QString&) override { return act("remove"); }
    bool moveToTrash(const QString& path) override {
        return !act(path == destination ? "trash-old" : "trash-source");
    }
    void open(const QString&) override { act("open"); }
    void openAfterTheEnd(const QString&) override { act("reopen"); }
    void detachSoon(const QString&) override { act("detach"); }

private:
    QStringList m_words;
    QStringList m_done;
};

class MoveToApplicationsTest : public ::testing::Test {
protected:
    ~MoveToApplicationsTest() override {
        while (QMessageBox* const shown = alert())
            delete shown;
    }

    void offer(const QString& bundlePath = download) {
        m_mover.offer(bundlePath);
        if (QMessageBox* const shown = alert()) {
            EXPECT_TRUE(QTest::qWaitForWindowActive(shown));
        }
    }

    static QMessageBox* alert() {
        for (QWidget* const window : QApplication::topLevelWidgets())
            if (window->isVisible())
                return qobject_cast<QMessageBox*>(window);
        return nullptr;
    }

    void press(Qt::Key key) {
        QTest::keyClick(QApplication::focusWidget() ? QApplication::focusWidget() : alert(), key);
        settle();
    }

    void settle() {
        QThreadPool::globalInstance()->waitForDone();
        m_loop.runPending();
    }

    FakeRelocator m_relocator;
    VirtualRunLoop m_loop{at("11-21 12:00")};
    MemoryDefaults m_defaults;
    MoveToApplications m_mover{{.runLoop = m_loop,
                                .defaults = m_defaults,
                                .relocator = m_relocator,
                                .moved = [this](const QString&) { m_relocator.act("moved"); },
                                .end = [this] { m_relocator.act("end"); }}};
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
        m_relocator.setUp({});
        offer(bundle);
        EXPECT_EQ(alert() != nullptr, isOffered) << qPrintable(bundle);
        delete alert();
    }
}

TEST_F(MoveToApplicationsTest, asksOnceForEachPlaceAndNeverAgainAfterATickedNo) {
    const QString other = u"/media/disk/Dorvane.app"_qs;
    offer();
    press(Qt::Key_Escape);
    offer();
    EXPECT_EQ(alert(), nullptr);
    offer(other);
    alert()->checkBox()->click();
    press(Qt::Key_Escape);
    EXPECT_EQ(
        m_defaults.written(),
        (QVariantMap{{u"moveToApplicationsFolderAnsweredAt"_qs, QVariantList{download, other}},
                     {u"moveToApplicationsFolderAlertSuppress"_qs, true}}));
    offer(u"/home/a/Dorvane.app"_qs);
    EXPECT_EQ(alert(), nullptr);
    EXPECT_EQ(m_relocator.done(), "");
}

// Each row: what is out of the ordinary, "!" before what fails; all that is done.
TEST_F(MoveToApplicationsTest, doesOnlyWhatTheCopyAllows) {
    const char* const rows[][2] = {
        {"", "copy place moved remove reopen end"},
        {"old", "copy trash-old place moved remove reopen end"},
        {"old runs", "open end"},
        {"old !copy", "copy alert"},
        {"old !trash-old", "copy trash-old discard alert"},
        {"!place", "copy place alert"},
        {"!remove", "copy place moved remove trash-source reopen end"},
        {"image", "copy place moved reopen detach end"},
        {"image nested", "copy place moved reopen end"},
        {"root", "copy-as-root moved remove reopen end"},
        {"old protected", "copy-as-root moved remove reopen end"},
        {"root refused", "copy-as-root"},
        {"root !copy-as-root", "copy-as-root alert"},
    };
    for (const auto& [machine, done] : rows) {
        m_relocator.setUp(QString::fromLatin1(machine).split(u' '));
        m_defaults.removeValue(u"moveToApplicationsFolderAnsweredAt"_qs);
        const LogCapture quietly;
        const bool isNested = m_relocator.is("nested"); // in another bundle
        offer(isNested ? u"/opt/Other.app/Dorvane.app"_qs : download);
        ASSERT_TRUE(alert()) << machine;
        const bool asksRoot = m_relocator.is("root") || m_relocator.is("protected");
        const QString text = alert()->informativeText();
        EXPECT_EQ(text.contains(u"password"_qs), asksRoot);
        EXPECT_EQ(text.contains(u"Downloads"_qs), !asksRoot && !isNested);
        const QList<QAbstractButton*> buttons = alert()->buttons();
        (*std::ranges::find(buttons, u"Move to Applications Folder"_qs, &QAbstractButton::text))
            ->click();
        settle();
        if (alert()) {
            m_relocator.act("alert");
            EXPECT_TRUE(alert()->informativeText().contains(u"stays in /home/a/Downloads"_qs));
        }
        EXPECT_EQ(m_relocator.done(), done) << machine;
        delete alert();
    }
}

TEST_F(MoveToApplicationsTest, isNotAnsweredByWhatIsTypedAsItComesUp) {
    offer();
    for (const Qt::Key key : {Qt::Key_Space, Qt::Key_Return, Qt::Key_Enter})
        press(key);
    ASSERT_TRUE(alert());
    m_loop.advance(1s);
    press(Qt::Key_Space);
    EXPECT_EQ(alert(), nullptr);
    EXPECT_EQ(m_relocator.done(), "");
}

} // namespace
