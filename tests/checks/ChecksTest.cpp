// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/CheckWindow.h"
#include "checks/WillItRing.h"
#include "platform/Bundle.h"
#include "tests/support/AlarmOf.h"
#include "tests/support/FakeDesktop.h"
#include "tests/support/FakeSoundOutput.h"
#include "tests/support/Windows.h"

#include <QListWidget>

using namespace dorvane::testing;
using Obstacle = SoundOutputState::Obstacle;

namespace {

RingingFacts allIsWell() {
    RingingFacts facts;
    facts.icon = StatusItem::Shown::InPanel;
    facts.output = SoundOutputState{.obstacle = Obstacle::None, .detail = u"Desk"_qs, .volume = 50};
    facts.alarms.resize(1);
    facts.alarms[0].soundPath = u"/a/song.mp3"_qs;
    facts.alarms[0].voice = u"Zoe"_qs;
    facts.startsAtLogin = true;
    facts.desktop = DesktopAbilities{true, true, true, true};
    facts.wakes = WakeAlarm::Ability::NotPermitted;
    facts.proof = SoundProof::Heard;
    return facts;
}

// What is not fine: "warning icon", "failure alarm-voice". Whoever has to do something is told
// what.
std::vector<std::string> troubles(const std::vector<Check>& checks) {
    std::vector<std::string> found;
    for (const Check& check : checks) {
        EXPECT_FALSE(check.line.isEmpty());
        EXPECT_EQ(check.advice.isEmpty(), check.status == CheckStatus::Fine)
            << qPrintable(check.line);
        if (check.status != CheckStatus::Fine)
            found.push_back((nameOf(check.status) + u' ' + check.name).toStdString());
    }
    return found;
}

TEST(ChecksTest, saysOfEachFaultWhatItIs) {
    const auto output = [](Obstacle obstacle, int volume = 50) {
        return [=](RingingFacts& facts) {
            facts.output = SoundOutputState{.obstacle = obstacle, .detail = {}, .volume = volume};
        };
    };
    const auto proof = [](SoundProof heard) {
        return [=](RingingFacts& facts) { facts.proof = heard; };
    };
    const auto alarm = [](auto change) {
        return [=](RingingFacts& facts) { change(facts.alarms.front()); };
    };
    const struct {
        std::function<void(RingingFacts&)> change;
        std::vector<std::string> troubles;
    } rows[] = {
        {[](RingingFacts&) {}, {}},
        {[](RingingFacts& facts) { facts.icon.reset(); }, {"failure running"}},
        {[](RingingFacts& facts) { facts.icon = StatusItem::Shown::Nowhere; }, {"warning icon"}},
        {[](RingingFacts& facts) { facts.icon = StatusItem::Shown::Floating; }, {}},
        {[](RingingFacts& facts) { facts.output.reset(); }, {"failure sound-server"}},
        {output(Obstacle::NoModule), {"failure sound-module"}},
        {output(Obstacle::NoServer), {"failure sound-server"}},
        {output(Obstacle::NoOutput), {"failure sound-output"}},
        {output(Obstacle::DummyOutput), {"failure sound-output"}},
        {output(Obstacle::Muted, 0), {"failure sound-mute", "failure sound-volume"}},
        {output(Obstacle::VolumeZero, 0), {"failure sound-volume"}},
        {output(Obstacle::None, 10), {"warning sound-volume"}},
        {output(Obstacle::None, 11), {}},
        {proof(SoundProof::Silent), {"failure sound-proof"}},
        {proof(SoundProof::NotPlayed), {"failure sound-proof"}},
        {proof(SoundProof::Drowned), {"warning sound-proof"}},
        {proof(SoundProof::Deaf), {"warning sound-proof"}},
        {alarm([](AlarmFacts& of) { of.sound = SoundFault::Gone; }), {"warning alarm-sound"}},
        {alarm([](AlarmFacts& of) { of.sound = SoundFault::Unplayable; }), {"warning alarm-sound"}},
        {alarm([](AlarmFacts& of) { of.isReadInTime = false; }), {"warning alarm-sound"}},
        {alarm([](AlarmFacts& of) { of.isSilent = true; }), {"warning alarm-sound"}},
        {alarm([](AlarmFacts& of) { of.hasVoice = false; }), {"failure alarm-voice"}},
        {alarm([](AlarmFacts& of) { of = AlarmFacts(); }), {"warning alarm-silent"}},
        {[](RingingFacts& facts) { facts.startsAtLogin = false; }, {"warning login"}},
        {[](RingingFacts& facts) { facts.desktop = DesktopAbilities(); },
         {"warning announcements", "warning notifications", "warning waking-up", "warning clock"}},
        {[](RingingFacts& facts) { facts.isToWake = true; }, {"warning wake"}},
        {[](RingingFacts& facts) { facts.wakes = WakeAlarm::Ability::NoClock; }, {"warning wake"}},
    };
    std::map<QString, QString> names; // of the checks, by what they say
    for (const auto& row : rows) {
        RingingFacts facts = allIsWell();
        row.change(facts);
        const std::vector<Check> checks = checksOf(facts);
        EXPECT_EQ(troubles(checks), row.troubles) << &row - rows;
        for (const Check& check : checks) {
            EXPECT_EQ(names.emplace(check.line, check.name).first->second, check.name);
            const bool isHeard = check.line.contains(u"can be heard"_qs);
            EXPECT_FALSE(isHeard && worstOf(checks) == CheckStatus::Failure) << &row - rows;
        }
    }
}

class WillItRingTest : public FakeDesktopTest, protected DesktopProbe, protected WakeAlarm {
protected:
    void ask(std::function<void(const DesktopAbilities&)> done) override {
        if (m_desktopAnswers)
            loop.defer([done = std::move(done)] { done({true, true, true, true}); });
    }
    [[nodiscard]] Ability ability() const override { return Ability::NotPermitted; }
    void arm(const std::optional<QDateTime>&) override {}

    FakeSoundOutput m_output{loop};
    std::vector<AlarmPtr> m_alarms;
    bool m_desktopAnswers = true;
    bool m_isAsWished = true; // starts at login, and may wake the machine
    WillItRing m_checks{{.runLoop = loop,
                         .player = player,
                         .output = m_output,
                         .speech = speech,
                         .desktop = *this,
                         .wakeAlarm = *this,
                         .alarms = [this] { return m_alarms; },
                         .icon = [] { return StatusItem::Shown::InPanel; },
                         .startsAtLogin = [this] { return m_isAsWished; },
                         .isToWake = [this] { return !m_isAsWished; },
                         .testSound = u"ping"_qs}};
};

TEST_F(WillItRingTest, asksEverybodyOnceAndWaitsForNobodyForEver) {
    player.setFile(u"/gone"_qs, {.isPlayable = false});
    player.setFile(u"/hangs"_qs, {.loadDelay = 1h});
    player.setFile(u"/silent"_qs, {.isSilent = true});
    m_output.proof = SoundProof::Silent;
    m_alarms = {AlarmOf{.title = "well", .sound = "/song", .voice = "Zoe"}.alarm(),
                AlarmOf{.title = "gone", .sound = "/gone"}.alarm(),
                AlarmOf{.title = "gone, too", .sound = "/gone", .voice = "Nobody"}.alarm(),
                AlarmOf{.title = "silent", .sound = "/silent"}.alarm(),
                AlarmOf{.title = "spoken only", .sound = "/gone", .voice = "Zoe"}.alarm()};
    m_alarms.back()->setIsPlaySound(false);
    std::vector<std::string> quiet, loud;
    m_checks.ask(WillItRing::TestSound::None,
                 [&](const auto& checks) { quiet = troubles(checks); });
    EXPECT_TRUE(quiet.empty());
    loop.advance(1s);
    const std::vector<std::string> expected{"warning alarm-sound", "warning alarm-sound",
                                            "failure alarm-voice", "warning alarm-sound"};
    EXPECT_EQ(quiet, expected);
    EXPECT_EQ(m_output.watches(), 0U);
    EXPECT_TRUE(player.sounds().empty());

    m_alarms = {AlarmOf{.title = "hangs", .sound = "/hangs"}.alarm()};
    m_desktopAnswers = m_isAsWished = false;
    int answers = 0;
    for (int asked = 0; asked < 2; ++asked)
        m_checks.ask(WillItRing::TestSound::Played, [&](const auto& checks) {
            loud = troubles(checks);
            ++answers;
        });
    loop.advance(9s);
    EXPECT_EQ(answers, 0);
    loop.advance(2s);
    EXPECT_EQ(answers, 2);
    EXPECT_THAT(loud, ElementsAre("failure sound-proof", "warning alarm-sound", "warning login",
                                  "warning wake"));
}

TEST_F(WillItRingTest, windowShowsThemAndPlaysTheTestSound) {
    const Bundle bundle(QStringLiteral(DORVANE_BUNDLE), {});
    CheckWindow window(m_checks, bundle);
    m_output.proof = SoundProof::Silent;
    const auto summary = window.window().findChild<QLabel*>(u"summary"_qs);
    const auto list = window.window().findChild<QListWidget*>(u"list"_qs);
    const auto play = window.window().findChild<QPushButton*>(u"soundButton"_qs);
    window.show();
    EXPECT_FALSE(play->isEnabled());
    loop.advance(1s);
    EXPECT_EQ(summary->text(), u"Yes. Alarms will ring."_qs);
    const int before = list->count();
    play->click();
    loop.advance(1s);
    EXPECT_EQ(list->count(), before + 1);
    EXPECT_EQ(summary->text(), u"No. Something keeps alarms from being heard."_qs);
    EXPECT_EQ(list->currentRow(), 0) << "what is wrong comes first";
    EXPECT_EQ(list->currentItem()->data(Qt::AccessibleTextRole).toString(),
              u"Failure: A test sound was played and did not come out.\n"
              "Look at the output and the volumes in the sound settings."_qs);
    EXPECT_TRUE(play->isEnabled());
}

} // namespace
