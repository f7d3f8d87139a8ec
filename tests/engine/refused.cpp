// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// Files that the system does not let go: open refused, or removal refused. Two
// ways work for every user: a running program cannot be opened for writing,
// and an ordinary user, which root becomes for a while, needs permissions.

#include "engine/filecrusher.h"

#include "ordinaryuser.h"
#include "signallog.h"
#include "suites.h"
#include "temporarytree.h"

#include <QProcess>
#include <QtTest>

#include <csignal>
#include <memory>

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

using testsupport::entryExists;
using testsupport::OrdinaryUser;
using testsupport::SignalLog;
using testsupport::SignalRecords;
using testsupport::TemporaryTree;

namespace
{

void setMode(const QString &path, mode_t mode)
{
    QVERIFY(::chmod(path.toUtf8().constData(), mode) == 0);
}

/// A program in a file of its own that runs for the life of the object.
class RunningProgram
{
public:
    explicit RunningProgram(const QString &path)
    {
        if (!QFile::copy(QStringLiteral("/bin/sleep"), path))
            qFatal("cannot copy a program to %s", qPrintable(path));
        process.start(path, {QStringLiteral("1000")});
        if (!process.waitForStarted())
            qFatal("cannot run %s", qPrintable(path));
    }
    ~RunningProgram()
    {
        process.kill();
        process.waitForFinished();
    }
    RunningProgram(const RunningProgram &) = delete;
    RunningProgram &operator=(const RunningProgram &) = delete;

private:
    QProcess process;
};

/// Another process with a lease on a file, as file servers take it: the kernel asks for the lease
/// back when somebody opens the file, and the process gives it back a moment later.
class LeaseHolder
{
public:
    explicit LeaseHolder(const QString &path)
    {
        const QByteArray name = path.toUtf8();
        int ready[2] = {};
        if (::pipe(ready) != 0)
            qFatal("no pipe");
        child = ::fork();
        if (child == 0)
            hold(name.constData(), ready[1]);
        ::close(ready[1]);
        char answer = '-';
        holds = ::read(ready[0], &answer, 1) == 1 && answer == '+';
        ::close(ready[0]);
    }
    ~LeaseHolder()
    {
        ::kill(child, SIGKILL);
        ::waitpid(child, nullptr, 0);
    }
    LeaseHolder(const LeaseHolder &) = delete;
    LeaseHolder &operator=(const LeaseHolder &) = delete;

    bool isHeld() const { return holds; }

private:
    [[noreturn]] static void hold(const char *path, int ready)
    {
        constexpr useconds_t moment = 100000; // microseconds
        sigset_t asked;
        sigemptyset(&asked);
        sigaddset(&asked, SIGIO);
        sigprocmask(SIG_BLOCK, &asked, nullptr);
        const int file = ::open(path, O_RDONLY | O_CLOEXEC);
        const bool held = ::fcntl(file, F_SETLEASE, F_RDLCK) == 0;
        static_cast<void>(::write(ready, held ? "+" : "-", 1));
        int signal = 0;
        sigwait(&asked, &signal);
        ::usleep(moment);
        ::fcntl(file, F_SETLEASE, F_UNLCK);
        ::_exit(0);
    }

    pid_t child = -1;
    bool holds = false;
};

} // namespace

class TestFileCrusherRefused : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void runningProgramGivenAloneStays();
    void runningProgramInAFolderStaysAndTheFolderFails();
    void runningProgramInAnEmptyTreeIsUnlinkedUnopened();
    void readOnlyFileStays();
    void readOnlyFileInAFolderStaysAndTheFolderFails();
    void emptyFileNeedsNoPermissionOfItsOwn();
    void fileThatCannotBeRemovedIsAFailure();
    void linkThatCannotBeRemovedIsAFailure();
    void contentsOfAWriteProtectedFolderStay();
    void folderThatCannotBeSearchedIsListed();
    void unreadableFolderIsNotWalked();
    void fileUnderALeaseIsWaitedFor();

private:
    qint64 shredFile(const QString &path) { return crusher->shredFile(path.toUtf8().constData()); }
    qint64 shredInTree(const QString &path, quint64 total)
    {
        return crusher->shredFileInDirectory(path.toUtf8().constData(), total, 0, tree->path());
    }
    qint64 shredFolder(const QString &path)
    {
        return crusher->shredDirectory(path.toUtf8().constData());
    }

    std::unique_ptr<TemporaryTree> tree;
    std::unique_ptr<FileCrusher> crusher;
    std::unique_ptr<SignalLog> log;
};

void TestFileCrusherRefused::init()
{
    tree = std::make_unique<TemporaryTree>();
    setMode(tree->path(), 0777);
    crusher = std::make_unique<FileCrusher>();
    log = std::make_unique<SignalLog>(crusher.get());
}

void TestFileCrusherRefused::cleanup()
{
    log.reset();
    crusher.reset();
    tree.reset();
}

void TestFileCrusherRefused::runningProgramGivenAloneStays()
{
    const QString path = tree->path(QStringLiteral("program"));
    const RunningProgram program(path);
    const QByteArray contents = TemporaryTree::contentsOf(path);
    QCOMPARE(shredFile(path), qint64{-2});
    QCOMPARE(log->records(), SignalRecords());
    QCOMPARE(TemporaryTree::contentsOf(path), contents);
}

void TestFileCrusherRefused::runningProgramInAFolderStaysAndTheFolderFails()
{
    const QString top = tree->makeFolder(QStringLiteral("top"));
    const QString path = tree->path(QStringLiteral("top/program"));
    const RunningProgram program(path);
    const QByteArray contents = TemporaryTree::contentsOf(path);
    const QString file = tree->makeFile(QStringLiteral("top/folder/file"), contents.size());

    QCOMPARE(shredInTree(path, 100), qint64{-2});
    QCOMPARE(log->records(), SignalRecords());

    QCOMPARE(shredFolder(top), qint64{-3});
    QCOMPARE(TemporaryTree::contentsOf(path), contents);
    // What failed counts nothing, so the other half of the bytes ends at 50.
    const SignalRecords records = log->records();
    QCOMPARE(records.mid(records.size() - 3),
             (SignalRecords{{"finishPercent", {top, 50}},
                            {"addToHistory", {file}},
                            {"addToHistory", {tree->path(QStringLiteral("top/folder"))}}}));
}

void TestFileCrusherRefused::runningProgramInAnEmptyTreeIsUnlinkedUnopened()
{
    const QString path = tree->path(QStringLiteral("program"));
    const RunningProgram program(path);
    QCOMPARE(shredInTree(path, 0), qint64{0});
    QVERIFY(!entryExists(path));
}

void TestFileCrusherRefused::readOnlyFileStays()
{
    const QString file = tree->makeFile(QStringLiteral("file"), 5000);
    setMode(file, 0444);
    const OrdinaryUser user;
    QCOMPARE(shredFile(file), qint64{-2});
    QCOMPARE(shredInTree(file, 5000), qint64{-2});
    QCOMPARE(TemporaryTree::contentsOf(file), QByteArray(5000, 'x'));
    QCOMPARE(log->records(), SignalRecords());
}

void TestFileCrusherRefused::readOnlyFileInAFolderStaysAndTheFolderFails()
{
    const QString top = tree->makeFolder(QStringLiteral("top"));
    const QString file = tree->makeFile(QStringLiteral("top/file"), 5000);
    setMode(top, 0777);
    setMode(file, 0444);
    const OrdinaryUser user;
    QCOMPARE(shredFolder(top), qint64{-3});
    QCOMPARE(TemporaryTree::contentsOf(file), QByteArray(5000, 'x'));
    QCOMPARE(log->records(), SignalRecords());
}

void TestFileCrusherRefused::emptyFileNeedsNoPermissionOfItsOwn()
{
    const QString file = tree->makeFile(QStringLiteral("file"), 0);
    setMode(file, 0);
    const OrdinaryUser user;
    QCOMPARE(shredFile(file), qint64{0});
    QVERIFY(!entryExists(file));
}

void TestFileCrusherRefused::fileThatCannotBeRemovedIsAFailure()
{
    const QString top = tree->makeFolder(QStringLiteral("top"));
    const QString file = tree->makeFile(QStringLiteral("top/file"), 5000);
    const QString empty = tree->makeFile(QStringLiteral("top/empty"), 0);
    setMode(file, 0666);
    setMode(top, 0555);
    {
        const OrdinaryUser user;
        QCOMPARE(shredFile(empty), qint64{-7});
        QCOMPARE(shredInTree(empty, 0), qint64{-7});
        QCOMPARE(log->records(), SignalRecords());
        QCOMPARE(shredFile(file), qint64{-7});
        QCOMPARE(log->records(),
                 (SignalRecords{{"finishPercent", {file, 100}}, {"finishPercent", {file, 99}}}));
        log->clear();
        // The share done is reported only once the file is gone.
        QCOMPARE(shredInTree(file, 100000), qint64{-7});
        QCOMPARE(log->records(), SignalRecords());
    }
    setMode(top, 0755);
    QVERIFY(entryExists(empty));
    QCOMPARE(TemporaryTree::contentsOf(file).size(), 5000);
    QVERIFY(TemporaryTree::contentsOf(file) != QByteArray(5000, 'x'));
}

void TestFileCrusherRefused::linkThatCannotBeRemovedIsAFailure()
{
    const QString top = tree->makeFolder(QStringLiteral("top"));
    const QString link = tree->makeLink(QStringLiteral("top/link"), QStringLiteral("nowhere"));
    setMode(top, 0555);
    {
        const OrdinaryUser user;
        QCOMPARE(shredFile(link), qint64{-5});
        QCOMPARE(shredFolder(top), qint64{-3});
    }
    setMode(top, 0755);
    QVERIFY(entryExists(link));
    QCOMPARE(log->records(), SignalRecords());
}

void TestFileCrusherRefused::contentsOfAWriteProtectedFolderStay()
{
    const QString top = tree->makeFolder(QStringLiteral("top"));
    const QString empty = tree->makeFile(QStringLiteral("top/empty"), 0);
    const QString folder = tree->makeFolder(QStringLiteral("top/folder"));
    setMode(top, 0555);
    {
        const OrdinaryUser user;
        QCOMPARE(shredFolder(top), qint64{-3});
    }
    setMode(top, 0755);
    QVERIFY(entryExists(empty));
    QVERIFY(entryExists(folder));
    QCOMPARE(log->records(), SignalRecords());
}

void TestFileCrusherRefused::folderThatCannotBeSearchedIsListed()
{
    const QString top = tree->makeFolder(QStringLiteral("top"));
    tree->makeFile(QStringLiteral("top/file"), 10);
    setMode(top, 0444);
    const OrdinaryUser user;
    QCOMPARE(FileCrusher::listDirectory(top.toUtf8().constData()).size(), 1);
}

void TestFileCrusherRefused::unreadableFolderIsNotWalked()
{
    const QString top = tree->makeFolder(QStringLiteral("top"));
    const QString file = tree->makeFile(QStringLiteral("top/file"), 10);
    setMode(top, 0333);
    {
        const OrdinaryUser user;
        QCOMPARE(FileCrusher::listDirectory(top.toUtf8().constData()), QList<QFileInfo>());
        QCOMPARE(FileCrusher::directorySize(top.toUtf8().constData()), quint64{0});
        QCOMPARE(shredFolder(top), qint64{-3});
    }
    setMode(top, 0755);
    QCOMPARE(TemporaryTree::contentsOf(file), QByteArray(10, 'x'));
    QCOMPARE(log->records(), SignalRecords());
}

void TestFileCrusherRefused::fileUnderALeaseIsWaitedFor()
{
    const QString lone = tree->makeFile(QStringLiteral("lone"), 5000);
    const QString inTree = tree->makeFile(QStringLiteral("top/file"), 5000);
    {
        const LeaseHolder holder(lone);
        if (!holder.isHeld())
            QSKIP("no leases on this file system");
        QCOMPARE(crusher->shredFile(lone.toUtf8().constData()), qint64{5000});
    }
    const LeaseHolder holder(inTree);
    QVERIFY(holder.isHeld());
    QCOMPARE(crusher->shredDirectory(tree->path(QStringLiteral("top")).toUtf8().constData()),
             qint64{0});
    QVERIFY(!entryExists(lone));
    QVERIFY(!entryExists(inTree));
}

TEST_SUITE(refused, TestFileCrusherRefused)
#include "refused.moc"
