// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/recording/module/AiffFile.h"

#include <QFile>

#include <cerrno>
#include <fcntl.h>
#include <sndfile.h>
#include <unistd.h>
#include <utility>

namespace dorvane {

namespace {

// The library tells that something failed, the system why.
int systemError() {
    return errno == 0 ? -EIO : -errno;
}

} // namespace

AiffFile::~AiffFile() {
    sf_close(m_file);
    if (m_descriptor >= 0)
        ::close(m_descriptor);
}

int AiffFile::create(const QString& path) {
    m_descriptor =
        ::open(QFile::encodeName(path).constData(), O_RDWR | O_CREAT | O_TRUNC | O_CLOEXEC, 0666);
    return m_descriptor < 0 ? -errno : 0;
}

int AiffFile::setFormat(int rate, int channels) {
    SF_INFO info{};
    info.samplerate = rate;
    info.channels = channels;
    info.format = SF_FORMAT_AIFF | SF_FORMAT_PCM_16;
    errno = 0;
    m_file = sf_open_fd(m_descriptor, SFM_WRITE, &info, SF_FALSE);
    if (!m_file)
        return systemError();
    sf_command(m_file, SFC_SET_CLIPPING, nullptr, SF_TRUE);
    return 0;
}

int AiffFile::writeHeader() {
    errno = 0;
    sf_command(m_file, SFC_UPDATE_HEADER_NOW, nullptr, 0);
    return sf_error(m_file) == SF_ERR_NO_ERROR ? 0 : systemError();
}

int AiffFile::write(const float* samples, std::size_t frames) {
    errno = 0;
    const auto count = static_cast<sf_count_t>(frames);
    return sf_writef_float(m_file, samples, count) == count ? 0 : systemError();
}

int AiffFile::close() {
    errno = 0;
    const bool isComplete = sf_close(std::exchange(m_file, nullptr)) == 0;
    return isComplete && ::fsync(m_descriptor) == 0 ? 0 : systemError();
}

QString AiffFile::reason(int code) const {
    return qt_error_string(-code);
}

} // namespace dorvane
