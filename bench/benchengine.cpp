// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// Shreds the given path with the worker alone: its reports go to receivers that
// do nothing, connected as the controller connects them.

#include "engine/filecrusher.h"
#include "probe.h"

#include <QCoreApplication>
#include <QTimer>

#include <cstdlib>

int main(int argc, char **argv)
{
    QCoreApplication application(argc, argv);
    const QString path = QString::fromLocal8Bit(argc > 1 ? argv[1] : "");
    if (path.isEmpty())
        qFatal("which path?");

    FileCrusher crusher;
    double end = 0;
    const auto finish = [&end](bool shredded) {
        end = probe::now();
        QCoreApplication::exit(shredded ? EXIT_SUCCESS : EXIT_FAILURE);
    };
    // Receivers that do nothing, and for which the worker waits for nobody.
    constexpr Qt::ConnectionType direct = Qt::DirectConnection;
    QObject::connect(
        &crusher, &FileCrusher::finishPercent, &application, [] {}, direct);
    QObject::connect(
        &crusher, &FileCrusher::addToHistory, &application, [] {}, direct);
    QObject::connect(
        &crusher, &FileCrusher::finishOne, &application, [&finish] { finish(true); }, direct);
    QObject::connect(
        &crusher, &FileCrusher::failedOne, &application, [&finish] { finish(false); }, direct);

    // Begun from the running loop, so that the start of thread and program is not measured.
    double begin = 0;
    QTimer::singleShot(0, &application, [&] {
        begin = probe::now();
        crusher.addPath(path);
        crusher.start();
    });
    const int status = QCoreApplication::exec();
    probe::tell("run_ms", end - begin);
    probe::tell("peak_kib", probe::statusKibibytes("VmHWM"));
    std::_Exit(status); // the worker still runs
}
