// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// Whole runs, from dropping real files to reading the result.

#include "dialogdriver.h"
#include "promptly.h"
#include "shownwindow.h"
#include "suites.h"
#include "temporarytree.h"
#include "widgets/zztablecell.h"
#include "windowtesthome.h"

#include <QDir>
#include <QTableWidget>
#include <QtTest>

#include <algorithm>
#include <memory>

using testsupport::Answer;
using testsupport::DialogDriver;
using testsupport::entryExists;
using testsupport::ShownWindow;
using testsupport::TemporaryTree;

namespace
{

QString iconSheet(const char *image)
{
    return QStringLiteral("background-image:url(:/images/%1)").arg(QLatin1String(image));
}

/// The widths that the darkening of a row takes, one after the other.
class DarkeningWatch : public QObject
{
public:
    explicit DarkeningWatch(const QWidget *cell)
    {
        cell->findChild<QWidget *>(QStringLiteral("progressOverlay"))->installEventFilter(this);
    }
    QList<int> widths;

protected:
    bool eventFilter(QObject *watched, QEvent *event) override
    {
        if (event->type() == QEvent::Resize)
            widths.append(qobject_cast<QWidget *>(watched)->width());
        return QObject::eventFilter(watched, event);
    }
};

} // namespace

class TestMainWindowFlow : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void confirmedFilesAndFoldersAreGone();
    void declinedRunLeavesEverything();
    void untickedRowsAreSpared();
    void rowDarkensFromTheLeft();
    void stoppedFolderKeepsItsRow();
    void stopBetweenFilesTellsTheUserWhatIsGone();

private:
    void drop(const QStringList &paths);
    /// Presses the crush button, says OK to the question and to the report, and waits for that.
    void crush();
    QString makeBigFolder(int files);

    std::unique_ptr<TemporaryTree> tree;
    std::unique_ptr<ShownWindow> window;
    std::unique_ptr<DialogDriver> dialogs;
};

void TestMainWindowFlow::init()
{
    tree = std::make_unique<TemporaryTree>();
    window = std::make_unique<ShownWindow>();
    dialogs = std::make_unique<DialogDriver>();
}

void TestMainWindowFlow::cleanup()
{
    dialogs.reset();
    window.reset();
    tree.reset();
}

void TestMainWindowFlow::drop(const QStringList &paths)
{
    const int before = window->table()->rowCount();
    window->drop(paths);
    QVERIFY(window->settle());
    QCOMPARE(window->rows().mid(before), paths);
}

void TestMainWindowFlow::crush()
{
    const int before = dialogs->seen().size();
    dialogs->next(Answer::Ok);
    dialogs->next(Answer::Ok);
    window->click("crushButton");
    PROMPTLY_COMPARE(dialogs->seen().size(), before + 2);
    PROMPTLY_VERIFY(dialogs->isDone());
}

QString TestMainWindowFlow::makeBigFolder(int files)
{
    for (int file = 0; file < files; ++file)
        tree->makeFile(QStringLiteral("big/%1").arg(file), 100);
    return tree->path(QStringLiteral("big"));
}

void TestMainWindowFlow::confirmedFilesAndFoldersAreGone()
{
    const QString kept = tree->makeFile(QStringLiteral("kept"), 10);
    tree->makeFile(QStringLiteral("folder/inner/file"), 5000);
    const QStringList paths = {tree->makeFile(QStringLiteral("一 百%.txt"), 10000),
                               tree->makeFile(QStringLiteral("<b>x</b>"), 0),
                               tree->makeFile(QStringLiteral("two\nlines"), 10),
                               tree->makeFile(QStringLiteral("🗑️"), 10),
                               tree->makeFile(QString(200, QLatin1Char('w')), 10),
                               tree->makeLink(QStringLiteral("link"), kept),
                               tree->path(QStringLiteral("folder"))};
    drop(paths);
    QVERIFY(!window->find("emptyPanel")->isVisible());
    QVERIFY(window->isTicked("selectAllCheckBox"));
    crush();
    QCOMPARE(window->rows(), QStringList());
    for (const QString &path : paths)
        QVERIFY2(!entryExists(path), qPrintable(path));
    QCOMPARE(TemporaryTree::contentsOf(kept), QByteArray(10, 'x'));
    QCOMPARE(window->textOf("subtitleLabel"), QStringLiteral("已成功粉碎7个文件（文件夹）"));
    QCOMPARE(dialogs->seen().last().text,
             QStringLiteral("本次文件粉碎任务已经结束\n7 个文件(文件夹)已被成功粉碎"));
    QCOMPARE(dialogs->seen().last().iconSheet, iconSheet("ico_ok"));
    QCOMPARE(window->textOf("crushButton"), QStringLiteral("粉碎文件"));
    QVERIFY(!window->isEnabled("crushButton"));
    QVERIFY(!window->isEnabled("removeButton"));
    QVERIFY(!window->isEnabled("selectAllCheckBox"));
    QVERIFY(!window->isTicked("selectAllCheckBox"));
    QVERIFY(!window->find("successPanel")->isVisible());
}

void TestMainWindowFlow::declinedRunLeavesEverything()
{
    const QString folder = makeBigFolder(3);
    drop({folder});
    dialogs->next(Answer::Cancel);
    window->click("crushButton");
    QVERIFY(window->settle());
    QCOMPARE(window->tickedRows(), QStringList(folder));
    QCOMPARE(QDir(folder).entryList(QDir::Files).size(), 3);
    QCOMPARE(dialogs->seen().size(), 1);
}

void TestMainWindowFlow::untickedRowsAreSpared()
{
    const QStringList paths = {tree->makeFile(QStringLiteral("a"), 10),
                               tree->makeFile(QStringLiteral("b"), 10),
                               tree->makeFile(QStringLiteral("c"), 10)};
    drop(paths);
    window->clickTickBox(1);
    QVERIFY(window->settle());
    crush();
    QCOMPARE(window->rows(), QStringList(paths.at(1)));
    QCOMPARE(window->tickedRows(), QStringList());
    QVERIFY(!entryExists(paths.at(0)));
    QCOMPARE(TemporaryTree::contentsOf(paths.at(1)), QByteArray(10, 'x'));
    QVERIFY(!entryExists(paths.at(2)));
    // What is left can be ticked and goes with the next run.
    window->clickRow(0);
    QVERIFY(window->settle());
    QVERIFY(window->isEnabled("crushButton"));
    crush();
    QVERIFY(!entryExists(paths.at(1)));
}

void TestMainWindowFlow::rowDarkensFromTheLeft()
{
    constexpr qint64 tenMegabytes = 10000000;
    drop({tree->makeFile(QStringLiteral("big"), tenMegabytes)});
    // Once for nothing, so that only what the run does is seen.
    (*window)->setTableRowHeightEva(0, 1);
    (*window)->setTableRowHeightEva(0, 0);
    DarkeningWatch watch(window->cell(0));
    crush();
    // The last report is always of 99 percent; the rest is told by the row's going.
    QVERIFY(watch.widths.size() > 1);
    QCOMPARE(watch.widths.takeLast(), 776 * 99 / 100);
    QList<int> possible;
    for (int percent = 1; percent <= 100; ++percent)
        possible.append(776 * percent / 100);
    int last = 0;
    for (const int width : qAsConst(watch.widths)) {
        QVERIFY2(possible.contains(width), qPrintable(QString::number(width)));
        QVERIFY(width >= last);
        last = width;
    }
}

void TestMainWindowFlow::stoppedFolderKeepsItsRow()
{
    constexpr int manyFiles = 3000;
    const QString folder = makeBigFolder(manyFiles);
    drop({folder});
    dialogs->next(Answer::Ok);
    window->click("crushButton");
    PROMPTLY_COMPARE(window->textOf("crushButton"), QStringLiteral("停止粉碎"));
    QVERIFY(!window->isEnabled("removeButton"));
    QVERIFY(window->isEnabled("addButton"));
    // What the worker has not begun is taken back, and that ends in a report.
    PROMPTLY_VERIFY(static_cast<int>(QDir(folder).count()) < manyFiles);
    window->click("crushButton");
    PROMPTLY_COMPARE(window->textOf("crushButton"), QStringLiteral("粉碎文件"));
    QVERIFY(window->settle());
    QCOMPARE(window->rows(), QStringList(folder));
    QVERIFY(entryExists(folder));
    QVERIFY(!QDir(folder).isEmpty());
    // The question, and no other.
    QCOMPARE(dialogs->seen().first().buttons.size(), 2);
    QVERIFY(window->isEnabled("selectAllCheckBox"));
}

void TestMainWindowFlow::stopBetweenFilesTellsTheUserWhatIsGone()
{
    constexpr int manyFiles = 100;
    QStringList files;
    for (int file = 0; file < manyFiles; ++file)
        files.append(tree->makeFile(QString::number(file), 10));
    drop(files);
    dialogs->next(Answer::Ok);
    dialogs->next(Answer::Ok);
    window->click("crushButton");
    PROMPTLY_VERIFY(window->rows().size() < manyFiles);
    QCOMPARE(window->textOf("crushButton"), QStringLiteral("停止粉碎"));
    window->click("crushButton");
    PROMPTLY_COMPARE(dialogs->seen().size(), 2);
    PROMPTLY_VERIFY(dialogs->isDone());
    QVERIFY(window->settle());
    QVERIFY(window->settle()); // the report kept "uncheck all" from being performed
    QCOMPARE(window->textOf("crushButton"), QStringLiteral("粉碎文件"));
    const int gone = manyFiles - window->rows().size();
    QVERIFY(gone > 0 && gone < manyFiles);
    QCOMPARE(dialogs->seen().last().text,
             QStringLiteral("本次文件粉碎任务已经结束\n%1 个文件(文件夹)已被成功粉碎").arg(gone));
    QCOMPARE(window->textOf("subtitleLabel"),
             QStringLiteral("已成功粉碎%1个文件（文件夹）").arg(gone));
    QCOMPARE(std::count_if(files.cbegin(), files.cend(),
                           [](const QString &file) { return !entryExists(file); }),
             gone);
    QCOMPARE(window->tickedRows(), QStringList());
    QVERIFY(!window->isEnabled("crushButton"));
}

TEST_SUITE(flow, TestMainWindowFlow)
#include "flow.moc"
