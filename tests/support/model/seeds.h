// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// Which random cases a run of a test tries. Every run tries the same ones; for a long run,
// FILESHREDDER_MODEL_CASES says how many and FILESHREDDER_MODEL_FIRST the seed of the first.

#pragma once

#include "signallog.h"

#include <QString>

#include <functional>

namespace testsupport
{

/// Tries as many seeds as wanted, by default @p usual, and ends at the first whose difference
/// @p difference is not empty: "seed N: ...". Empty when all agree.
QString firstDifference(int usual, const std::function<QString(quint32 seed)> &difference);

/// Empty when the product said what the model says, else the first difference.
QString differenceBetween(const SignalRecords &model, const SignalRecords &product);

} // namespace testsupport
