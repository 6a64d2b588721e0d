// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/DateHelpers.h"

#include <QString>

namespace dorvane {

struct AlarmForm;

// The sentence at the bottom of the editor: what the alarm in the form will do, with the year of a
// date that is not of the next twelve months. English; the names of months and the AM/PM mark are
// in the locale's language.
[[nodiscard]] QString manageDescriptionLabel(const AlarmForm& form, QDate today,
                                             const QLocale& locale = dateLanguage());

} // namespace dorvane
