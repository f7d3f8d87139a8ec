// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// Darkens a row from its left edge as its entry is shredded. To screen readers it is a
// progress bar. Lives in the GUI thread and belongs to its row.

#pragma once

#include <QLabel>

class ProgressOverlay : public QLabel
{
    Q_OBJECT

public:
    explicit ProgressOverlay(QWidget *row);

    /// Darkens the first @p percent of @p wholeSize; 0 hides the overlay. Values outside 0 to 100
    /// are not clamped.
    void showPercent(int percent, QSize wholeSize);
    /// What was shown last; 0 when the overlay is hidden.
    int percent() const { return shownPercent; }

protected:
    bool event(QEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    int shownPercent = 0;
};
