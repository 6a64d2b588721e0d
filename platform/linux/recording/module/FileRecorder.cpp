// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/recording/module/FileRecorder.h"

#include "platform/Log.h"

#include <QFile>

#include <cerrno>
#include <cmath>
#include <cstdio>
#include <utility>

namespace dorvane {

namespace {

SoundRecorder::Error failure(const char* step, int code, const QString& reason) {
    return AudioError{QString::asprintf("%s: %d", step, code), code, reason};
}

SoundRecorder::Error serverError(const char* step, int code) {
    if (code == PA_OK)
        return {};
    // Nothing else is looked for at the server.
    return failure(step, code,
                   code == PA_ERR_NOENTITY ? QStringLiteral("there is no microphone")
                                           : QString::fromUtf8(pa_strerror(code)));
}

} // namespace

FileRecorder::FileRecorder(QString path, std::unique_ptr<RecordingFile> file,
                           std::shared_ptr<RecordingMonitor> monitor)
    : m_outputFile(std::move(path)), m_file(std::move(file)), m_monitor(std::move(monitor)) {}

FileRecorder::~FileRecorder() {
    endWriting();
    m_file.reset();
    if (m_hasPartFile)
        QFile::remove(partPath());
}

FileRecorder::Error FileRecorder::prepare() {
    if (Error error = prepareInput())
        return error;
    return prepareFile();
}

FileRecorder::Error FileRecorder::prepareInput() {
    using Step = int (PulseCapture::*)();
    const std::pair<const char*, Step> steps[] = {
        {"Error opening component", &PulseCapture::connect},
        {"Failed to get default input device", &PulseCapture::findDefaultSource},
        {"Failed to get input device ASBD", &PulseCapture::readSource},
        {"Failed to set input device ASBD", &PulseCapture::makeStream},
        {"Failed to initialize AU", &PulseCapture::openStream},
    };
    for (const auto& [name, step] : steps)
        if (Error error = serverError(name, (m_capture.*step)()))
            return error;
    const std::size_t frames = m_capture.blockFrames();
    if (frames == 0)
        return serverError("Failed to get audio sample size", PA_ERR_INVALID);
    m_capture.makeBuffers();
    m_block.resize(frames * static_cast<std::size_t>(m_capture.channels()));
    return {};
}

FileRecorder::Error FileRecorder::prepareFile() {
    int code = m_file->create(partPath());
    if (code < 0)
        return fileError("ExtAudioFileCreateNew failed", code);
    m_hasPartFile = true;
    code = m_file->setFormat(m_capture.rate(), m_capture.channels());
    if (code < 0)
        return fileError("ExtAudioFileSetProperty failed", code);
    code = m_file->writeHeader();
    if (code < 0)
        return fileError("ExtAudioFileWriteAsync failed", code);
    return {};
}

FileRecorder::Error FileRecorder::start() {
    m_writer = std::thread([this] { writeSamples(); });
    return serverError("Failed to start AU", m_capture.start());
}

FileRecorder::Error FileRecorder::stop() {
    const Error stopped = serverError("Failed to stop AU", m_capture.stop());
    endWriting();
    if (m_failure)
        return m_failure;
    return stopped ? stopped : complete();
}

FileRecorder::Error FileRecorder::complete() {
    if (m_capture.hasGaps())
        qCWarning(logPlatform).noquote() << "the disk was too slow for" << m_outputFile;
    if (const int code = m_file->close(); code < 0)
        return fileError("ExtAudioFileWriteAsync failed", code);
    const QByteArray part = QFile::encodeName(partPath());
    if (std::rename(part.constData(), QFile::encodeName(m_outputFile).constData()) < 0)
        return failure("ExtAudioFileWriteAsync failed", -errno, qt_error_string(errno));
    m_hasPartFile = false;
    return {};
}

FileRecorder::Error FileRecorder::fileError(const char* step, int code) const {
    return failure(step, code, m_file->reason(code));
}

void FileRecorder::endWriting() {
    m_ending = true;
    m_capture.wake();
    if (m_writer.joinable())
        m_writer.join();
}

void FileRecorder::writeSamples() {
    while (!m_failure && !m_ending) {
        m_capture.waitForSamples();
        m_failure = writeWhatArrived();
        if (!m_failure)
            m_failure = serverError("Failed to read AU", m_capture.lost());
    }
    // stop() has seen to it that nothing more arrives.
    if (!m_failure)
        m_failure = writeWhatArrived();
    if (m_failure && !m_ending)
        m_monitor->failed();
}

FileRecorder::Error FileRecorder::writeWhatArrived() {
    while (const std::size_t count = m_capture.read(m_block.data(), m_block.size())) {
        float level = m_monitor->level;
        for (std::size_t i = 0; i < count; ++i)
            level = std::max(level, std::abs(m_block[i]));
        m_monitor->level = level;
        const auto frames = count / static_cast<std::size_t>(m_capture.channels());
        if (const int code = m_file->write(m_block.data(), frames); code < 0)
            return fileError("ExtAudioFileWriteAsync failed", code);
    }
    return {};
}

} // namespace dorvane
