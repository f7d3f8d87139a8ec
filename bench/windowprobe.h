// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// The real window with somebody in front of it: drops, clicks, and how long each
// takes until it shows. Lives in the GUI thread.

#pragma once

#include "ui/mainwindow.h"

#include <QElapsedTimer>
#include <QObject>
#include <QStringList>
#include <QTimer>

#include <functional>

class QDialog;
class QPushButton;
class QTableWidget;

/// Notes the longest time for which the GUI thread did not come round.
class StallWatch final : public QObject
{
public:
    StallWatch();
    void start();
    /// Milliseconds beyond the beat.
    double stop();

protected:
    void timerEvent(QTimerEvent *event) override;

private:
    int timer = 0;
    double lastBeat = 0;
    double longest = 0;
};

class WindowProbe final : public QObject
{
public:
    WindowProbe();

    /// Drops @p paths; returns the milliseconds until all rows were drawn.
    double drop(const QStringList &paths);
    /// Clicks crush and agrees; returns the milliseconds from the agreement to the result report.
    double crush();
    /// As crush(), and clicks stop after @p delay milliseconds; returns the milliseconds until
    /// the button answered. The run has ended then.
    double crushAndStop(int delay);
    /// Unticks all, ticks all or removes the ticked rows; returns the milliseconds until drawn.
    double setAllChecked(bool state);
    double removeChecked();

    StallWatch stalls;

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;
    void timerEvent(QTimerEvent *event) override;

private:
    void meet(QDialog *dialog);
    void await(const std::function<bool()> &condition);
    bool allCellsChecked(bool state) const;
    void draw();

    MainWindow window;
    QTableWidget *table = nullptr;
    QPushButton *crushButton = nullptr;
    QDialog *opened = nullptr;
    double begin = 0;
    double end = 0;
};
