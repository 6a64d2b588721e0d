// SPDX-License-Identifier: GPL-3.0-or-later
#include "firing/TextSpeaker.h"

#include "tests/support/FakeDesktop.h"
#include "tests/support/Windows.h"

using namespace dorvane::testing;

namespace {

using TextSpeakerTest = FakeDesktopTest;

TEST_F(TextSpeakerTest, menuAndSpeakerMayBeGoneBeforeTheVoicesAreKnown) {
    TextSpeaker living(speech);
    QMenu face;
    face.addAction(u"Select Voice"_qs);
    auto menu = std::make_unique<QMenu>();
    auto speaker = std::make_unique<TextSpeaker>(speech);
    living.fillMenuWithVoices(menu.get());
    speaker->fillMenuWithVoices(&face);
    speaker->speakText(u"tea"_qs, 1);
    menu.reset();
    speaker.reset();
    loop.runPending();
    EXPECT_EQ(face.actions().size(), 1);
    EXPECT_TRUE(trace.events().empty());
}

} // namespace
