// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// What stands in the place of the pid file when the program starts: links to here and
// there, things that are no files, and what may not be written. A link is followed, as
// the user put it there: the pid goes into what it leads to, and nothing else is written.

#include "app/instancelock.h"

#include "instance.h"
#include "inventory.h"
#include "ordinaryuser.h"
#include "suites.h"
#include "temporarytree.h"

#include <QFile>
#include <QFileInfo>
#include <QtTest>

#include <memory>

using testsupport::Instance;
using testsupport::inventoryOf;
using testsupport::OrdinaryUser;
using testsupport::TemporaryTree;

class TestInstanceLockPlaces : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup() { tree.reset(); }

    void linkToAFileIsFollowed();
    void danglingLinkMakesItsTarget();
    void linkedFilesExcludeEachOther();
    void linkThatLeadsToNoFileEndsTheProcess_data();
    void linkThatLeadsToNoFileEndsTheProcess();
    void fileThatMayNotBeWrittenEndsTheProcess();
    void folderThatMayNotBeWrittenEndsTheProcess();
    void fifoIsNotWaitedFor();

private:
    static QString name() { return QStringLiteral("home/.fileshredder.pid"); }

    std::unique_ptr<TemporaryTree> tree;
    QString path;
};

void TestInstanceLockPlaces::init()
{
    tree = std::make_unique<TemporaryTree>();
    tree->makeFolder(QStringLiteral("home"));
    tree->makeFile(QStringLiteral("elsewhere/other"), QByteArray("kept"));
    path = tree->path(name());
}

void TestInstanceLockPlaces::linkToAFileIsFollowed()
{
    const QString target = tree->makeFile(QStringLiteral("elsewhere/file"), QByteArray(1000, 'x'));
    tree->makeLink(name(), target);
    const Instance instance(path);
    QCOMPARE(instance.lockResult(), instancelock::Acquired);
    QVERIFY(QFileInfo(path).isSymLink());
    QCOMPARE(TemporaryTree::contentsOf(target), QByteArray::number(instance.pid()));
    QCOMPARE(TemporaryTree::contentsOf(tree->path(QStringLiteral("elsewhere/other"))),
             QByteArray("kept"));
}

void TestInstanceLockPlaces::danglingLinkMakesItsTarget()
{
    const QString target = tree->path(QStringLiteral("elsewhere/new"));
    tree->makeLink(name(), target);
    const Instance instance(path);
    QCOMPARE(instance.lockResult(), instancelock::Acquired);
    QCOMPARE(TemporaryTree::contentsOf(target), QByteArray::number(instance.pid()));
}

void TestInstanceLockPlaces::linkedFilesExcludeEachOther()
{
    const QString target = tree->makeFile(QStringLiteral("elsewhere/file"), 0);
    tree->makeLink(name(), target);
    const Instance first(path);
    const Instance second(target);
    QCOMPARE(first.lockResult(), instancelock::Acquired);
    QCOMPARE(second.lockResult(), instancelock::HeldByAnother);
}

void TestInstanceLockPlaces::linkThatLeadsToNoFileEndsTheProcess_data()
{
    QTest::addColumn<QString>("target");
    QTest::newRow("to a folder") << QStringLiteral("../elsewhere");
    QTest::newRow("to itself") << QStringLiteral(".fileshredder.pid");
    QTest::newRow("into nowhere") << QStringLiteral("no folder/pid");
    QTest::newRow("through a file") << QStringLiteral("../elsewhere/other/pid");
}

void TestInstanceLockPlaces::linkThatLeadsToNoFileEndsTheProcess()
{
    QFETCH(QString, target);
    tree->makeLink(name(), target);
    const QStringList before = inventoryOf(tree->path());
    Instance instance(path);
    QCOMPARE(instance.lockResult(), -1);
    QCOMPARE(instance.end(), 1);
    QCOMPARE(inventoryOf(tree->path()), before);
}

void TestInstanceLockPlaces::fileThatMayNotBeWrittenEndsTheProcess()
{
    tree.reset();
    const OrdinaryUser user;
    tree = std::make_unique<TemporaryTree>();
    path = tree->makeFile(name(), QByteArray("12345"));
    QVERIFY(QFile::setPermissions(path, QFile::ReadOwner));
    const QStringList before = inventoryOf(tree->path());
    Instance instance(path);
    QCOMPARE(instance.lockResult(), -1);
    QCOMPARE(instance.end(), 1);
    QCOMPARE(inventoryOf(tree->path()), before);
}

void TestInstanceLockPlaces::folderThatMayNotBeWrittenEndsTheProcess()
{
    tree.reset();
    const OrdinaryUser user;
    tree = std::make_unique<TemporaryTree>();
    const QString home = tree->makeFolder(QStringLiteral("home"));
    path = tree->path(name());
    QVERIFY(QFile::setPermissions(home, QFile::ReadOwner | QFile::ExeOwner));
    const QStringList before = inventoryOf(tree->path());
    Instance instance(path);
    QCOMPARE(instance.lockResult(), -1);
    QCOMPARE(instance.end(), 1);
    QCOMPARE(inventoryOf(tree->path()), before);
    QFile::setPermissions(home, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
}

void TestInstanceLockPlaces::fifoIsNotWaitedFor()
{
    // A fifo takes the lock and the pid like a file.
    tree->makeFifo(name());
    const Instance first(path);
    QCOMPARE(first.lockResult(), instancelock::Acquired);
    const Instance second(path);
    QCOMPARE(second.lockResult(), instancelock::HeldByAnother);
}

TEST_SUITE(instancelock_places, TestInstanceLockPlaces)
#include "instancelock_places.moc"
