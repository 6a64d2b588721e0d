// SPDX-License-Identifier: GPL-3.0-or-later
// The same for the unit tests, see core.h.
#pragma once

#include "widgets.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
