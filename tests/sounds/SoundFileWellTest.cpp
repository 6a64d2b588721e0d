// SPDX-License-Identifier: GPL-3.0-or-later
#include "sounds/SoundFileWell.h"

#include "platform/linux/preferences/PropertyListCodec.h"
#include "tests/sounds/SoundLibraryFixture.h"
#include "tests/support/Windows.h"

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

    [[nodiscard]] QUrl file(const char* name) const { return QUrl::fromLocalFile(path(name)); }

    AudioStorageController library{loop, user, sources, player, workspace};
    PropertyListCodec format;
    SoundFileWell well{library, notifications, format, QIcon()};
};

TEST_F(SoundFileWellTest, TakesTheFirstFileOrTrack) {
    fill(home.path(), {u"a.mp3=a"_qs, u"b.mp3=b"_qs, u"c.mp3=c"_qs});
    const auto tracks = [&](const QVariantMap& first) {
        const QVariantMap byId{{u"7"_qs, first}, {u"8"_qs, QVariantMap{{u"Location"_qs, u"x"_qs}}}};
        return *format.binary(QVariantMap{{u"Tracks"_qs, first.isEmpty() ? first : byId}});
    };
    const auto located = [&](const QString& url) { return tracks({{u"Location"_qs, url}}); };
    // One after the other on one well: where there is nothing to take, the last one stays.
    struct {
        QByteArray track = {}; // empty: the flavour is not there
        QList<QUrl> files = {};
        QUrl url = {};
    } const cases[] = {
        {.files = {QUrl(u"http://example.org/a.mp3"_qs)}},
        {.files = {file("b.mp3"), file("a.mp3")}, .url = file("b.mp3")},
        {.files = {QUrl(u"ftp://x/y"_qs), file("a.mp3")}, .url = file("a.mp3")},
        {.track = located(file("c.mp3").toString()),
         .files = {file("a.mp3")},
         .url = file("c.mp3")},
        {.track = tracks({{u"Name"_qs, u"x"_qs}}), .files = {file("b.mp3")}, .url = file("b.mp3")},
        {.track = tracks({}), .files = {file("a.mp3")}, .url = file("a.mp3")},
        {.track = "{", .url = file("a.mp3")},
    };
    for (const auto& [track, files, url] : cases) {
        QMimeData data;
        data.setUrls(files);
        if (!track.isEmpty())
            data.setData(u"CorePasteboardFlavorType 0x6974756E"_qs, track);
        if (drag(data)) {
            QDropEvent drop({32, 32}, Qt::CopyAction | Qt::MoveAction, &data, Qt::LeftButton,
                            Qt::ShiftModifier);
            QApplication::sendEvent(&well, &drop);
            EXPECT_EQ(drop.dropAction(), Qt::CopyAction);
        }
        EXPECT_EQ(well.url(), url);
    }
    waitUntilHeld(folders.sounds, {u"a.mp3=a"_qs, u"b.mp3=b"_qs, u"c.mp3=c"_qs});
    QMimeData data;
    data.setUrls({file("a.mp3")});
    EXPECT_FALSE(drag(data, Qt::MoveAction)) << "the source would delete its file";
}

} // namespace
} // namespace dorvane::testing
