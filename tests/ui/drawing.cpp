// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// When the rows of the main table are drawn. Adding rows is quick and drawing
// them is not, so those that come together are drawn together.

#include "shownwindow.h"
#include "suites.h"
#include "windowtesthome.h"

#include <QSet>
#include <QTableWidget>
#include <QtTest>

using testsupport::ShownWindow;

namespace
{

constexpr int rows = 8; // fewer than the view holds

/// Notes which widgets are painted.
class PaintLog : public QObject
{
public:
    void watch(QObject *widget) { widget->installEventFilter(this); }

    QSet<QObject *> painted;

protected:
    bool eventFilter(QObject *watched, QEvent *event) override
    {
        if (event->type() == QEvent::Paint)
            painted.insert(watched);
        return QObject::eventFilter(watched, event);
    }
};

} // namespace

class TestMainWindowDrawing : public QObject
{
    Q_OBJECT

private slots:
    void rowsThatComeTogetherAreAllDrawn();
};

void TestMainWindowDrawing::rowsThatComeTogetherAreAllDrawn()
{
    ShownWindow window;
    auto *table = window.table();
    PaintLog log;
    for (int row = 0; row < rows; ++row) {
        window->addRowToMainTableEva(QStringLiteral("/nowhere/%1").arg(row));
        log.watch(table->cellWidget(row, 0));
    }
    QVERIFY(log.painted.isEmpty());
    QTRY_COMPARE(log.painted.size(), rows);
    QVERIFY(table->updatesEnabled());

    log.painted.clear();
    window->addRowToMainTableEva(QStringLiteral("/nowhere/late"));
    log.watch(table->cellWidget(rows, 0));
    QTRY_VERIFY(log.painted.contains(table->cellWidget(rows, 0)));
}

TEST_SUITE(drawing, TestMainWindowDrawing)
#include "drawing.moc"
