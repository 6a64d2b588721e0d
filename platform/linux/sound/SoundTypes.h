// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <array>

namespace dorvane {

// A type of file that can be played, and what FFmpeg needs for it.
struct SoundType {
    const char* mimeType;
    const char* demuxer;
    const char* decoder;
};

// The names that the shared MIME database gives, in its older and newer editions.
inline constexpr std::array soundTypes{
    SoundType{"audio/x-wav", "wav", "pcm_s16le"},
    SoundType{"audio/vnd.wave", "wav", "pcm_s16le"},
    SoundType{"audio/wav", "wav", "pcm_s16le"},
    SoundType{"audio/x-aiff", "aiff", "pcm_s16be"},
    SoundType{"audio/x-aifc", "aiff", "pcm_s16be"},
    SoundType{"audio/aiff", "aiff", "pcm_s16be"},
    SoundType{"audio/ogg", "ogg", "vorbis"},
    SoundType{"audio/x-vorbis+ogg", "ogg", "vorbis"},
    SoundType{"audio/x-opus+ogg", "ogg", "opus"},
    SoundType{"audio/x-flac+ogg", "ogg", "flac"},
    SoundType{"audio/flac", "flac", "flac"},
    SoundType{"audio/mpeg", "mp3", "mp3"},
    SoundType{"audio/mp4", "m4a", "aac"},
    SoundType{"audio/x-m4a", "m4a", "aac"},
    SoundType{"audio/x-caf", "caf", "alac"},
    SoundType{"audio/basic", "au", "pcm_mulaw"},
};

} // namespace dorvane
