// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// Which paths become rows: one by one, in a batch from the file dialog and in a drop.
// Real system folders are admitted here, so no test in this file starts a run.

#include "suites.h"
#include "systemcalls.h"
#include "walleharness.h"

using testsupport::CallFate;
using testsupport::CallHook;
using testsupport::OrdinaryUser;
using testsupport::SignalRecords;
using testsupport::SystemCall;
using testsupport::WalleTest;

class TestAdmission : public WalleTest
{
    Q_OBJECT

private slots:
    void batchIsAdmittedOrRefusedForOneReason_data();
    void batchIsAdmittedOrRefusedForOneReason();
    void missingPathIsMissingEvenAsADuplicate();
    void systemDirectoryIsRefusedByItsExactNameOnly_data();
    void systemDirectoryIsRefusedByItsExactNameOnly();
    void systemDirectoryIsRefusedAsOneInAFullList();

    void dialogBatchGoesOnBeyondTheLimitAndReportsItOnce();
    void dropEndsAtTheFirstRefusalForTheLimit();
    void urlThatIsNoLocalFileEndsTheDropSilently_data();
    void urlThatIsNoLocalFileEndsTheDropSilently();
    void droppedNamesKeepTheirBytes();

private:
    /// The reasons reported for a batch; 0 when nothing was.
    uint reported(const std::function<void()> &batch);
    uint choosing(const QStringList &paths)
    {
        return reported([&] { choose(paths); });
    }
};

uint TestAdmission::reported(const std::function<void()> &batch)
{
    takeLog();
    batch();
    performed();
    const SignalRecords reports = log({"alertDialog"});
    if (reports.size() > 1)
        qFatal("more than one report for one batch");
    return reports.isEmpty() ? 0 : reports.first().arguments.first().toUInt();
}

void TestAdmission::batchIsAdmittedOrRefusedForOneReason_data()
{
    QTest::addColumn<QByteArrayList>("names");
    QTest::addColumn<uint>("reason");
    const auto row = [](const char *name, const QByteArrayList &names, uint reason) {
        QTest::newRow(name) << names << reason;
    };
    row("paths are taken and compared literally",
        {"folder/file", "folder/FILE", "folder//../folder/./file", "folder", "folder/"}, 0);
    row("dangling link is admitted", {"dangling"}, 0);
    row("dangling link is admitted once", {"dangling", "dangling"}, RejectDuplicate);
    row("second time in one batch is a duplicate", {"file", "file"}, RejectDuplicate);
    row("link to an unreadable target is admitted", {"link"}, 0);
    row("its target is refused", {"closed"}, RejectNoPermission);
    row("file that may be read but not written", {"readable"}, RejectNoPermission);
    row("file that may be written but not read", {"writable"}, RejectNoPermission);
    row("fifo is refused as unknown", {"fifo"}, RejectUnknownType);
    row("device is refused as unknown", {"/dev/null"}, RejectUnknownType);
    row("missing path", {"missing"}, RejectNotFound);
    row("zero byte in a path names no other file", {QByteArrayLiteral("file\0b")}, RejectNotFound);
}

void TestAdmission::batchIsAdmittedOrRefusedForOneReason()
{
    QFETCH(QByteArrayList, names);
    QFETCH(uint, reason);
    OrdinaryUser::give(tree->path());
    const auto makeWith = [this](const char *name, QFile::Permissions permissions) {
        OrdinaryUser::give(make(name));
        QFile::setPermissions(tree->path(name), permissions);
    };
    for (const char *name : {"file", "folder/file", "folder/FILE"})
        makeWith(name, QFile::ReadOwner | QFile::WriteOwner);
    makeWith("readable", QFile::ReadOwner);
    makeWith("writable", QFile::WriteOwner);
    makeWith("closed", {});
    OrdinaryUser::give(tree->path("folder"));
    OrdinaryUser::give(tree->makeFifo("fifo"));
    tree->makeLink("link", tree->path("closed"));
    tree->makeLink("dangling", "/nonexistent");

    QStringList batch;
    for (const QByteArray &bytes : qAsConst(names)) {
        const QString name = QString::fromLatin1(bytes.constData(), bytes.size());
        batch.append(name.startsWith(QLatin1Char('/')) ? name : tree->path(name));
    }
    const OrdinaryUser user;
    QCOMPARE(choosing(batch), reason);
    batch.removeDuplicates();
    QCOMPARE(paths(), reason == 0 || reason == RejectDuplicate ? batch : QStringList());
}

void TestAdmission::missingPathIsMissingEvenAsADuplicate()
{
    const QString file = make("file");
    QCOMPARE(choosing({file}), 0U);
    QVERIFY(QFile::remove(file));
    QCOMPARE(choosing({file}), RejectNotFound);
}

/// For whom may not read and write it, a system directory is refused for that reason already.
static CallFate permitEverything(const SystemCall &call)
{
    return {0, false, call.is("access")};
}

void TestAdmission::systemDirectoryIsRefusedByItsExactNameOnly_data()
{
    QTest::addColumn<uint>("reason");
    for (const char *path :
         {"/", "/proc", "/usr/sbin", "/sbin", "/etc", "/dev", "/mnt", "/bin", "/lib", "/sys"})
        QTest::newRow(path) << uint{RejectSystemPath};
    for (const char *path : {"/etc/", "/usr/bin", "/etc/passwd", "//", "/usr", "/dev/../etc"})
        QTest::newRow(path) << 0U;
}

void TestAdmission::systemDirectoryIsRefusedByItsExactNameOnly()
{
    QFETCH(uint, reason);
    const QString path = QString::fromLatin1(QTest::currentDataTag());
    const CallHook hook(permitEverything);
    QCOMPARE(choosing({path}), QFileInfo::exists(path) ? reason : RejectNotFound);
    QCOMPARE(paths(), reason == 0 ? QStringList{path} : QStringList());
}

void TestAdmission::systemDirectoryIsRefusedAsOneInAFullList()
{
    addRows(200);
    const CallHook hook(permitEverything);
    QCOMPARE(choosing({QStringLiteral("/etc")}), RejectSystemPath);
}

void TestAdmission::dialogBatchGoesOnBeyondTheLimitAndReportsItOnce()
{
    addRows(199);
    const QStringList names = makeFiles("new", 3);
    // The last name shows that every name is tried.
    QCOMPARE(choosing(names + QStringList{QStringLiteral("/nonexistent")}),
             RejectOverLimit | RejectNotFound);
    QCOMPARE(paths().size(), 200);
    QCOMPARE(paths().constLast(), names.first());
}

void TestAdmission::dropEndsAtTheFirstRefusalForTheLimit()
{
    addRows(199);
    const QStringList names = makeFiles("new", 2);
    // The last name would add its own reason if it were looked at.
    QCOMPARE(reported([&] { dropFiles(names + QStringList{QStringLiteral("/nonexistent")}); }),
             RejectOverLimit);
    QCOMPARE(paths().size(), 200);
    QCOMPARE(paths().constLast(), names.first());
}

void TestAdmission::urlThatIsNoLocalFileEndsTheDropSilently_data()
{
    QTest::addColumn<QUrl>("url");
    for (const char *url : {"http://example.com/b", "sftp://example.com/b", "trash:///b", ""})
        QTest::newRow(url) << QUrl(QString::fromLatin1(url));
}

void TestAdmission::urlThatIsNoLocalFileEndsTheDropSilently()
{
    QFETCH(QUrl, url);
    const QString first = make("first");
    const QList<QUrl> urls{QUrl::fromLocalFile(first), url, QUrl::fromLocalFile(make("behind")),
                           QUrl::fromLocalFile(QStringLiteral("/nonexistent"))};
    QCOMPARE(reported([&] { drop(urls); }), 0U);
    QCOMPARE(paths(), QStringList{first});
}

void TestAdmission::droppedNamesKeepTheirBytes()
{
    const QString folder = tree->makeFolder("folder");
    const QStringList names{make("a b%20c#d?e"), make("'q' \"q\""), make("粉碎 🗑"),
                            make("two\nlines"), folder + QStringLiteral("//../folder/")};
    QCOMPARE(reported([&] { dropFiles(names); }), 0U);
    QCOMPARE(paths(), names);
}

TEST_SUITE(admission, TestAdmission)
#include "admission.moc"
