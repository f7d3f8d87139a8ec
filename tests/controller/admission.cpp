// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// Which paths become rows: one by one, in a batch from the file dialog and in a drop.
// Real system folders are admitted here, so no test in this file starts a run.

#include "suites.h"
#include "walleharness.h"

using testsupport::OrdinaryUser;
using testsupport::SignalRecord;
using testsupport::SignalRecords;
using testsupport::WalleTest;

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
    static uint refusalIn(const SignalRecords &answer);
    /// The reasons reported for a batch; 0 when nothing was.
    uint choose(const QStringList &paths);
    uint drop(const QList<QUrl> &urls);
};

uint TestAdmission::refusalIn(const SignalRecords &answer)
{
    uint reasons = 0;
    int reports = 0;
    for (const SignalRecord &record : answer) {
        if (record.name == "alertDialog" && ++reports > 0)
            reasons = record.arguments.first().toUInt();
    }
    if (reports > 1)
        qFatal("more than one report for one batch");
    return reasons;
}

uint TestAdmission::choose(const QStringList &paths)
{
    return refusalIn(harness->answerTo([&] { harness->choose(paths); }));
}

uint TestAdmission::drop(const QList<QUrl> &urls)
{
    return refusalIn(harness->answerTo([&] { harness->drop(urls); }));
}

void TestAdmission::pathsAreTakenAndComparedLiterally()
{
    const QStringList paths{make("folder/file"), make("folder/FILE"),
                            tree->path(QStringLiteral("folder//../folder/./file")),
                            tree->path(QStringLiteral("folder")),
                            tree->path(QStringLiteral("folder/"))};
    QCOMPARE(choose(paths), 0U);
    QCOMPARE(harness->paths(), paths);
}

void TestAdmission::danglingLinkIsAdmittedOnce()
{
    const QString link = tree->makeLink(QStringLiteral("link"), QStringLiteral("/nonexistent"));
    QCOMPARE(choose({link}), 0U);
    QCOMPARE(harness->paths(), QStringList{link});
    QCOMPARE(choose({link}), RejectDuplicate);
}

void TestAdmission::linkToAnUnreadableTargetIsAdmittedTheTargetRefused()
{
    const QString target = make("target");
    const QString link = tree->makeLink(QStringLiteral("link"), target);
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
    QCOMPARE(choose({tree->makeFifo(QStringLiteral("fifo"))}), RejectUnknownType);
    QCOMPARE(choose({QStringLiteral("/dev/null")}), RejectUnknownType);
    QVERIFY(harness->rows().isEmpty());
}

void TestAdmission::systemDirectoriesAreRefused_data()
{
    QTest::addColumn<QString>("path");
    for (const char *name :
         {"/", "/proc", "/usr/sbin", "/sbin", "/etc", "/dev", "/mnt", "/bin", "/lib", "/sys"})
        QTest::newRow(name) << QString::fromLatin1(name);
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
    QTest::addColumn<QString>("path");
    for (const char *name : {"/etc/", "/usr/bin", "/etc/passwd", "//", "/usr", "/dev/../etc"})
        QTest::newRow(name) << QString::fromLatin1(name);
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
    QTest::addColumn<QString>("url");
    for (const char *url : {"http://example.com/b", "sftp://example.com/b", "trash:///b", ""})
        QTest::newRow(url) << QString::fromLatin1(url);
}

void TestAdmission::urlThatIsNoLocalFileEndsTheDropSilently()
{
    QFETCH(QString, url);
    const QString first = make("first");
    QCOMPARE(drop({QUrl::fromLocalFile(first), QUrl(url), QUrl::fromLocalFile(make("behind")),
                   QUrl::fromLocalFile(QStringLiteral("/nonexistent"))}),
             0U);
    QCOMPARE(harness->paths(), QStringList{first});
}

void TestAdmission::droppedNamesKeepTheirBytes()
{
    const QString folder = tree->makeFolder(QStringLiteral("folder"));
    const QStringList paths{make("a b%20c#d?e"), make("'q' \"q\""), make("粉碎 🗑"),
                            make("two\nlines"), folder + QStringLiteral("//../folder/")};
    harness->dropFiles(paths);
    QVERIFY(harness->performed());
    QCOMPARE(harness->paths(), paths);
}

TEST_SUITE(admission, TestAdmission)
#include "admission.moc"
