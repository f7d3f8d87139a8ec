// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// The whole program measured from inside: the real window, controller, worker
// and history in a sandbox home. What is measured comes first, then the paths:
//   run PATH...    shred, agreeing to the question
//   stop PATH...   the same, and a click on stop while it goes on
//   rows PATH...   drop, untick all, tick all, remove all
//   start TIME     from TIME (milliseconds, monotonic) to the first drawn window

#include "firstpaint.h"
#include "probe.h"
#include "ui/application.h"
#include "windowprobe.h"

#include <QApplication>

#include <cstdlib>
#include <memory>

namespace
{

/// Milliseconds after the start at which a click on stop finds a long run under way.
constexpr int underWay = 100;

void measureRun(WindowProbe &probe, const QStringList &paths)
{
    probe.drop(paths);
    probe::tell("run_ms", probe.crush());
    probe::tell("stall_ms", probe.stalls.stop());
}

void measureRows(WindowProbe &probe, const QStringList &paths)
{
    probe::tell("rows_ms", probe.drop(paths));
    probe::tell("uncheck_ms", probe.setAllChecked(false));
    probe::tell("check_ms", probe.setAllChecked(true));
    probe::tell("remove_ms", probe.removeChecked());
}

} // namespace

int main(int argc, char **argv)
{
    const std::unique_ptr<QApplication> application = makeApplication(argc, argv);
    const QStringList arguments = QCoreApplication::arguments().mid(1);
    const QString what = arguments.value(0);
    const QStringList paths = arguments.mid(1);
    if (paths.isEmpty())
        qFatal("see the head of this program's source");
    probe::insistOnSandbox();
    if (what == QLatin1String("start"))
        return firstpaint::show<MainWindow>(paths.first().toDouble());

    auto *probe = new WindowProbe; // its threads run until the process ends
    if (what == QLatin1String("run")) {
        measureRun(*probe, paths);
    } else if (what == QLatin1String("stop")) {
        probe->drop(paths);
        probe::tell("stop_ms", probe->crushAndStop(underWay));
        probe::tell("stall_ms", probe->stalls.stop());
    } else if (what == QLatin1String("rows")) {
        measureRows(*probe, paths);
    }
    probe::tell("peak_kib", probe::statusKibibytes("VmHWM"));
    std::_Exit(EXIT_SUCCESS);
}
