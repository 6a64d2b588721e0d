// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

namespace dorvane {

struct AlarmForm;

// What is wrong with a form: the lines to show, each with its line break, and the field to go to.
struct FormFaults {
    enum class Field { None, Title, Interval };

    QString message; // empty for a form that is right
    Field field = Field::None;
};

[[nodiscard]] FormFaults faultsOf(const AlarmForm& form);

} // namespace dorvane
