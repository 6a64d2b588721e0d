// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QString>

#include <atomic>
#include <vector>

namespace dorvane {

// An installed voice: what people call it, and what the synthesiser does.
struct SpeechVoice {
    QString name;
    QByteArray identifier;
};

// What the loadable module gives: a synthesiser that turns text into sound. It keeps global state,
// so everything here happens on one thread at a time.
class SpeechModule {
public:
    virtual ~SpeechModule() = default;

    // Every voice, always in the same order. Empty with the reason in `error` when the synthesiser
    // cannot be used.
    [[nodiscard]] virtual std::vector<SpeechVoice> voices(QString& error) = 0;

    // The spoken text as the contents of a sound file; two minutes of it at most. Empty when there
    // is nothing to be heard, with a reason in `error` when that is a failure. Gives up soon after
    // `cancelled` is set.
    [[nodiscard]] virtual QByteArray render(const QString& text, const SpeechVoice& voice,
                                            const std::atomic<bool>& cancelled, QString& error) = 0;
};

// The module's one entry point, a function of this type and name. The caller owns the result.
using SpeechModuleEntry = SpeechModule* (*)();
inline constexpr const char* speechModuleEntryName = "dorvaneSpeechModule";

} // namespace dorvane
