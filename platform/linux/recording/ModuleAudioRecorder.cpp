// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/recording/ModuleAudioRecorder.h"

#include <QLibrary>

#include <utility>

namespace dorvane {

namespace {

// A server or a disk that hangs must not keep a session from ending.
constexpr int longestFinish = 3000; // milliseconds

} // namespace

ModuleAudioRecorder::ModuleAudioRecorder(RunLoop& loop, QString modulePath)
    : m_loop(loop)
    , m_modulePath(std::move(modulePath))
    , m_monitor(std::make_shared<RecordingMonitor>()) {
    m_worker.setMaxThreadCount(1);
    m_worker.setObjectName(QStringLiteral("recorder"));
}

ModuleAudioRecorder::~ModuleAudioRecorder() {
    m_ending = true;
    m_worker.waitForDone();
    m_recorder.reset(); // its thread may still report, which needs the rest
}

void ModuleAudioRecorder::finish() {
    m_ending = true;
    m_worker.start([this] { m_recorder.reset(); });
    m_worker.waitForDone(longestFinish);
}

bool ModuleAudioRecorder::record(const QString& path, Finished finished) {
    if (isRecording())
        return false;
    const std::uint64_t number = ++m_number;
    m_finished = std::move(finished);
    m_stopping = false;
    m_monitor = std::make_shared<RecordingMonitor>();
    m_monitor->failed = [this, number] {
        post([number](ModuleAudioRecorder& self) {
            if (number == self.m_number)
                self.stop();
        });
    };
    m_worker.start([this, number, path, monitor = m_monitor] { start(number, path, monitor); });
    return true;
}

void ModuleAudioRecorder::stop() {
    if (!isRecording() || std::exchange(m_stopping, true))
        return;
    m_worker.start([this, number = m_number] { complete(number); });
}

void ModuleAudioRecorder::cancel() {
    if (!isRecording())
        return;
    ++m_number;
    m_finished = nullptr;
    m_worker.start([this] { m_recorder.reset(); });
}

float ModuleAudioRecorder::takeLevel() {
    return m_monitor->level.exchange(0.0F);
}

void ModuleAudioRecorder::finished(std::uint64_t number, const Error& error) {
    if (number != m_number)
        return;
    ++m_number;
    std::exchange(m_finished, nullptr)(error);
}

void ModuleAudioRecorder::start(std::uint64_t number, const QString& path,
                                std::shared_ptr<RecordingMonitor> monitor) {
    if (m_ending)
        return;
    Error error = loadModule();
    if (!error) {
        m_recorder = m_module->recorder(RecordingFormat::Aiff, path, std::move(monitor));
        error = m_recorder->prepare();
    }
    if (!error)
        error = m_recorder->start();
    if (error) {
        m_recorder.reset();
        report(number, error);
    }
}

// A recording that could not be started has been reported already.
void ModuleAudioRecorder::complete(std::uint64_t number) {
    if (!m_recorder)
        return;
    const Error error = m_recorder->stop();
    m_recorder.reset();
    report(number, error);
}

ModuleAudioRecorder::Error ModuleAudioRecorder::loadModule() {
    if (m_module)
        return {};
    QLibrary library(m_modulePath);
    const auto entry =
        reinterpret_cast<RecordingModuleEntry>(library.resolve(recordingModuleEntryName));
    if (!entry)
        return AudioError{QStringLiteral("Error opening component: -1"), -1, library.errorString()};
    m_module.reset(entry());
    return {};
}

void ModuleAudioRecorder::report(std::uint64_t number, const Error& error) {
    post([number, error](ModuleAudioRecorder& self) { self.finished(number, error); });
}

void ModuleAudioRecorder::post(std::function<void(ModuleAudioRecorder&)> answer) const {
    m_loop.post(m_lifeline.guard(std::move(answer)));
}

} // namespace dorvane
