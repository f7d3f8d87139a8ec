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

} // namespace

class TestNames : public EngineTest
{
    Q_OBJECT

private slots:
    void fileAndFolderNotNamedInUtf8AreLeftAndTheirFolderFails();
    void longestPathIsShredded();
    void fileBeyondThePathLimitIsShredded();
    void fiveHundredFoldersDeepAreShredded();

private:
    QString nameOfPath(int length) const;
};

/// The name with which a path has @p length bytes, some folders deep.
QString TestNames::nameOfPath(int length) const
{
    QString name;
    int left = length - tree->path().toUtf8().size() - 1;
    for (; left > NAME_MAX; left -= 201)
        name += QString(200, QLatin1Char('d')) + QLatin1Char('/');
    return name + QString(left, QLatin1Char('e'));
}

void TestNames::fileAndFolderNotNamedInUtf8AreLeftAndTheirFolderFails()
{
    const QString file = tree->makeFile("top/file", 100);
    const QByteArray strangeFile = top().toUtf8() + "/latin1-\xE9\xFF";
    const QByteArray strangeFolder = strangeFile + "-folder";
    if (::mknod(strangeFile.constData(), S_IFREG | 0600, 0) != 0
        || ::truncate(strangeFile.constData(), 4) != 0
        || ::mkdir(strangeFolder.constData(), 0700) != 0)
        QSKIP("this file system takes UTF-8 names only");

    QCOMPARE(shredFolder(top()), qint64{-3});
    QCOMPARE(log->records(), (SignalRecords{progress(top(), 100), removal(file)}));
    QCOMPARE(FileCrusher::statSize(strangeFile.constData()), qint64{4});
    QCOMPARE(::remove(strangeFile.constData()), 0); // QTemporaryDir cannot
    QCOMPARE(::remove(strangeFolder.constData()), 0);
}

void TestNames::longestPathIsShredded()
{
    const QString file = tree->makeFile(nameOfPath(longestPath), 100);
    QCOMPARE(file.toUtf8().size(), longestPath);
    QCOMPARE(shredFolder(tree->path()), qint64{0});
    QVERIFY(!entryExists(tree->path()));
    QCOMPARE(log->firstArguments("addToHistory").first(), file);
}

void TestNames::fileBeyondThePathLimitIsShredded()
{
    const QString folder = tree->makeFolder(nameOfPath(longestPath - 1));
    const int descriptor = ::open(folder.toUtf8().constData(), O_DIRECTORY | O_PATH | O_CLOEXEC);
    QVERIFY(descriptor >= 0);
    QFile file;
    QVERIFY(file.open(::openat(descriptor, "beyond", O_CREAT | O_RDWR | O_CLOEXEC, 0600),
                      QIODevice::ReadWrite | QIODevice::Unbuffered, QFileDevice::AutoCloseHandle));
    ::close(descriptor);
    const QByteArray contents(100, 'x');
    QCOMPARE(file.write(contents), qint64{100});

    QCOMPARE(shredFolder(tree->path()), qint64{0});
    QVERIFY(!entryExists(tree->path()));
    QCOMPARE(log->firstArguments("addToHistory").first(), folder + QStringLiteral("/beyond"));
    QVERIFY(file.seek(0));
    const QByteArray left = file.readAll();
    QVERIFY(left.size() == 100 && left != contents);
}

void TestNames::fiveHundredFoldersDeepAreShredded()
{
    QString folder = top();
    QStringList expected{folder};
    for (int level = 1; level < 500; ++level)
        expected.prepend(folder += QStringLiteral("/d"));
    expected.prepend(
        tree->makeFile(folder.mid(tree->path().size() + 1) + QStringLiteral("/file"), 100));
    QCOMPARE(shredFolder(top()), qint64{0});
    QCOMPARE(log->firstArguments("addToHistory"), expected);
}

TEST_SUITE(names, TestNames)
#include "names.moc"
