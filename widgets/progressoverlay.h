// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// The darkening that grows over a row while its entry is shredded. Screen readers
// meet it as a progress bar. Lives in the GUI thread and belongs to its row.

#pragma once

#include <QLabel>

class ProgressOverlay : public QLabel
{
    Q_OBJECT

public:
    explicit ProgressOverlay(QWidget *row);

    /// Darkens the first @p percent of @p wholeSize; 0 takes the darkening away. Values outside
    /// 0 to 100 are not clamped.
    void showPercent(int percent, QSize wholeSize);
    /// What was shown last, 0 when there is no darkening.
    int percent() const { return shownPercent; }

protected:
    bool event(QEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    int shownPercent = 0;
};
