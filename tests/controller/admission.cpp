// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// Which paths become rows. Real system folders are admitted here, so no test in
// this file starts a run.

#include "sandboxhome.h"
#include "suites.h"
#include "temporarytree.h"
#include "walleharness.h"

#include <QtTest>

#include <memory>

using testsupport::OrdinaryUser;
using testsupport::SignalRecords;
using testsupport::TemporaryTree;
using testsupport::WalleHarness;

class TestWalleAdmission : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { QVERIFY2(home.isInForce(), home.advice()); }
    void init();
    void cleanup();
    void filesFoldersAndLinksAreAdmitted();
    void admittedPathIsTakenLiterally();
    void zeroByteInAPathNamesNoOtherFile();
    void danglingLinkIsAdmitted();
    void danglingLinkIsStillRefusedAsDuplicate();
    void linkToAnUnreadableTargetIsAdmittedTheTargetRefused();
    void fileThatMayBeReadButNotWrittenIsRefused();
    void fifoAndDeviceAreRefusedAsUnknown();
    void systemDirectoriesAreRefused_data();
    void systemDirectoriesAreRefused();
    void whatOnlyResemblesASystemDirectoryIsAdmitted_data();
    void whatOnlyResemblesASystemDirectoryIsAdmitted();
    void secondTimeInOneBatchIsADuplicate();
    void duplicatesAreComparedLetterByLetter();
    void missingPathIsMissingEvenAsADuplicate();

private:
    QString make(const QString &name) const { return tree->makeFile(name, 1); }
    /// The reasons reported since the last call; 0 when nothing was.
    uint reported();
    uint admit(const QStringList &paths);

    testsupport::SandboxHome home;
    std::unique_ptr<TemporaryTree> tree;
    std::unique_ptr<WalleHarness> harness;
};

void TestWalleAdmission::init()
{
    tree = std::make_unique<TemporaryTree>();
    OrdinaryUser::give(tree->path());
    harness = std::make_unique<WalleHarness>();
}

void TestWalleAdmission::cleanup()
{
    harness.reset();
    tree.reset();
}

uint TestWalleAdmission::reported()
{
    if (!harness->performed())
        qFatal("the controller does not answer");
    const SignalRecords reports = harness->log({"alertDialog"});
    harness->takeLog();
    if (reports.size() > 1)
        qFatal("more than one report for one batch");
    return reports.isEmpty() ? 0 : reports.first().arguments.first().toUInt();
}

uint TestWalleAdmission::admit(const QStringList &paths)
{
    harness->choose(paths);
    return reported();
}

void TestWalleAdmission::filesFoldersAndLinksAreAdmitted()
{
    const QString file = make(QStringLiteral("file"));
    const QString folder = tree->makeFolder(QStringLiteral("folder"));
    const QString link = tree->makeLink(QStringLiteral("link"), file);
    QCOMPARE(admit({file, folder, link}), 0U);
    QCOMPARE(harness->paths(), (QStringList{file, folder, link}));
    QCOMPARE(harness->checkedPaths(), harness->paths());
}

void TestWalleAdmission::admittedPathIsTakenLiterally()
{
    const QString file = make(QStringLiteral("folder/file"));
    const QString roundabout = tree->path(QStringLiteral("folder//../folder/./file"));
    QCOMPARE(admit({file, roundabout}), 0U);
    QCOMPARE(harness->paths(), (QStringList{file, roundabout}));
}

void TestWalleAdmission::zeroByteInAPathNamesNoOtherFile()
{
    const QString file = tree->makeFile(QStringLiteral("file"), 1);
    QCOMPARE(admit({file + QChar(QChar::Null) + QLatin1Char('b')}), RejectNotFound);
}

void TestWalleAdmission::danglingLinkIsAdmitted()
{
    const QString link =
        tree->makeLink(QStringLiteral("link"), QStringLiteral("/nonexistent/target"));
    QCOMPARE(admit({link}), 0U);
    QCOMPARE(harness->paths(), QStringList{link});
}

void TestWalleAdmission::danglingLinkIsStillRefusedAsDuplicate()
{
    const QString link =
        tree->makeLink(QStringLiteral("link"), QStringLiteral("/nonexistent/target"));
    QCOMPARE(admit({link, link}), RejectDuplicate);
}

void TestWalleAdmission::linkToAnUnreadableTargetIsAdmittedTheTargetRefused()
{
    const QString target = make(QStringLiteral("target"));
    const QString link = tree->makeLink(QStringLiteral("link"), target);
    OrdinaryUser::give(target);
    QVERIFY(QFile::setPermissions(target, {}));
    const OrdinaryUser user;
    QCOMPARE(admit({link}), 0U);
    QCOMPARE(admit({target}), RejectNoPermission);
    QCOMPARE(harness->paths(), QStringList{link});
}

void TestWalleAdmission::fileThatMayBeReadButNotWrittenIsRefused()
{
    const QString file = make(QStringLiteral("file"));
    OrdinaryUser::give(file);
    QVERIFY(QFile::setPermissions(file, QFile::ReadOwner));
    const OrdinaryUser user;
    QCOMPARE(admit({file}), RejectNoPermission);
    QVERIFY(harness->rows().isEmpty());
}

void TestWalleAdmission::fifoAndDeviceAreRefusedAsUnknown()
{
    QCOMPARE(admit({tree->makeFifo(QStringLiteral("fifo"))}), RejectUnknownType);
    QCOMPARE(admit({QStringLiteral("/dev/null")}), RejectUnknownType);
    QVERIFY(harness->rows().isEmpty());
}

void TestWalleAdmission::systemDirectoriesAreRefused_data()
{
    QTest::addColumn<QString>("path");
    for (const char *name :
         {"/", "/proc", "/usr/sbin", "/sbin", "/etc", "/dev", "/mnt", "/bin", "/lib", "/sys"})
        QTest::newRow(name) << QString::fromLatin1(name);
}

/// For whom may not read and write it, a system directory is refused for that reason already; a
/// directory that is a link is refused as a system directory for everybody.
void TestWalleAdmission::systemDirectoriesAreRefused()
{
    QFETCH(QString, path);
    const QFileInfo info(path);
    const bool permitted = info.isSymLink() || (info.isWritable() && info.isReadable());
    const uint expected = !info.exists() ? RejectNotFound
                          : permitted    ? RejectSystemPath
                                         : RejectNoPermission;
    QCOMPARE(admit({path}), expected);
    QVERIFY(harness->rows().isEmpty());
}

void TestWalleAdmission::whatOnlyResemblesASystemDirectoryIsAdmitted_data()
{
    QTest::addColumn<QString>("path");
    for (const char *name : {"/etc/", "/usr/bin", "/etc/passwd", "//", "/usr", "/dev/../etc"})
        QTest::newRow(name) << QString::fromLatin1(name);
}

void TestWalleAdmission::whatOnlyResemblesASystemDirectoryIsAdmitted()
{
    QFETCH(QString, path);
    const QFileInfo info(path);
    const bool permitted = info.isWritable() && info.isReadable();
    QCOMPARE(admit({path}), permitted ? 0U : RejectNoPermission);
    QCOMPARE(harness->paths(), permitted ? QStringList{path} : QStringList());
}

void TestWalleAdmission::secondTimeInOneBatchIsADuplicate()
{
    const QString file = make(QStringLiteral("file"));
    QCOMPARE(admit({file, file}), RejectDuplicate);
    QCOMPARE(harness->paths(), QStringList{file});
}

void TestWalleAdmission::duplicatesAreComparedLetterByLetter()
{
    const QString lower = make(QStringLiteral("file"));
    const QString upper = make(QStringLiteral("FILE"));
    const QString folder = tree->makeFolder(QStringLiteral("folder"));
    const QString folderWithSlash = folder + QLatin1Char('/');
    QCOMPARE(admit({lower, upper, folder, folderWithSlash}), 0U);
    QCOMPARE(harness->rows().size(), 4);
}

void TestWalleAdmission::missingPathIsMissingEvenAsADuplicate()
{
    const QString file = make(QStringLiteral("file"));
    QCOMPARE(admit({file}), 0U);
    QVERIFY(QFile::remove(file));
    QCOMPARE(admit({file}), RejectNotFound);
}

TEST_SUITE(admission, TestWalleAdmission)
#include "admission.moc"
