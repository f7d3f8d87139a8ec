// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// What the recorder keeps from one entry to the next must never lead an entry
// anywhere but to the file that has the name at that moment.

#include "controller/historyrecorder.h"

#include "temporarytree.h"

#include <QDir>
#include <QtTest>

#include <memory>

using testsupport::TemporaryTree;

namespace
{

QStringList openFiles()
{
    QStringList files;
    const QDir descriptors(QStringLiteral("/proc/self/fd"));
    const QStringList names = descriptors.entryList(QDir::Files | QDir::System);
    for (const QString &name : names)
        files.append(QFile::symLinkTarget(descriptors.filePath(name)));
    return files;
}

} // namespace

class TestHistoryRecorder : public QObject
{
    Q_OBJECT

private slots:
    void init();

    void entriesFollowEachOther();
    void deletedHistoryIsMadeAnew();
    void replacedHistoryGetsTheNextEntry();
    void otherFileGetsItsOwnEntry();
    void folderInItsPlaceGetsNothing();
    void releasedHistoryIsClosed();

private:
    QByteArray history() const { return TemporaryTree::contentsOf(file); }

    std::unique_ptr<TemporaryTree> tree;
    std::unique_ptr<HistoryRecorder> recorder;
    QString file;
};

void TestHistoryRecorder::init()
{
    tree = std::make_unique<TemporaryTree>();
    recorder = std::make_unique<HistoryRecorder>();
    file = tree->path(QStringLiteral("history"));
    recorder->append(file, "one\n");
}

void TestHistoryRecorder::entriesFollowEachOther()
{
    recorder->append(file, "two\n");
    QCOMPARE(history(), QByteArray("one\ntwo\n"));
}

void TestHistoryRecorder::deletedHistoryIsMadeAnew()
{
    QVERIFY(QFile::remove(file));
    recorder->append(file, "two\n");
    QCOMPARE(history(), QByteArray("two\n"));
}

void TestHistoryRecorder::replacedHistoryGetsTheNextEntry()
{
    const QString kept = tree->path(QStringLiteral("kept"));
    QVERIFY(QFile::rename(file, kept));
    tree->makeFile(QStringLiteral("history"), QByteArray("other\n"));
    recorder->append(file, "two\n");
    QCOMPARE(history(), QByteArray("other\ntwo\n"));
    QCOMPARE(TemporaryTree::contentsOf(kept), QByteArray("one\n"));
}

void TestHistoryRecorder::otherFileGetsItsOwnEntry()
{
    const QString other = tree->path(QStringLiteral("other"));
    recorder->append(other, "two\n");
    QCOMPARE(history(), QByteArray("one\n"));
    QCOMPARE(TemporaryTree::contentsOf(other), QByteArray("two\n"));
}

void TestHistoryRecorder::folderInItsPlaceGetsNothing()
{
    QVERIFY(QFile::remove(file));
    tree->makeFolder(QStringLiteral("history"));
    recorder->append(file, "two\n");
    QVERIFY(QDir(file).isEmpty());
}

/// A deleted history that somebody holds open still takes its space on the disk.
void TestHistoryRecorder::releasedHistoryIsClosed()
{
    QVERIFY(openFiles().contains(file));
    recorder->release();
    QVERIFY(!openFiles().contains(file));
}

QTEST_GUILESS_MAIN(TestHistoryRecorder)
#include "tst_historyrecorder.moc"
