// SPDX-License-Identifier: GPL-3.0-or-later
#include "firing/TextSpeaker.h"

#include "firing/VoiceMenuTarget.h"
#include "tests/support/FakeDesktop.h"
#include "tests/support/Windows.h"

using namespace dorvane::testing;

namespace {

class TextSpeakerTest : public FakeDesktopTest, protected VoiceMenuTarget {
protected:
    TextSpeakerTest() {
        m_speaker.setTarget(this);
        m_menu.addAction(u"Select Voice"_qs);
    }
    void voiceSelected(const QAction& item) override {
        trace.add(item.data().toString() + u" selected"_qs);
    }

    TextSpeaker m_speaker{speech};
    QMenu m_menu;
};

TEST_F(TextSpeakerTest, menuKeepsItsFaceAndHoldsEachVoiceOnce) {
    m_speaker.fillMenuWithVoices(&m_menu);
    loop.runPending();
    m_speaker.fillMenuWithVoices(&m_menu);
    QStringList titles;
    for (const QAction* item : m_menu.actions())
        titles << item->text();
    EXPECT_EQ(titles, (QStringList{u"Select Voice"_qs, u"Anna"_qs, u"Tom && Tim"_qs, u"Zoe"_qs}));
    m_menu.actions().at(2)->trigger();
    m_speaker.speakText(u"tea"_qs, 2);
    m_speaker.speakText(u"none"_qs, 0);
    m_speaker.speakText(u"none"_qs, 4);
    EXPECT_THAT(trace.events(), ElementsAre("0 Tom & Tim selected", "0 Tom & Tim says tea"));
}

TEST_F(TextSpeakerTest, menuAndSpeakerMayBeGoneBeforeTheVoicesAreKnown) {
    auto menu = std::make_unique<QMenu>();
    auto speaker = std::make_unique<TextSpeaker>(speech);
    m_speaker.fillMenuWithVoices(menu.get());
    speaker->fillMenuWithVoices(&m_menu);
    speaker->speakText(u"tea"_qs, 1);
    menu.reset();
    speaker.reset();
    loop.runPending();
    EXPECT_EQ(m_menu.actions().size(), 1);
    EXPECT_TRUE(trace.events().empty());
}

} // namespace
