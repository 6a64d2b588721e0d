// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/state/CrashReport.h"

#include "platform/linux/state/OwnFolder.h"
#include "platform/Log.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <array>
#include <atomic>
#include <climits>
#include <csignal>
#include <cstring>
#include <ctime>
#include <elf.h>
#include <execinfo.h>
#include <fcntl.h>
#include <link.h>
#include <unistd.h>

namespace dorvane {

namespace {

constexpr int faults[] = {SIGSEGV, SIGBUS, SIGILL, SIGFPE, SIGABRT};
constexpr auto newReport = "crash-report.new";
constexpr int mostReports = 10;

// Everything that the handler needs, which may not allocate and gets nothing but the signal.
struct Prepared {
    std::array<char, PATH_MAX> path{};
    std::array<char, 128> heading{};
    alignas(16) std::array<char, 64 * 1024> stack{}; // for a stack that has run over
};
Prepared prepared;
std::atomic_flag isReported;

void writeText(int file, const char* text) {
    [[maybe_unused]] const auto written = ::write(file, text, std::strlen(text));
}

void writeNumber(int file, const char* name, unsigned long long number, unsigned base) {
    std::array<char, 24> digits{};
    std::size_t at = digits.size() - 1;
    do {
        digits[--at] = "0123456789abcdef"[number % base];
        number /= base;
    } while (number > 0 && at > 0);
    writeText(file, name);
    writeText(file, digits.data() + at);
    writeText(file, "\n");
}

// Only what a handler may call.
void writeReport(int signal, const siginfo_t& info) {
    const int file = ::open(prepared.path.data(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0600);
    if (file < 0)
        return;
    writeText(file, prepared.heading.data());
    writeText(file, "Signal: SIG");
    writeText(file, ::sigabbrev_np(signal));
    writeText(file, "\n");
    if (info.si_code > 0)
        writeNumber(file, "Address: 0x", reinterpret_cast<unsigned long long>(info.si_addr), 16);
    timespec now{};
    ::clock_gettime(CLOCK_REALTIME, &now);
    writeNumber(file, "Seconds since 1970: ", static_cast<unsigned long long>(now.tv_sec), 10);
    writeText(file, "\n");
    std::array<void*, 64> addresses{};
    ::backtrace_symbols_fd(addresses.data(), ::backtrace(addresses.data(), int(addresses.size())),
                           file);
    ::fsync(file);
    ::close(file);
}

extern "C" void reportCrash(int signal, siginfo_t* info, void* /*context*/) {
    const int savedError = errno;
    if (!isReported.test_and_set())
        writeReport(signal, *info);
    errno = savedError;
    // The default action is back. A fault comes again by itself, with what a debugger wants to know
    // of it; a signal that was sent does not.
    if (info->si_code <= 0)
        ::raise(signal);
}

int addBuildId(dl_phdr_info* program, std::size_t /*size*/, void* text) {
    for (int i = 0; i < program->dlpi_phnum; ++i) {
        const ElfW(Phdr)& header = program->dlpi_phdr[i];
        if (header.p_type != PT_NOTE)
            continue;
        const auto begin = reinterpret_cast<const char*>(program->dlpi_addr + header.p_vaddr);
        const auto aligned = [](std::size_t size) { return (size + 3) & ~std::size_t(3); };
        for (std::size_t at = 0; at + sizeof(ElfW(Nhdr)) < header.p_memsz;) {
            ElfW(Nhdr) note{};
            std::memcpy(&note, begin + at, sizeof note);
            at += sizeof note + aligned(note.n_namesz);
            if (note.n_type == NT_GNU_BUILD_ID)
                *static_cast<QByteArray*>(text) =
                    QByteArray(begin + at, qsizetype(note.n_descsz)).toHex();
            at += aligned(note.n_descsz);
        }
    }
    return 1; // the first is the program itself
}

template<std::size_t size>
void keep(std::array<char, size>& place, const QByteArray& text) {
    std::strncpy(place.data(), text.constData(), size - 1);
}

} // namespace

void reportCrashes(const QString& folder, const char* version) {
    makeOwnFolder(folder);
    QByteArray buildId;
    ::dl_iterate_phdr(addBuildId, &buildId);
    keep(prepared.path, QFile::encodeName(folder + QLatin1Char('/') + QLatin1String(newReport)));
    keep(prepared.heading, QByteArray("Dorvane ") + version + "\nBuild: " + buildId + "\n");
    void* first = nullptr;
    ::backtrace(&first, 1); // loads what it needs

    const stack_t stack{
        .ss_sp = prepared.stack.data(), .ss_flags = 0, .ss_size = prepared.stack.size()};
    ::sigaltstack(&stack, nullptr);
    struct sigaction action {};
    action.sa_sigaction = reportCrash;
    action.sa_flags = SA_SIGINFO | SA_ONSTACK | static_cast<int>(SA_RESETHAND);
    for (const int signal : faults)
        ::sigaction(signal, &action, nullptr);
}

std::optional<QString> takeCrashReport(const QString& folder) {
    QFile report(folder + QLatin1Char('/') + QLatin1String(newReport));
    if (!report.exists())
        return std::nullopt;
    const QDateTime when = QFileInfo(report).lastModified();
    const QString name = QStringLiteral("%1/crash-%2.txt")
                             .arg(folder, when.toString(QStringLiteral("yyyy-MM-ddTHH-mm-ss-zzz")));
    if (!report.rename(name)) {
        qCWarning(logPlatform).noquote() << "cannot rename" << report.fileName();
        return std::nullopt;
    }
    const QStringList all =
        QDir(folder).entryList({QStringLiteral("crash-*.txt")}, QDir::Files, QDir::Name);
    for (qsizetype i = 0; i < all.size() - mostReports; ++i)
        QFile::remove(folder + QLatin1Char('/') + all.at(i));
    return name;
}

} // namespace dorvane
