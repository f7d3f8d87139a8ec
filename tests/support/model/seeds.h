// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// Which random cases a run of a test tries. Every run tries the same ones; for a long run,
// FILESHREDDER_MODEL_CASES says how many and FILESHREDDER_MODEL_FIRST the seed of the first.

#pragma once

#include "signallog.h"

#include <algorithm>
#include <functional>
#include <memory>

namespace testsupport
{

/// Tries as many seeds as wanted, by default @p usual, and ends at the first whose difference
/// @p difference is not empty: "seed N: ...". Empty when all agree.
inline QString firstDifference(int usual, const std::function<QString(quint32 seed)> &difference)
{
    bool isSet = false;
    const int wanted = qEnvironmentVariableIntValue("FILESHREDDER_MODEL_CASES", &isSet);
    const int cases = isSet ? wanted : usual;
    const int first = qEnvironmentVariableIntValue("FILESHREDDER_MODEL_FIRST", &isSet);
    for (int number = 0; number < cases; ++number) {
        const auto seed = static_cast<quint32>((isSet ? first : 1) + number);
        const QString found = difference(seed);
        if (!found.isEmpty())
            return QStringLiteral("seed %1: %2").arg(seed).arg(found);
    }
    return QString();
}

/// Empty when the product said what the model says, else the first difference.
inline QString differenceBetween(const SignalRecords &model, const SignalRecords &product)
{
    const auto [expected, found] =
        std::mismatch(model.begin(), model.end(), product.begin(), product.end());
    if (expected == model.end() && found == product.end())
        return QString();
    const auto told = [](const auto &record, const SignalRecords &all) {
        const std::unique_ptr<char[]> line(record == all.end() ? nullptr : toString(*record));
        return line ? QString::fromUtf8(line.get()) : QStringLiteral("nothing");
    };
    return QStringLiteral("signal %1 is %2 in the model and %3 in the product")
        .arg(expected - model.begin())
        .arg(told(expected, model), told(found, product));
}

} // namespace testsupport
