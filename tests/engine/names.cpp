// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// Names that are not UTF-8, and paths as long as the system takes them; names of every other kind
// are in model.cpp.

#include "enginetest.h"

#include <climits>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace testsupport;

namespace
{

constexpr int longestPath = PATH_MAX - 1;

/// A path of @p length bytes in @p folder. Its last name takes what is left, and leaves room for a
/// slash and a name.
QByteArray longPathBelow(const QByteArray &folder, int length)
{
    QByteArray path = folder;
    while (length - path.size() > NAME_MAX + 1)
        path += '/' + QByteArray(200, 'd');
    return path + '/' + QByteArray(length - path.size() - 1, 'e');
}

} // namespace

class TestNames : public EngineTest
{
    Q_OBJECT

private slots:
    void nameThatIsNotUtf8IsLeftAndTheFolderFails_data();
    void nameThatIsNotUtf8IsLeftAndTheFolderFails();
    void longestPathIsShredded();
    void fileBeyondThePathLimitIsShredded();
    void fiveHundredFoldersDeepAreShredded();
};

void TestNames::nameThatIsNotUtf8IsLeftAndTheFolderFails_data()
{
    QTest::addColumn<bool>("isFolder");
    QTest::newRow("file") << false;
    QTest::newRow("folder") << true;
}

void TestNames::nameThatIsNotUtf8IsLeftAndTheFolderFails()
{
    QFETCH(bool, isFolder);
    const QString file = tree->makeFile("top/file", 100);
    const QString top = tree->path("top");
    const QByteArray strange = top.toUtf8() + "/latin1-\xE9\xFF";
    const bool made = isFolder ? ::mkdir(strange.constData(), 0700) == 0
                               : ::mknod(strange.constData(), S_IFREG | 0600, 0) == 0
                                     && ::truncate(strange.constData(), 4) == 0;
    if (!made)
        QSKIP("this file system takes UTF-8 names only");

    QCOMPARE(shredFolder(top), qint64{-3});
    QCOMPARE(log->records(), (SignalRecords{progress(top, 100), removal(file)}));
    if (!isFolder)
        QCOMPARE(FileCrusher::statSize(strange.constData()), qint64{4});
    QCOMPARE(::remove(strange.constData()), 0); // QTemporaryDir cannot
}

void TestNames::longestPathIsShredded()
{
    const QString file = QString::fromUtf8(longPathBelow(tree->path().toUtf8(), longestPath));
    tree->makeFile(file.mid(tree->path().size() + 1), 100);
    QCOMPARE(file.toUtf8().size(), longestPath);
    QCOMPARE(shredFolder(tree->path()), qint64{0});
    QVERIFY(!entryExists(tree->path()));
    QCOMPARE(log->firstArguments("addToHistory").first(), file);
}

void TestNames::fileBeyondThePathLimitIsShredded()
{
    const QByteArray folder = longPathBelow(tree->path().toUtf8(), longestPath - 1);
    tree->makeFolder(QString::fromUtf8(folder.mid(tree->path().toUtf8().size() + 1)));
    const int descriptor = ::open(folder.constData(), O_DIRECTORY | O_PATH | O_CLOEXEC);
    QVERIFY(descriptor >= 0);
    QFile file;
    QVERIFY(file.open(::openat(descriptor, "beyond", O_CREAT | O_RDWR | O_CLOEXEC, 0600),
                      QIODevice::ReadWrite | QIODevice::Unbuffered, QFileDevice::AutoCloseHandle));
    ::close(descriptor);
    const QByteArray contents(100, 'x');
    QCOMPARE(file.write(contents), qint64{100});

    QCOMPARE(shredFolder(tree->path()), qint64{0});
    QVERIFY(!entryExists(tree->path()));
    QCOMPARE(log->firstArguments("addToHistory").first(), QString::fromUtf8(folder + "/beyond"));
    QVERIFY(file.seek(0));
    const QByteArray left = file.readAll();
    QVERIFY(left.size() == 100 && left != contents);
}

void TestNames::fiveHundredFoldersDeepAreShredded()
{
    QString folder = QStringLiteral("top");
    QStringList expected{tree->path(folder)};
    for (int level = 1; level < 500; ++level) {
        folder += QStringLiteral("/d");
        expected.prepend(tree->path(folder));
    }
    expected.prepend(tree->makeFile(folder + QStringLiteral("/file"), 100));
    QCOMPARE(shredFolder(tree->path("top")), qint64{0});
    QCOMPARE(log->firstArguments("addToHistory"), expected);
}

TEST_SUITE(names, TestNames)
#include "names.moc"
