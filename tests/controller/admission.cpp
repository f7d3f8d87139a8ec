// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// Which paths become rows: one by one, in a batch from the file dialog and in a drop.
// Real system folders are admitted here, so no test in this file starts a run.

#include "suites.h"
#include "walleharness.h"

using testsupport::OrdinaryUser;
using testsupport::SignalRecords;
using testsupport::WalleTest;

static void addPaths(const QByteArrayList &paths)
{
    QTest::addColumn<QString>("path");
    for (const QByteArray &path : paths)
        QTest::newRow(path.constData()) << QString::fromLatin1(path);
}

class TestAdmission : public WalleTest
{
    Q_OBJECT

private slots:
    void pathsAreTakenAndComparedLiterally();
    void danglingLinkIsAdmittedOnce();
    void linkToAnUnreadableTargetIsAdmittedTheTargetRefused();
    void fifoAndDeviceAreRefusedAsUnknown();
    void systemDirectoriesAreRefused_data();
    void systemDirectoriesAreRefused();
    void whatOnlyResemblesASystemDirectoryIsAdmitted_data();
    void whatOnlyResemblesASystemDirectoryIsAdmitted();
    void secondTimeInOneBatchIsADuplicate();
    void missingPathIsMissingEvenAsADuplicate();
    void zeroByteInAPathNamesNoOtherFile();

    void dialogBatchGoesOnBeyondTheLimitAndReportsItOnce();
    void dropEndsAtTheFirstRefusalForTheLimit();
    void systemDirectoryIsRefusedAsOneInAFullList();
    void urlThatIsNoLocalFileEndsTheDropSilently_data();
    void urlThatIsNoLocalFileEndsTheDropSilently();
    void droppedNamesKeepTheirBytes();

private:
    /// The reasons reported for a batch; 0 when nothing was.
    uint refusal(const std::function<void()> &batch);
    uint choose(const QStringList &paths)
    {
        return refusal([&] { harness->choose(paths); });
    }
    uint drop(const QList<QUrl> &urls)
    {
        return refusal([&] { harness->drop(urls); });
    }
};

uint TestAdmission::refusal(const std::function<void()> &batch)
{
    harness->takeLog();
    batch();
    harness->performed();
    const SignalRecords reports = harness->log({"alertDialog"});
    if (reports.size() > 1)
        qFatal("more than one report for one batch");
    return reports.isEmpty() ? 0 : reports.first().arguments.first().toUInt();
}

void TestAdmission::pathsAreTakenAndComparedLiterally()
{
    const QStringList paths{make("folder/file"), make("folder/FILE"),
                            tree->path("folder//../folder/./file"), tree->path("folder"),
                            tree->path("folder/")};
    QCOMPARE(choose(paths), 0U);
    QCOMPARE(harness->paths(), paths);
}

void TestAdmission::danglingLinkIsAdmittedOnce()
{
    const QString link = tree->makeLink("link", "/nonexistent");
    QCOMPARE(choose({link}), 0U);
    QCOMPARE(harness->paths(), QStringList{link});
    QCOMPARE(choose({link}), RejectDuplicate);
}

void TestAdmission::linkToAnUnreadableTargetIsAdmittedTheTargetRefused()
{
    const QString target = make("target");
    const QString link = tree->makeLink("link", target);
    OrdinaryUser::give(tree->path());
    OrdinaryUser::give(target);
    QVERIFY(QFile::setPermissions(target, {}));
    const OrdinaryUser user;
    QCOMPARE(choose({link}), 0U);
    QCOMPARE(choose({target}), RejectNoPermission);
    QCOMPARE(harness->paths(), QStringList{link});
}

void TestAdmission::fifoAndDeviceAreRefusedAsUnknown()
{
    QCOMPARE(choose({tree->makeFifo("fifo")}), RejectUnknownType);
    QCOMPARE(choose({QStringLiteral("/dev/null")}), RejectUnknownType);
    QVERIFY(harness->rows().isEmpty());
}

void TestAdmission::systemDirectoriesAreRefused_data()
{
    addPaths({"/", "/proc", "/usr/sbin", "/sbin", "/etc", "/dev", "/mnt", "/bin", "/lib", "/sys"});
}

/// For whom may not read and write it, a system directory is refused for that reason already; a
/// directory that is a link is refused as a system directory for everybody.
void TestAdmission::systemDirectoriesAreRefused()
{
    QFETCH(QString, path);
    const QFileInfo info(path);
    const bool permitted = info.isSymLink() || (info.isWritable() && info.isReadable());
    const uint expected = !info.exists() ? RejectNotFound
                          : permitted    ? RejectSystemPath
                                         : RejectNoPermission;
    QCOMPARE(choose({path}), expected);
    QVERIFY(harness->rows().isEmpty());
}

void TestAdmission::whatOnlyResemblesASystemDirectoryIsAdmitted_data()
{
    addPaths({"/etc/", "/usr/bin", "/etc/passwd", "//", "/usr", "/dev/../etc"});
}

void TestAdmission::whatOnlyResemblesASystemDirectoryIsAdmitted()
{
    QFETCH(QString, path);
    const QFileInfo info(path);
    const bool permitted = info.isWritable() && info.isReadable();
    QCOMPARE(choose({path}), permitted ? 0U : RejectNoPermission);
    QCOMPARE(harness->paths(), permitted ? QStringList{path} : QStringList());
}

void TestAdmission::secondTimeInOneBatchIsADuplicate()
{
    const QString file = make("file");
    QCOMPARE(choose({file, file}), RejectDuplicate);
    QCOMPARE(harness->paths(), QStringList{file});
}

void TestAdmission::missingPathIsMissingEvenAsADuplicate()
{
    const QString file = make("file");
    QCOMPARE(choose({file}), 0U);
    QVERIFY(QFile::remove(file));
    QCOMPARE(choose({file}), RejectNotFound);
}

void TestAdmission::zeroByteInAPathNamesNoOtherFile()
{
    QCOMPARE(choose({make("file") + QChar(QChar::Null) + QLatin1Char('b')}), RejectNotFound);
}

void TestAdmission::dialogBatchGoesOnBeyondTheLimitAndReportsItOnce()
{
    addRows(199);
    const QStringList names = makeFiles("new", 3);
    // The last name shows that every name is tried.
    QCOMPARE(choose(names + QStringList{QStringLiteral("/nonexistent")}),
             RejectOverLimit | RejectNotFound);
    QCOMPARE(harness->rows().size(), 200);
    QCOMPARE(harness->paths().last(), names.first());
}

void TestAdmission::dropEndsAtTheFirstRefusalForTheLimit()
{
    addRows(199);
    QList<QUrl> urls;
    const QStringList names = makeFiles("new", 2);
    for (const QString &path : names)
        urls.append(QUrl::fromLocalFile(path));
    // Would add its own reason if it were looked at.
    urls.append(QUrl::fromLocalFile(QStringLiteral("/nonexistent")));
    QCOMPARE(drop(urls), RejectOverLimit);
    QCOMPARE(harness->rows().size(), 200);
    QCOMPARE(harness->paths().last(), names.first());
}

void TestAdmission::systemDirectoryIsRefusedAsOneInAFullList()
{
    addRows(200);
    const bool isLink = QFileInfo(QStringLiteral("/bin")).isSymLink();
    if (!isLink && !QFileInfo(QStringLiteral("/bin")).isWritable())
        QSKIP("refused for its permission already");
    QCOMPARE(choose({QStringLiteral("/bin")}), RejectSystemPath);
}

void TestAdmission::urlThatIsNoLocalFileEndsTheDropSilently_data()
{
    addPaths({"http://example.com/b", "sftp://example.com/b", "trash:///b", ""});
}

void TestAdmission::urlThatIsNoLocalFileEndsTheDropSilently()
{
    QFETCH(QString, path);
    const QString first = make("first");
    QCOMPARE(drop({QUrl::fromLocalFile(first), QUrl(path), QUrl::fromLocalFile(make("behind")),
                   QUrl::fromLocalFile(QStringLiteral("/nonexistent"))}),
             0U);
    QCOMPARE(harness->paths(), QStringList{first});
}

void TestAdmission::droppedNamesKeepTheirBytes()
{
    const QString folder = tree->makeFolder("folder");
    const QStringList paths{make("a b%20c#d?e"), make("'q' \"q\""), make("粉碎 🗑"),
                            make("two\nlines"), folder + QStringLiteral("//../folder/")};
    harness->dropFiles(paths);
    QVERIFY(harness->performed());
    QCOMPARE(harness->paths(), paths);
}

TEST_SUITE(admission, TestAdmission)
#include "admission.moc"
