// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// Things dropped on the window that it does not take, and what it says of them.

#include "dialogdriver.h"
#include "shownwindow.h"
#include "suites.h"
#include "temporarytree.h"
#include "windowtesthome.h"

#include <QFile>
#include <QMimeData>
#include <QTableWidget>
#include <QtTest>

#include <memory>

using testsupport::Answer;
using testsupport::DialogDriver;
using testsupport::OrdinaryUser;
using testsupport::ShownWindow;
using testsupport::TemporaryTree;

class TestMainWindowRefusals : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void eachReasonIsReported_data();
    void eachReasonIsReported();
    void everythingThatCanBeWrongAtOnceIsReportedOnce();
    void rowTooManyIsReported();
    void forbiddenFileIsReported();
    void systemFoldersAreReported();
    void urlsThatAreNoFilesAreNotReported();

private:
    /// Drops @p paths and returns what the report says below its header; empty when there is none.
    QStringList reportOf(const QStringList &paths);

    std::unique_ptr<TemporaryTree> tree;
    std::unique_ptr<ShownWindow> window;
};

void TestMainWindowRefusals::init()
{
    tree = std::make_unique<TemporaryTree>();
    window = std::make_unique<ShownWindow>();
}

void TestMainWindowRefusals::cleanup()
{
    window.reset();
    tree.reset();
}

QStringList TestMainWindowRefusals::reportOf(const QStringList &paths)
{
    DialogDriver dialogs;
    dialogs.next(Answer::Ok);
    window->drop(paths);
    if (!window->settle() || dialogs.seen().size() != 1)
        return {};
    return dialogs.seen().first().text.split(QLatin1Char('\n')).mid(1);
}

void TestMainWindowRefusals::eachReasonIsReported_data()
{
    QTest::addColumn<QStringList>("names");
    QTest::addColumn<QStringList>("report");
    const auto missing = QStringLiteral("文件或目录不存在");
    const auto unknown = QStringLiteral("不能确定文件或目录的类型");
    const auto twice = QStringLiteral("重复添加文件或目录");
    QTest::newRow("missing") << QStringList{QStringLiteral("missing")} << QStringList{missing};
    QTest::newRow("fifo") << QStringList{QStringLiteral("fifo")} << QStringList{unknown};
    QTest::newRow("twice") << QStringList{QStringLiteral("file"), QStringLiteral("file")}
                           << QStringList{twice};
    QTest::newRow("missing twice")
        << QStringList{QStringLiteral("missing"), QStringLiteral("missing")}
        << QStringList{missing};
    QTest::newRow("twice and missing")
        << QStringList{QStringLiteral("file"), QStringLiteral("file"), QStringLiteral("missing")}
        << QStringList{QStringLiteral("1.") + missing, QStringLiteral("2.") + twice};
    QTest::newRow("all three") << QStringList{QStringLiteral("file"), QStringLiteral("file"),
                                              QStringLiteral("fifo"), QStringLiteral("missing")}
                               << QStringList{QStringLiteral("1.") + missing,
                                              QStringLiteral("2.") + unknown,
                                              QStringLiteral("3.") + twice};
}

void TestMainWindowRefusals::eachReasonIsReported()
{
    QFETCH(QStringList, names);
    tree->makeFile(QStringLiteral("file"), 1);
    tree->makeFifo(QStringLiteral("fifo"));
    QStringList paths;
    for (const QString &name : qAsConst(names))
        paths.append(tree->path(name));
    QTEST(reportOf(paths), "report");
    QCOMPARE(window->table()->rowCount(), names.contains(QStringLiteral("file")) ? 1 : 0);
}

void TestMainWindowRefusals::rowTooManyIsReported()
{
    constexpr int limit = 200;
    QStringList paths;
    for (int file = 0; file <= limit; ++file)
        paths.append(tree->makeFile(QString::number(file), 1));
    QCOMPARE(reportOf(paths),
             QStringList(QStringLiteral("已经超出文件粉碎机的单次处理上限(200个)")));
    QCOMPARE(window->rows(), paths.mid(0, limit));
    QVERIFY(window->isTicked("selectAllCheckBox"));
}

void TestMainWindowRefusals::forbiddenFileIsReported()
{
    const QString readOnly = tree->makeFile(QStringLiteral("file"), 1);
    constexpr auto everybodyReads = QFile::ReadOwner | QFile::ReadGroup | QFile::ReadOther;
    constexpr auto everybodyEnters =
        everybodyReads | QFile::ExeOwner | QFile::ExeGroup | QFile::ExeOther;
    QVERIFY(QFile::setPermissions(readOnly, everybodyReads));
    QVERIFY(QFile::setPermissions(tree->path(), everybodyEnters | QFile::WriteOwner));
    const OrdinaryUser user;
    QCOMPARE(reportOf({readOnly}), QStringList(QStringLiteral("文件或目录没有读写权限")));
    QCOMPARE(window->table()->rowCount(), 0);
}

void TestMainWindowRefusals::systemFoldersAreReported()
{
    // Found only by those who may write there; everybody else is told that they may not.
    const QStringList report = reportOf({QStringLiteral("/etc"), QStringLiteral("/dev")});
    QCOMPARE(report.size(), 1);
    QVERIFY(report.first() == QStringLiteral("属于系统目录")
            || report.first() == QStringLiteral("文件或目录没有读写权限"));
    QCOMPARE(window->table()->rowCount(), 0);
}

void TestMainWindowRefusals::everythingThatCanBeWrongAtOnceIsReportedOnce()
{
    const QString file = tree->makeFile(QStringLiteral("a"), 1);
    const QStringList report =
        reportOf({file, file, tree->path(QStringLiteral("missing")),
                  tree->makeFifo(QStringLiteral("fifo")), QStringLiteral("/etc")});
    QCOMPARE(report.size(), 4);
    QCOMPARE(report.at(0), QStringLiteral("1.文件或目录不存在"));
    QCOMPARE(window->rows(), QStringList(file));
}

void TestMainWindowRefusals::urlsThatAreNoFilesAreNotReported()
{
    DialogDriver dialogs;
    QMimeData urls;
    urls.setUrls({QUrl(QStringLiteral("http://localhost/a"))});
    QVERIFY(window->drop(urls).entered);
    QVERIFY(window->settle());
    QVERIFY(dialogs.seen().isEmpty());
    QCOMPARE(window->table()->rowCount(), 0);
}

TEST_SUITE(refusals, TestMainWindowRefusals)
#include "refusals.moc"
