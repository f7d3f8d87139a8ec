// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// The controller and its model, given the same requests: one case of random ones.

#pragma once

#include "modelwalle.h"
#include "randomtree.h"

#include "walleharness.h"

#include <functional>

namespace testsupport
{

class TwinControllers
{
public:
    /// @p product has performed everything and has neither rows nor a history nor an open run.
    TwinControllers(quint32 seed, WalleHarness &product);

    /// Makes some random requests; returns the first difference, empty when there is none.
    QString differenceInCase();

private:
    /// The same request to both; it is only posted to the controller.
    struct Request {
        std::function<void(WalleHarness &)> toProduct;
        std::function<void(ModelWalle &)> toModel;
    };

    QString differenceInStep();
    QString differenceAfter(const QList<Request> &requests, const Request *another = nullptr,
                            const QByteArray &signal = {}, int at = 0);
    QString differenceAfterStopInTime(QList<Request> requests);
    QString differenceInSaid();

    Request randomRequest();
    Request randomRunRequest();
    Request batch();
    Request clickOnSome();
    static Request command(int code);
    QString somePath();
    void changeSomeFile();

    Dice dice;
    RandomTree tree;
    ModelWalle model;
    WalleHarness &harness;
    SignalLog &reports;     ///< the worker's; like it, lives until the process ends
    QByteArrayList entries; ///< what can be listed
};

} // namespace testsupport
