// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/support/HungDisk.h"

#include <atomic>
#include <cstdarg>
#include <cstdio>
#include <dlfcn.h>
#include <fcntl.h>
#include <string_view>
#include <sys/types.h>
#include <unistd.h>

namespace {

std::atomic<bool> isDiskHung{false};

void waitFor(std::string_view path) {
    if (path.find("/hung/") != path.npos)
        isDiskHung.wait(true);
}

template<typename Function>
Function* real(const char* name) {
    return reinterpret_cast<Function*>(::dlsym(RTLD_NEXT, name));
}

} // namespace

namespace dorvane::testing {

void HungDisk::hang(bool isHung) {
    isDiskHung = isHung;
    isDiskHung.notify_all();
}

} // namespace dorvane::testing

extern "C" {

__attribute__((visibility("default"))) int open(const char* path, int flags, ...) {
    std::va_list arguments;
    va_start(arguments, flags);
    const mode_t mode = (flags & (O_CREAT | O_TMPFILE)) != 0 ? va_arg(arguments, mode_t) : 0;
    va_end(arguments);
    waitFor(path);
    return real<int(const char*, int, mode_t)>("open")(path, flags, mode);
}

__attribute__((visibility("default"))) ssize_t pread(int descriptor, void* out, size_t count,
                                                     off_t position) {
    if (isDiskHung) {
        char link[64];
        char path[4096];
        std::snprintf(link, sizeof link, "/proc/self/fd/%d", descriptor);
        const ssize_t length = ::readlink(link, path, sizeof path);
        waitFor({path, length > 0 ? static_cast<std::size_t>(length) : 0});
    }
    return real<ssize_t(int, void*, size_t, off_t)>("pread")(descriptor, out, count, position);
}

} // extern "C"
