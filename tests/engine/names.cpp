// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// Names of every kind, and paths as long as the system takes them.

#include "engine/filecrusher.h"

#include "signallog.h"
#include "suites.h"
#include "temporarytree.h"

#include <QtTest>

#include <climits>
#include <memory>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

using testsupport::entryExists;
using testsupport::SignalLog;
using testsupport::SignalRecords;
using testsupport::TemporaryTree;

namespace
{

constexpr int longestPath = PATH_MAX - 1;
constexpr int longName = 200;

void addNames()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("spaces") << QStringLiteral(" two  spaces ");
    QTest::newRow("quotes") << QStringLiteral("it's \"quoted\" `so`");
    QTest::newRow("percent signs") << QStringLiteral("100%1 %s%n%%");
    QTest::newRow("Chinese") << QStringLiteral("文件粉碎机");
    QTest::newRow("emoji") << QStringLiteral("🗑️👩‍👩‍👧");
    QTest::newRow("newlines") << QStringLiteral("one\ntwo\r\n");
    QTest::newRow("backslash") << QStringLiteral("a\\b\\");
    QTest::newRow("option") << QStringLiteral("--help");
    QTest::newRow("shell") << QStringLiteral("$HOME;*?[a]&|<>");
    QTest::newRow("hidden") << QStringLiteral(".hidden");
    QTest::newRow("three dots") << QStringLiteral("...");
    QTest::newRow("decomposed") << QStringLiteral("e\u0301");
    QTest::newRow("replacement character") << QStringLiteral("\uFFFD");
    QTest::newRow("byte order mark") << QStringLiteral("\uFEFFname");
    QTest::newRow("longest") << QString(NAME_MAX, QLatin1Char('n'));
}

QByteArray longPathBelow(const QByteArray &folder, int length)
{
    QByteArray path = folder;
    while (length - path.size() > NAME_MAX + 1)
        path += '/' + QByteArray(longName, 'd');
    // The last name takes what is left, and leaves room for a slash and a name.
    return path + '/' + QByteArray(length - path.size() - 1, 'e');
}

} // namespace

class TestFileCrusherNames : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void fileOfAnyNameIsShredded_data() { addNames(); }
    void fileOfAnyNameIsShredded();
    void linkOfAnyNameIsRemoved_data() { addNames(); }
    void linkOfAnyNameIsRemoved();
    void folderOfAnyNameIsShredded_data() { addNames(); }
    void folderOfAnyNameIsShredded();
    void nameThatIsNotUtf8IsLeftAndTheFolderFails();
    void folderWhoseNameIsNotUtf8IsLeftAndTheFolderFails();
    void longestPathIsShredded();
    void fileBeyondThePathLimitIsShredded();
    void fiveHundredFoldersDeepAreShredded();

private:
    qint64 shredFile(const QString &path) { return crusher->shredFile(path.toUtf8().constData()); }
    qint64 shredFolder(const QString &path)
    {
        return crusher->shredDirectory(path.toUtf8().constData());
    }

    std::unique_ptr<TemporaryTree> tree;
    std::unique_ptr<FileCrusher> crusher;
    std::unique_ptr<SignalLog> log;
};

void TestFileCrusherNames::init()
{
    tree = std::make_unique<TemporaryTree>();
    crusher = std::make_unique<FileCrusher>();
    log = std::make_unique<SignalLog>(crusher.get());
}

void TestFileCrusherNames::cleanup()
{
    log.reset();
    crusher.reset();
    tree.reset();
}

void TestFileCrusherNames::fileOfAnyNameIsShredded()
{
    QFETCH(QString, name);
    const QString file = tree->makeFile(name, 100);
    const QString neighbour = tree->makeFile(QStringLiteral("neighbour"), 100);
    QCOMPARE(shredFile(file), qint64{100});
    QVERIFY(!entryExists(file));
    QVERIFY(entryExists(neighbour));
    QCOMPARE(log->records(),
             (SignalRecords{{"finishPercent", {file, 99}}, {"addToHistory", {file}}}));
}

void TestFileCrusherNames::linkOfAnyNameIsRemoved()
{
    QFETCH(QString, name);
    const QString target = tree->makeFile(QStringLiteral("target"), 100);
    const QString link = tree->makeLink(name, target);
    QCOMPARE(shredFile(link), qint64{0});
    QVERIFY(!entryExists(link));
    QCOMPARE(TemporaryTree::contentsOf(target), QByteArray(100, 'x'));
    QCOMPARE(log->records(), (SignalRecords{{"addToHistory", {link}}}));
}

void TestFileCrusherNames::folderOfAnyNameIsShredded()
{
    QFETCH(QString, name);
    const QString top = tree->makeFolder(name);
    const QString inner = tree->makeFolder(name + QLatin1Char('/') + name);
    const QString file =
        tree->makeFile(name + QLatin1Char('/') + name + QLatin1Char('/') + name, 100);
    QCOMPARE(shredFolder(top), qint64{0});
    QVERIFY(!entryExists(top));
    QCOMPARE(log->records(), (SignalRecords{{"finishPercent", {top, 100}},
                                            {"addToHistory", {file}},
                                            {"addToHistory", {inner}},
                                            {"finishPercent", {top, 100}},
                                            {"addToHistory", {top}}}));
}

void TestFileCrusherNames::nameThatIsNotUtf8IsLeftAndTheFolderFails()
{
    const QString top = tree->makeFolder(QStringLiteral("top"));
    const QString file = tree->makeFile(QStringLiteral("top/file"), 100);
    const QByteArray strange = top.toUtf8() + "/latin1-\xE9\xFF";
    const int descriptor = ::open(strange.constData(), O_CREAT | O_WRONLY | O_CLOEXEC, 0600);
    if (descriptor < 0)
        QSKIP("this file system takes UTF-8 names only");
    QCOMPARE(::write(descriptor, "kept", 4), ssize_t{4});
    ::close(descriptor);

    QCOMPARE(shredFolder(top), qint64{-3});
    QVERIFY(!entryExists(file));
    QCOMPARE(log->records(),
             (SignalRecords{{"finishPercent", {top, 100}}, {"addToHistory", {file}}}));
    QCOMPARE(FileCrusher::statSize(strange.constData()), qint64{4});
    QCOMPARE(::unlink(strange.constData()), 0);
}

void TestFileCrusherNames::folderWhoseNameIsNotUtf8IsLeftAndTheFolderFails()
{
    const QString top = tree->makeFolder(QStringLiteral("top"));
    const QByteArray strange = top.toUtf8() + "/\xE9";
    if (::mkdir(strange.constData(), 0700) != 0)
        QSKIP("this file system takes UTF-8 names only");

    QCOMPARE(shredFolder(top), qint64{-3});
    QCOMPARE(log->records(), SignalRecords());
    QCOMPARE(::rmdir(strange.constData()), 0);
}

void TestFileCrusherNames::longestPathIsShredded()
{
    const QString file = QString::fromUtf8(longPathBelow(tree->path().toUtf8(), longestPath));
    tree->makeFile(file.mid(tree->path().size() + 1), 100);
    QCOMPARE(file.toUtf8().size(), longestPath);
    QCOMPARE(shredFolder(tree->path()), qint64{0});
    QVERIFY(!entryExists(tree->path()));
    QCOMPARE(log->firstArguments("addToHistory").first(), file);
}

void TestFileCrusherNames::fileBeyondThePathLimitIsShredded()
{
    const QByteArray folder = longPathBelow(tree->path().toUtf8(), longestPath - 1);
    const QString name = QString::fromUtf8(folder.mid(tree->path().toUtf8().size() + 1));
    tree->makeFolder(name);
    const int descriptor = ::open(folder.constData(), O_DIRECTORY | O_PATH | O_CLOEXEC);
    QVERIFY(descriptor >= 0);
    const int file = ::openat(descriptor, "beyond", O_CREAT | O_RDWR | O_CLOEXEC, 0600);
    ::close(descriptor);
    const QByteArray contents(100, 'x');
    QCOMPARE(::write(file, contents.constData(), 100), ssize_t{100});

    QCOMPARE(shredFolder(tree->path()), qint64{0});
    QVERIFY(!entryExists(tree->path()));
    QCOMPARE(log->firstArguments("addToHistory").first(),
             QString::fromUtf8(folder) + QStringLiteral("/beyond"));
    QByteArray left(100, '\0');
    QCOMPARE(::pread(file, left.data(), 100, 0), ssize_t{100});
    QVERIFY(left != contents);
    ::close(file);
}

void TestFileCrusherNames::fiveHundredFoldersDeepAreShredded()
{
    constexpr int depth = 500;
    const QString top = tree->makeFolder(QStringLiteral("top"));
    QStringList folders{top};
    for (int level = 1; level < depth; ++level)
        folders.append(folders.last() + QStringLiteral("/d"));
    const QString file = folders.last() + QStringLiteral("/file");
    tree->makeFile(file.mid(tree->path().size() + 1), 100);

    QCOMPARE(shredFolder(top), qint64{0});
    QVERIFY(!entryExists(top));
    QStringList expected{file};
    for (int level = depth - 1; level >= 0; --level)
        expected.append(folders.at(level));
    QCOMPARE(log->firstArguments("addToHistory"), expected);
}

TEST_SUITE(names, TestFileCrusherNames)
#include "names.moc"
