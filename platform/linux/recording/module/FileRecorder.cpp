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

// 60 dB below the loudest: a microphone that is on hears more than that in any room.
constexpr float silence = 0.001F;

QString serverWords(int code) {
    switch (code) {
    case PA_ERR_NOENTITY: // nothing else is looked for at the server
        return QStringLiteral("There is no microphone.");
    case PA_ERR_CONNECTIONREFUSED:
    case PA_ERR_INVALIDSERVER:
        return QStringLiteral("No sound server answers.");
    case PA_ERR_TIMEOUT:
        return QStringLiteral("The sound server does not answer.");
    case PA_ERR_ACCESS:
        return QStringLiteral("The sound server does not let Dorvane listen.");
    case PA_ERR_CONNECTIONTERMINATED:
        return QStringLiteral("The sound server has gone.");
    case PA_ERR_KILLED:
        return QStringLiteral("The microphone has gone.");
    default:
        return QStringLiteral("The sound server says: %1.")
            .arg(QString::fromUtf8(pa_strerror(code)));
    }
}

QString fileWords(int code, const QString& reason) {
    switch (-code) {
    case ENOSPC:
    case EDQUOT:
        return QStringLiteral("The disk is full.");
    case EACCES:
    case EPERM:
    case EROFS:
        return QStringLiteral("Nothing may be written into the folder of the recordings.");
    default:
        return QStringLiteral("The recording cannot be written: %1.").arg(reason);
    }
}

SoundRecorder::Error serverError(const char* step, int code) {
    if (code == PA_OK)
        return {};
    return failure(step, code, serverWords(code));
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
    Error failure = m_failure ? m_failure : stopped;
    if (!m_isFileWhole || (failure && hasHeardNothing()))
        return failure;
    if (Error incomplete = complete())
        return incomplete;
    if (failure)
        failure->isKept = true;
    return failure;
}

bool FileRecorder::hasHeardNothing() const {
    return m_loudest < silence;
}

FileRecorder::Error FileRecorder::complete() {
    if (hasHeardNothing())
        return failure("Nothing was heard", 0,
                       QStringLiteral("Nothing was heard: is the microphone muted?"));
    if (m_capture.hasGaps())
        qCWarning(logPlatform).noquote() << "the disk was too slow for" << m_outputFile;
    if (const int code = m_file->close(); code < 0)
        return fileError("ExtAudioFileWriteAsync failed", code);
    const QByteArray part = QFile::encodeName(partPath());
    if (std::rename(part.constData(), QFile::encodeName(m_outputFile).constData()) < 0)
        return failure("ExtAudioFileWriteAsync failed", -errno,
                       fileWords(-errno, qt_error_string(errno)));
    m_hasPartFile = false;
    return {};
}

FileRecorder::Error FileRecorder::fileError(const char* step, int code) const {
    return failure(step, code, fileWords(code, m_file->reason(code)));
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
    // stop() has seen to it that nothing more arrives. A microphone that has gone had the last word
    // before the file was up to date.
    if (m_isFileWhole)
        if (Error error = writeWhatArrived())
            m_failure = error;
    if (m_failure && !m_ending)
        m_monitor->failed();
}

FileRecorder::Error FileRecorder::writeWhatArrived() {
    while (const std::size_t count = m_capture.read(m_block.data(), m_block.size())) {
        float level = m_monitor->level;
        for (std::size_t i = 0; i < count; ++i)
            level = std::max(level, std::abs(m_block[i]));
        m_monitor->level = level;
        m_loudest = std::max(m_loudest, level);
        const auto frames = count / static_cast<std::size_t>(m_capture.channels());
        if (const int code = m_file->write(m_block.data(), frames); code < 0) {
            m_isFileWhole = false;
            return fileError("ExtAudioFileWriteAsync failed", code);
        }
    }
    return {};
}

} // namespace dorvane
