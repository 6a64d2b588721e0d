// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/fuzz/FuzzSupport.h"

#include <QLoggingCategory>

// Bad input is what this is about; telling so each time would only slow it down.
extern "C" int LLVMFuzzerInitialize(int*, char***);
extern "C" int LLVMFuzzerInitialize(int*, char***) {
    QLoggingCategory::setFilterRules(QStringLiteral("*=false"));
    return 0;
}
