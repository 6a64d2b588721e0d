// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/linux/recording/module/PulseCapture.h"
#include "platform/linux/recording/module/RecordingFile.h"
#include "platform/linux/recording/RecordingModule.h"

#include <thread>
#include <vector>

namespace dorvane {

// The microphone, the file, and the thread that carries the samples from one to the other.
class FileRecorder final : public SoundRecorder {
public:
    FileRecorder(QString path, std::unique_ptr<RecordingFile> file,
                 std::shared_ptr<RecordingMonitor> monitor);
    ~FileRecorder() override;
    FileRecorder(const FileRecorder&) = delete;
    FileRecorder& operator=(const FileRecorder&) = delete;

    [[nodiscard]] Error prepare() override;
    [[nodiscard]] Error start() override;
    [[nodiscard]] Error stop() override;
    [[nodiscard]] const QString& file() const override { return m_outputFile; }

private:
    [[nodiscard]] Error prepareInput();
    [[nodiscard]] Error prepareFile();
    [[nodiscard]] Error complete();
    [[nodiscard]] Error fileError(const char* step, int code) const;
    [[nodiscard]] bool hasHeardNothing() const;
    [[nodiscard]] QString partPath() const { return m_outputFile + QStringLiteral(".part"); }
    void endWriting();

    // Writing thread.
    void writeSamples();
    [[nodiscard]] Error writeWhatArrived();

    const QString m_outputFile;
    std::unique_ptr<RecordingFile> m_file;
    std::shared_ptr<RecordingMonitor> m_monitor;
    PulseCapture m_capture;
    std::vector<float> m_block;
    bool m_hasPartFile = false;
    std::atomic<bool> m_ending{false};
    // The writing thread's, until that has ended.
    Error m_failure;
    bool m_isFileWhole = true;
    float m_loudest = 0.0F;
    std::thread m_writer;
};

} // namespace dorvane
