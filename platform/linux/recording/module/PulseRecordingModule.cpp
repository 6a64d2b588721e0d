// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/recording/module/AacFile.h"
#include "platform/linux/recording/module/AiffFile.h"
#include "platform/linux/recording/module/FileRecorder.h"

extern "C" {
#include <libavutil/log.h>
}

#include <utility>

namespace dorvane {

namespace {

class PulseRecordingModule final : public RecordingModule {
public:
    PulseRecordingModule() {
        // What matters is in the errors.
        av_log_set_level(AV_LOG_QUIET);
    }

    [[nodiscard]] std::unique_ptr<SoundRecorder>
    recorder(RecordingFormat format, const QString& path,
             std::shared_ptr<RecordingMonitor> monitor) const override {
        std::unique_ptr<RecordingFile> file;
        if (format == RecordingFormat::Aac)
            file = std::make_unique<AacFile>();
        else
            file = std::make_unique<AiffFile>();
        return std::make_unique<FileRecorder>(path, std::move(file), std::move(monitor));
    }
};

} // namespace

} // namespace dorvane

extern "C" Q_DECL_EXPORT dorvane::RecordingModule* dorvaneRecordingModule() {
    return new dorvane::PulseRecordingModule;
}
