// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// The rows of the history table, newest on top. A history can have hundreds of
// thousands of entries. All keep their texts, but in a long one only rows in and next to
// the view have a frame with labels; scrolling makes the others. Rows that follow each other
// closely are drawn once a screen refresh. Lives in the GUI thread; owned by the table.

#pragma once

#include <QElapsedTimer>
#include <QHash>
#include <QObject>
#include <QString>
#include <QTimer>
#include <QVector>

class HistoryRowFrame;
class QWidget;
class RowTable;

class HistoryRows : public QObject
{
    Q_OBJECT

public:
    struct Entry {
        QString time;
        QString fileName;
        QString path;
    };

    /// Fills column 0 of @p table, which owns this object; frames are made as children of
    /// @p frameParent.
    HistoryRows(RowTable *table, QWidget *frameParent);

    /// Puts an entry on top. One of the first 10,000 has its row in the table at once, a later one
    /// at the next screen refresh at the latest; it is drawn then.
    void prepend(const QString &time, const QString &fileName, const QString &path);
    /// Removes row @p row, counted from the top; a row that does not exist is ignored.
    void remove(int row);
    /// Removes every row, at once.
    void clear();

    /// Rows in all, including those that the next screen refresh will add.
    int count() const { return entries.size(); }
    /// The entry in @p row, which there must be, counted from the top.
    const Entry &entryAt(int row) const { return entries.at(entries.size() - 1 - row); }

signals:
    /// Rows are about to be removed, which renumbers the entries.
    void aboutToRemove();

private:
    void show();
    void fillView();
    void fillRow(int row);

    RowTable *table;
    QWidget *frameParent;
    QVector<Entry> entries;               ///< in the order of arrival, so the last is row 0
    QHash<int, HistoryRowFrame *> frames; ///< by row; owned by the table
    QTimer showTimer;
    QElapsedTimer sinceShown;
};
