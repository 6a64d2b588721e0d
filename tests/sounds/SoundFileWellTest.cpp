// SPDX-License-Identifier: GPL-3.0-or-later
#include "sounds/SoundFileWell.h"

#include "platform/NotificationCenter.h"
#include "tests/sounds/SoundLibraryFixture.h"
#include "tests/support/FakePropertyListFormat.h"
#include "tests/support/LogCapture.h"

#include <QApplication>
#include <QClipboard>
#include <QDragEnterEvent>
#include <QMimeData>

namespace dorvane::testing {
namespace {

class SoundFileWellTest : public SoundLibraryFixture {
protected:
    SoundFileWellTest() { well.resize(64, 64); }

    // True when the well would take the data.
    bool drag(const QMimeData& data, Qt::DropActions offered = Qt::CopyAction | Qt::MoveAction) {
        QDragEnterEvent enter({32, 32}, offered, &data, Qt::LeftButton, Qt::ShiftModifier);
        enter.ignore();
        QApplication::sendEvent(&well, &enter);
        return enter.isAccepted();
    }

    [[nodiscard]] bool hasRedFrame() {
        const QImage image = well.grab().toImage();
        const auto isRed = [&](int at) {
            return image.pixelColor(at, 32) == QColor(0xe0, 0x1b, 0x24);
        };
        return isRed(0) && isRed(3) && !isRed(4) && isRed(63) && isRed(60) && !isRed(59);
    }

    [[nodiscard]] QUrl file(const char* name) const { return QUrl::fromLocalFile(path(name)); }

    AudioStorageController library{loop, user, sources, player, workspace};
    NotificationCenter notifications;
    FakePropertyListFormat format;
    SoundFileWell well{library, notifications, format, QIcon()};
};

TEST_F(SoundFileWellTest, TakesTheFirstFileOrTrack) {
    fill(dir.path(), {u"a.mp3=a"_qs, u"b.mp3=b"_qs, u"c.mp3=c"_qs});
    const QByteArray track = R"({"Tracks": {"7": {"Location": "%1"}, "8": {"Location": "x"}}})";
    const auto located = [&](const QString& url) {
        return QByteArray(track).replace("%1", url.toUtf8());
    };
    struct {
        const char* what;
        QByteArray track; // empty: the flavour is not there
        QList<QUrl> files;
        QUrl url;
        QStringList log;
    } const cases[] = {
        {"a remote file is refused", {}, {QUrl(u"http://example.org/a.mp3"_qs)}, {}, {}},
        {"the first of three files", {}, {file("b.mp3"), file("a.mp3")}, file("b.mp3"), {}},
        {"the first local file", {}, {QUrl(u"ftp://x/y"_qs), file("a.mp3")}, file("a.mp3"), {}},
        {"a track before a file",
         located(file("c.mp3").toString()),
         {file("a.mp3")},
         file("c.mp3"),
         {}},
        {"a bad address falls through",
         located(u"http://[x"_qs),
         {file("a.mp3")},
         file("a.mp3"),
         {u"dorvane.sounds: bad url \"http://[x\""_qs}},
        {"a track without a place",
         R"({"Tracks": {"7": {"Name": "x"}}})",
         {file("b.mp3")},
         file("b.mp3"),
         {}},
        {"no tracks", R"({"Tracks": {}})", {file("a.mp3")}, file("a.mp3"), {}},
        {"no dictionary", "[1]", {file("b.mp3")}, file("b.mp3"), {}},
        {"no property list", "{", {}, file("b.mp3"), {}}, // nothing to take: the last one stays
    };
    for (const auto& [what, trackList, files, url, messages] : cases) {
        SCOPED_TRACE(what);
        const LogCapture log;
        QMimeData data;
        data.setUrls(files);
        if (!trackList.isEmpty())
            data.setData(u"CorePasteboardFlavorType 0x6974756E"_qs, trackList);
        if (drag(data)) {
            QDropEvent drop({32, 32}, Qt::CopyAction | Qt::MoveAction, &data, Qt::LeftButton,
                            Qt::ShiftModifier);
            QApplication::sendEvent(&well, &drop);
            EXPECT_EQ(drop.dropAction(), Qt::CopyAction);
        }
        EXPECT_FALSE(hasRedFrame());
        EXPECT_EQ(well.url(), url);
        QStringList warnings = log.messages();
        warnings.removeIf([](const QString& line) { return !line.contains(u"bad url"_qs); });
        EXPECT_EQ(warnings, messages);
    }
    waitUntilHeld(folders.sounds, {u"a.mp3=a"_qs, u"b.mp3=b"_qs, u"c.mp3=c"_qs});
}

TEST_F(SoundFileWellTest, FramesItselfWhileSomethingIsDraggedOverIt) {
    QMimeData text;
    text.setText(u"a.mp3"_qs);
    EXPECT_FALSE(drag(text));
    EXPECT_FALSE(hasRedFrame());
    QMimeData data;
    data.setUrls({file("a.mp3")});
    EXPECT_FALSE(drag(data, Qt::MoveAction)) << "the source would delete its file";
    EXPECT_TRUE(drag(data));
    EXPECT_TRUE(hasRedFrame());
    QDragLeaveEvent leave;
    QApplication::sendEvent(&well, &leave);
    EXPECT_FALSE(hasRedFrame());
    EXPECT_EQ(well.url(), QUrl());
}

TEST_F(SoundFileWellTest, WorksWithMouseAndKeyboard) {
    SoundFileWell other(library, notifications, format, QIcon());
    std::vector<NotificationCenter::Sender> senders;
    const auto observation = notifications.addObserver(
        u"SoundFileWellClicked"_qs,
        [&](NotificationCenter::Sender sender) { senders.push_back(sender); });
    QTest::mouseClick(&well, Qt::LeftButton);
    QTest::mouseClick(&well, Qt::RightButton);
    QTest::keyClick(&other, Qt::Key_Return);
    QTest::keyClick(&well, Qt::Key_Space);
    EXPECT_THAT(senders, ::testing::ElementsAre(&well, &other, &well));

    fill(dir.path(), {u"a.mp3=a"_qs});
    auto* copied = new QMimeData;
    copied->setUrls({file("a.mp3")});
    QGuiApplication::clipboard()->setMimeData(copied);
    QTest::keyClick(&well, Qt::Key_V, Qt::ControlModifier);
    waitUntilHeld(folders.sounds, {u"a.mp3=a"_qs});
}

} // namespace
} // namespace dorvane::testing
