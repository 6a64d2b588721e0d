// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/sound/ModuleSoundOutput.h"
#include "tests/platform/SoundEngineFixture.h"

#include <optional>

using namespace dorvane::testing;
using Obstacle = SoundOutputState::Obstacle;

namespace {

// Another output than the one that the other tests listen at.
class SoundOutputTest : public SoundEngineFixture {
protected:
    SoundOutputTest() {
        for (const char* sink : {"auto_null", "desk sink_properties=device.description=Desk"})
            m_modules << pactl(u"load-module module-null-sink sink_name="_qs + QLatin1String(sink));
    }
    ~SoundOutputTest() override {
        pactl(u"set-default-sink out"_qs);
        for (const QString& module : m_modules)
            pactl(u"unload-module "_qs + module);
    }

    static QString pactl(const QString& command) { return run(u"pactl "_qs + command); }

    QStringList m_modules;

    ModuleSoundOutput m_output{m_loop, m_player};
};

TEST_F(SoundOutputTest, tellsWhatStandsBetweenASoundAndSomebodysEars) {
    std::optional<SoundOutputState> state;
    const auto watch = m_output.watch([&](const SoundOutputState& now) { state = now; });
    const auto becomes = [&](Obstacle obstacle, int volume) {
        return until(
            [&] { return state && state->obstacle == obstacle && state->volume == volume; });
    };
    const struct {
        const char* command;
        Obstacle obstacle;
        int volume;
    } steps[] = {
        {"set-default-sink desk", Obstacle::None, 100},
        {"set-sink-volume desk 130%", Obstacle::None, 130},
        {"set-sink-mute desk 1", Obstacle::Muted, 130},
        {"set-sink-volume desk 0%", Obstacle::Muted, 0},
        {"set-sink-mute desk 0", Obstacle::VolumeZero, 0},
        {"set-default-sink auto_null", Obstacle::DummyOutput, 100},
        {"set-default-sink out", Obstacle::None, 100},
    };
    for (const auto& [command, obstacle, volume] : steps) {
        pactl(QLatin1String(command));
        EXPECT_TRUE(becomes(obstacle, volume)) << command;
    }

    // A sound goes where its stream is, and may be muted by itself.
    Playing playing(*this, tone("long.wav", 20));
    ASSERT_TRUE(playing.start());
    ASSERT_TRUE(until([&] { return playing.sound->currentTime().count() > 0; }));
    QString stream;
    for (const QString& line : pactl(u"list short sink-inputs"_qs).split(u'\n'))
        if (line.contains(QLatin1String("float32")))
            stream = line.section(u'\t', 0, 0);
    pactl(u"set-sink-input-mute %1 1"_qs.arg(stream));
    EXPECT_TRUE(becomes(Obstacle::Muted, 100));
    pactl(u"set-sink-input-mute %1 0"_qs.arg(stream));
    pactl(u"move-sink-input %1 desk"_qs.arg(stream));
    EXPECT_TRUE(becomes(Obstacle::VolumeZero, 0));
    EXPECT_EQ(state->detail, u"Desk"_qs);
    playing.sound->stop();
    EXPECT_TRUE(becomes(Obstacle::None, 100));
}

TEST_F(SoundOutputTest, findsTheServerThatComesLater) {
    const QByteArray rig = qgetenv("PULSE_SERVER");
    qputenv("PULSE_SERVER", "unix:/nope");
    std::vector<Obstacle> told;
    const auto watch =
        m_output.watch([&](const SoundOutputState& state) { told.push_back(state.obstacle); });
    EXPECT_TRUE(until([&] { return !told.empty(); }));
    runFor(1.5);
    qputenv("PULSE_SERVER", rig);
    EXPECT_TRUE(until([&] { return told.size() >= 2; }));
    EXPECT_EQ(told, (std::vector{Obstacle::NoServer, Obstacle::None}));
}

TEST_F(SoundOutputTest, provesThatASoundComesOutOrSaysWhatBecameOfIt) {
    const QString ping = QStringLiteral(DORVANE_PING);
    const struct {
        const char* command;
        QString path;
        SoundProof proof;
    } trials[] = {
        {"set-default-sink out", ping, SoundProof::Heard},
        {"set-sink-volume out 10%", ping, SoundProof::Heard},
        {"set-sink-mute out 1", ping, SoundProof::Silent},
        {"set-sink-mute out 0", u"/nowhere.aiff"_qs, SoundProof::NotPlayed},
    };
    for (const auto& [command, path, expected] : trials) {
        pactl(QLatin1String(command));
        std::vector<SoundProof> proofs;
        for (int asked = 0; asked < 2; ++asked)
            m_output.prove(path, [&](SoundProof proof) { proofs.push_back(proof); });
        EXPECT_TRUE(until([&] { return proofs.size() == 2; })) << command;
        EXPECT_EQ(proofs, (std::vector{expected, expected})) << command;
    }
    pactl(u"set-sink-volume out 100%"_qs);
}

} // namespace
