// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

#include "windowprobe.h"

#include "probe.h"
#include "widgets/zztablecell.h"

#include <QApplication>
#include <QCheckBox>
#include <QDialog>
#include <QDropEvent>
#include <QEventLoop>
#include <QMimeData>
#include <QPushButton>
#include <QTableWidget>
#include <QTimerEvent>
#include <QUrl>

namespace
{

constexpr int beat = 4;      // milliseconds
constexpr int lookEvery = 1; // milliseconds

} // namespace

StallWatch::StallWatch() = default;

void StallWatch::start()
{
    longest = 0;
    lastBeat = probe::now();
    timer = startTimer(beat, Qt::PreciseTimer);
}

double StallWatch::stop()
{
    killTimer(timer);
    return qMax(0.0, qMax(longest, probe::now() - lastBeat) - beat);
}

void StallWatch::timerEvent(QTimerEvent *)
{
    const double thisBeat = probe::now();
    longest = qMax(longest, thisBeat - lastBeat);
    lastBeat = thisBeat;
}

WindowProbe::WindowProbe()
    : table(window.findChild<QTableWidget *>(QStringLiteral("mainTable")))
    , crushButton(window.findChild<QPushButton *>(QStringLiteral("crushButton")))
{
    qApp->installEventFilter(this);
    window.show();
    draw();
}

double WindowProbe::drop(const QStringList &paths)
{
    QList<QUrl> urls;
    for (const QString &path : paths)
        urls.append(QUrl::fromLocalFile(path));
    QMimeData data;
    data.setUrls(urls);
    const int wanted = table->rowCount() + paths.size();
    const QPoint place(100, 100);
    QDragEnterEvent entering(place, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(&window, &entering);
    begin = probe::now();
    QDropEvent event(place, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(&window, &event);
    await([&] {
        return table->rowCount() == wanted && crushButton->isEnabled() && table->updatesEnabled();
    });
    draw();
    return probe::now() - begin;
}

double WindowProbe::crush()
{
    begin = end = 0;
    crushButton->click();
    await([this] { return end > 0; });
    return end - begin;
}

double WindowProbe::crushAndStop(int delay)
{
    double clicked = 0;
    double answered = 0;
    begin = end = 0;
    const QString idle = crushButton->text();
    crushButton->click();
    const QString running = QStringLiteral("停止粉碎");
    QTimer alarm;
    connect(&alarm, &QTimer::timeout, this, [&] {
        if (clicked > 0 || crushButton->text() != running)
            return;
        clicked = probe::now();
        crushButton->click();
    });
    alarm.start(delay);
    await([&] { return clicked > 0 && crushButton->text() != running; });
    answered = probe::now();
    await([&] { return crushButton->text() == idle; });
    return answered - clicked;
}

double WindowProbe::setAllChecked(bool state)
{
    auto *box = window.findChild<QCheckBox *>(QStringLiteral("selectAllCheckBox"));
    begin = probe::now();
    if (box->isChecked() == state)
        box->setChecked(!state);
    box->click();
    await([&] { return allCellsChecked(state); });
    draw();
    return probe::now() - begin;
}

double WindowProbe::removeChecked()
{
    begin = probe::now();
    window.findChild<QPushButton *>(QStringLiteral("removeButton"))->click();
    await([&] { return table->rowCount() == 0; });
    draw();
    return probe::now() - begin;
}

bool WindowProbe::allCellsChecked(bool state) const
{
    for (int row = 0; row < table->rowCount(); ++row) {
        const auto *cell = qobject_cast<ZZTableCell *>(table->cellWidget(row, 0));
        if (cell == nullptr || cell->isChecked() != state)
            return false;
    }
    return true;
}

void WindowProbe::await(const std::function<bool()> &condition)
{
    // A loop that runs as the program's own does, and is not turned by hand.
    QEventLoop loop;
    QTimer alarm;
    connect(&alarm, &QTimer::timeout, &loop, [&] {
        if (condition())
            loop.quit();
    });
    alarm.start(lookEvery);
    loop.exec();
}

/// Everything that is still to be drawn is on the screen afterwards.
void WindowProbe::draw()
{
    QCoreApplication::sendPostedEvents();
    QCoreApplication::processEvents();
    window.repaint();
}

/// The first dialog of a run is the question, the second tells the result.
void WindowProbe::meet(QDialog *dialog)
{
    if (auto *cancel = dialog->findChild<QPushButton *>(QStringLiteral("cancelButton"));
        cancel != nullptr && cancel->isVisible()) {
        begin = probe::now();
        stalls.start();
        dialog->accept();
        return;
    }
    end = probe::now();
    dialog->reject();
}

bool WindowProbe::eventFilter(QObject *watched, QEvent *event)
{
    auto *dialog = qobject_cast<QDialog *>(watched);
    if (dialog != nullptr && event->type() == QEvent::Show && !event->spontaneous()) {
        opened = dialog;
        startTimer(0); // until its own loop runs
    }
    return QObject::eventFilter(watched, event);
}

void WindowProbe::timerEvent(QTimerEvent *event)
{
    killTimer(event->timerId());
    meet(opened);
}
