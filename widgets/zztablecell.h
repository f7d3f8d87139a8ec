// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// One row of the main table: a tick box, an icon, an entry's name and folder, and an
// overlay that shows how far the entry is shredded. It draws and emits clicks; whether the
// entry is ticked is decided by the controller. Lives in the GUI thread and belongs to
// the table it is put into.

#pragma once

#include <QFrame>
#include <QString>

class ProgressOverlay;
class QCheckBox;
class QLabel;
class QIcon;
class QImage;

class ZZTableCell : public QFrame
{
    Q_OBJECT

public:
    static constexpr int cellWidth = 778;
    static constexpr int cellHeight = 30; ///< of every table's rows, and of their image

    /// An empty cell; build() fills it. Where @p parent is a table, its viewport becomes
    /// the cell's parent.
    explicit ZZTableCell(QWidget *parent);

    /// Fills the cell for the entry @p fullPath, shown with @p icon at 16 by 16
    /// pixels; clicks are emitted with @p row and @p column. The style sheet draws the
    /// row's background, so @p background is not used. A second call does nothing.
    void build(const QString &fullPath, const QIcon &icon, const QImage &background, int row,
               int column);

    /// The path given to build(), unchanged.
    QString fullPath() const;
    /// The row and column that clicks are emitted with from now on.
    void setIndex(int row, int column);
    /// Darkens the first @p percent of the row; 0 hides the overlay. Values outside 0 to
    /// 100 are not clamped. Does nothing before build().
    void setProgress(int percent);
    /// Ticks or unticks the box and emits nothing. Does nothing before build().
    void setChecked(bool checked);
    /// Whether the box is ticked; false before build().
    bool isChecked() const;

signals:
    /// The user clicked the tick box, which has changed already, or pressed the
    /// left button elsewhere in row @p r and column @p c.
    void tableCellClicked(int r, int c);

protected:
    void mousePressEvent(QMouseEvent *event) override;

private slots:
    void checkBoxClicked();

private:
    void addCheckBox(const QString &fileName, const QString &folder);
    void addIconLabel(const QIcon &icon);
    QLabel *addTextLabel(const QString &objectName, const QRect &geometry, const QString &text);
    static void showElided(QLabel *label);
    void addProgressOverlay();
    void announceTick();

    bool built = false;
    int row = 0;
    int column = 0;
    QString entryPath;
    QCheckBox *checkBox = nullptr;
    ProgressOverlay *progressOverlay = nullptr;
};
