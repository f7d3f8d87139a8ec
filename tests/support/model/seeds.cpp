// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

#include "seeds.h"

#include <algorithm>
#include <memory>

namespace testsupport
{

namespace
{

/// A few records from @p first on; both sides go apart after that.
QString shownFrom(int first, const SignalRecords &records)
{
    constexpr int enough = 6;
    QString text;
    const SignalRecords shown = records.mid(first, enough);
    for (const SignalRecord &record : shown) {
        const std::unique_ptr<char[]> line(toString(record));
        text += QStringLiteral("\n  ") + QString::fromUtf8(line.get());
    }
    return text;
}

} // namespace

QString firstDifference(int usual, const std::function<QString(quint32 seed)> &difference)
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

QString differenceBetween(const SignalRecords &model, const SignalRecords &product)
{
    const auto [expected, found] =
        std::mismatch(model.begin(), model.end(), product.begin(), product.end());
    if (expected == model.end() && found == product.end())
        return QString();
    const int first = static_cast<int>(expected - model.begin());
    return QStringLiteral("from signal %1 on the model says%2\nand the product%3")
        .arg(first)
        .arg(shownFrom(first, model), shownFrom(first, product));
}

} // namespace testsupport
