// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// Links inside a folder go; whatever they point to stays as it is.

#include "engine/filecrusher.h"

#include "signallog.h"
#include "suites.h"
#include "temporarytree.h"

#include <QtTest>

#include <memory>

using testsupport::entryExists;
using testsupport::SignalLog;
using testsupport::SignalRecords;
using testsupport::TemporaryTree;

class TestFileCrusherLinks : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void linkToAFolderIsUnlinkedAndTheFolderUntouched();
    void linkToAFileIsUnlinkedAndTheFileUntouched();
    void sizeOfALinkTargetCountsButIsNeverDone();
    void linkToAFolderOfTheSameTreeIsNotWalked();
    void linkToAFileOfTheSameTreeIsJustUnlinked();
    void danglingLinkIsUnlinked();
    void linksInCirclesEnd();
    void linkToTheTopOrAboveLeadsNowhere();
    void linkBehindASlashIsRefusedUntouched();

private:
    qint64 shred(const QString &path) { return crusher->shredDirectory(path.toUtf8().constData()); }

    std::unique_ptr<TemporaryTree> tree;
    std::unique_ptr<FileCrusher> crusher;
    std::unique_ptr<SignalLog> log;
    QString top;
};

void TestFileCrusherLinks::init()
{
    tree = std::make_unique<TemporaryTree>();
    top = tree->makeFolder(QStringLiteral("top"));
    crusher = std::make_unique<FileCrusher>();
    log = std::make_unique<SignalLog>(crusher.get());
}

void TestFileCrusherLinks::cleanup()
{
    log.reset();
    crusher.reset();
    tree.reset();
}

void TestFileCrusherLinks::linkToAFolderIsUnlinkedAndTheFolderUntouched()
{
    const QString kept = tree->makeFile(QStringLiteral("outside/deep/kept"), 5000);
    const QString link =
        tree->makeLink(QStringLiteral("top/link"), tree->path(QStringLiteral("outside")));
    QCOMPARE(shred(top), qint64{0});
    QVERIFY(!entryExists(top));
    QCOMPARE(TemporaryTree::contentsOf(kept), QByteArray(5000, 'x'));
    QCOMPARE(log->records(), (SignalRecords{{"addToHistory", {link}},
                                            {"finishPercent", {top, 100}},
                                            {"addToHistory", {top}}}));
}

void TestFileCrusherLinks::linkToAFileIsUnlinkedAndTheFileUntouched()
{
    const QString kept = tree->makeFile(QStringLiteral("kept"), 5000);
    const QString link = tree->makeLink(QStringLiteral("top/link"), QStringLiteral("../kept"));
    QCOMPARE(shred(top), qint64{0});
    QCOMPARE(TemporaryTree::contentsOf(kept), QByteArray(5000, 'x'));
    QCOMPARE(log->records(), (SignalRecords{{"addToHistory", {link}},
                                            {"finishPercent", {top, 100}},
                                            {"addToHistory", {top}}}));
}

void TestFileCrusherLinks::sizeOfALinkTargetCountsButIsNeverDone()
{
    const QString kept = tree->makeFile(QStringLiteral("kept"), 3000);
    const QString link = tree->makeLink(QStringLiteral("top/link"), kept);
    const QString file = tree->makeFile(QStringLiteral("top/folder/file"), 1000);
    QCOMPARE(shred(top), qint64{0});
    QCOMPARE(log->records(), (SignalRecords{{"addToHistory", {link}},
                                            {"finishPercent", {top, 25}},
                                            {"addToHistory", {file}},
                                            {"addToHistory", {QFileInfo(file).path()}},
                                            {"finishPercent", {top, 100}},
                                            {"addToHistory", {top}}}));
}

void TestFileCrusherLinks::linkToAFolderOfTheSameTreeIsNotWalked()
{
    const QString link = tree->makeLink(QStringLiteral("top/link"), QStringLiteral("one/two"));
    const QString file = tree->makeFile(QStringLiteral("top/one/two/file"), 10);
    QCOMPARE(shred(top), qint64{0});
    QVERIFY(!entryExists(top));
    const QString two = QFileInfo(file).path();
    QCOMPARE(log->firstArguments("addToHistory"),
             (QStringList{link, file, two, QFileInfo(two).path(), top}));
}

void TestFileCrusherLinks::linkToAFileOfTheSameTreeIsJustUnlinked()
{
    const QString file = tree->makeFile(QStringLiteral("top/folder/file"), 10);
    const QString secondName = tree->makeHardLink(QStringLiteral("second name"), file);
    const QString link = tree->makeLink(QStringLiteral("top/link"), QStringLiteral("folder/file"));
    QCOMPARE(shred(top), qint64{0});
    QCOMPARE(log->firstArguments("addToHistory"),
             (QStringList{link, file, QFileInfo(file).path(), top}));
    QVERIFY(TemporaryTree::contentsOf(secondName) != QByteArray(10, 'x'));
}

void TestFileCrusherLinks::danglingLinkIsUnlinked()
{
    const QString link = tree->makeLink(QStringLiteral("top/link"), QStringLiteral("nowhere"));
    QCOMPARE(shred(top), qint64{0});
    QCOMPARE(log->firstArguments("addToHistory"), (QStringList{link, top}));
}

void TestFileCrusherLinks::linksInCirclesEnd()
{
    tree->makeLink(QStringLiteral("top/one"), QStringLiteral("two"));
    tree->makeLink(QStringLiteral("top/two"), QStringLiteral("one"));
    tree->makeLink(QStringLiteral("top/self"), QStringLiteral("self"));
    QCOMPARE(shred(top), qint64{0});
    QVERIFY(!entryExists(top));
    QCOMPARE(log->count("addToHistory"), 4);
}

void TestFileCrusherLinks::linkToTheTopOrAboveLeadsNowhere()
{
    const QString kept = tree->makeFile(QStringLiteral("kept"), 10);
    tree->makeLink(QStringLiteral("top/folder/to top"), top);
    tree->makeLink(QStringLiteral("top/folder/to parent"), QStringLiteral(".."));
    tree->makeLink(QStringLiteral("top/folder/above"), tree->path());
    QCOMPARE(shred(top), qint64{0});
    QVERIFY(!entryExists(top));
    QCOMPARE(TemporaryTree::contentsOf(kept), QByteArray(10, 'x'));
    QCOMPARE(log->count("addToHistory"), 5);
}

void TestFileCrusherLinks::linkBehindASlashIsRefusedUntouched()
{
    const QString kept = tree->makeFile(QStringLiteral("top/kept"), 10);
    const QString link = tree->makeLink(QStringLiteral("link"), top);
    for (const char *slashes : {"/", "///"})
        QCOMPARE(shred(link + QLatin1String(slashes)), qint64{-3});
    QVERIFY(entryExists(link));
    QCOMPARE(TemporaryTree::contentsOf(kept), QByteArray(10, 'x'));
    QCOMPARE(log->records(), SignalRecords());
}

TEST_SUITE(links, TestFileCrusherLinks)
#include "links.moc"
