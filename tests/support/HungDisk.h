// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

namespace dorvane::testing {

// A disk that does not answer: while one of these hangs, whoever opens a file whose path contains
// "/hung/", or reads from one, waits, on whatever thread. HungDisk.cpp takes the place of open()
// and pread() in the program that it is linked into.
class HungDisk {
public:
    HungDisk() { hang(true); }
    ~HungDisk() { hang(false); }
    HungDisk(const HungDisk&) = delete;
    HungDisk& operator=(const HungDisk&) = delete;

private:
    static void hang(bool isHung);
};

} // namespace dorvane::testing
