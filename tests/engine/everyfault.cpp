// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// Each call that the worker makes to the system fails, alone or with all of its kind from there on:
// the verdict says what is left, the history says what is gone, nothing goes without having been
// overwritten, nothing else is touched and nothing stays open.

#include "enginetest.h"
#include "inventory.h"

#include <algorithm>
#include <cerrno>
#include <optional>

using namespace testsupport;

namespace
{

constexpr int fileSize = 5000;

QString secondNameOf(const QString &name)
{
    return QStringLiteral("second-") + QString(name).replace(QLatin1Char('/'), QLatin1Char('-'));
}

} // namespace

class TestEveryFault : public EngineTest
{
    Q_OBJECT

private slots:
    void anyCallMayFail_data();
    void anyCallMayFail();

private:
    void makeTree();
    int shredWithFault(const QString &victim, int number);
    void checkVerdict(const QString &victim) const;
    void checkLeftovers() const;

    const QStringList files{QStringLiteral("top/one"), QStringLiteral("top/sub/two"),
                            QStringLiteral("lone")};
    std::unique_ptr<TemporaryTree> outside;
    QStringList victims;            ///< every entry that a run may remove
    std::optional<CallKind> failed; ///< the kind of call that was hit
    qint64 verdict = 0;
    int leftOpen = 0;
};

void TestEveryFault::anyCallMayFail_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<int>("error"); // 0: the call is half done
    QTest::addColumn<bool>("lasts");
    for (const char *name : {"top", "lone", "link"}) {
        for (const int error : {EACCES, EIO, ENOENT, ENOSPC, EINTR, EROFS, EMFILE, 0}) {
            for (const bool lasts : {false, true})
                QTest::addRow("%s, error %d%s", name, error, lasts ? " from there on" : "")
                    << name << error << lasts;
        }
    }
}

void TestEveryFault::makeTree()
{
    tree = std::make_unique<TemporaryTree>();
    victims.clear();
    for (const QString &name : files) {
        victims.append(tree->makeFile(name, fileSize));
        tree->makeHardLink(secondNameOf(name), victims.last());
    }
    victims.append(tree->makeFile("top/empty", 0));
    for (const char *name : {"top/link", "link"})
        victims.append(tree->makeLink(name, outside->path("file")));
    victims.append(tree->makeLink("top/sub/dangling", "nowhere"));
    victims << tree->path("top/sub") << top();
    victims.sort();
}

void TestEveryFault::anyCallMayFail()
{
    QFETCH(QString, name);
    outside = std::make_unique<TemporaryTree>();
    outside->makeFile("file", 700);
    const QStringList before = inventoryOf(outside->path());
    // The first run is without a fault; one that a fault cut short says nothing about the number.
    int calls = 0;
    for (int number = -1; number < calls; ++number) {
        makeTree();
        calls = std::max(calls, shredWithFault(tree->path(name), number));
        checkVerdict(tree->path(name));
        checkLeftovers();
        QCOMPARE(inventoryOf(outside->path()), before);
        if (QTest::currentTestFailed()) {
            qInfo("the fault hit call %d of %d, of kind %d; verdict %lld", number, calls,
                  failed ? static_cast<int>(*failed) : -1, verdict);
            return;
        }
    }
}

/// Shreds with the fault at call @p number. Returns the number of calls that were made.
int TestEveryFault::shredWithFault(const QString &victim, int number)
{
    QFETCH(int, error);
    QFETCH(bool, lasts);
    log->clear();
    failed.reset();
    const int openBefore = openDescriptors();
    int calls = 0;
    {
        const CallHook hook([&](const SystemCall &call) {
            const bool isFirst = calls++ == number;
            if (isFirst)
                failed = call.kind;
            const bool isHit = isFirst || (lasts && failed == call.kind);
            return isHit ? CallFate{error, error == 0} : CallFate();
        });
        verdict = victim == top() ? shredFolder(victim) : shredFile(victim);
    }
    leftOpen = openDescriptors() - openBefore;
    return calls;
}

/// The verdict tells whether what was chosen is gone.
void TestEveryFault::checkVerdict(const QString &victim) const
{
    const bool gone = !entryExists(victim);
    if (victim == top()) {
        QVERIFY(verdict == CrushResult::Success || verdict == CrushResult::NoSuchDirectory
                || verdict == CrushResult::DirectoryFailed);
        QCOMPARE(verdict == CrushResult::Success, gone);
    } else {
        // A path that cannot be looked at counts as one that is not there; it is left alone.
        const bool unseen = verdict == 0 && failed == CallKind::Look && log->count() == 0;
        QVERIFY(verdict >= CrushResult::RemoveFailed && verdict <= fileSize);
        QVERIFY(unseen || (verdict >= 0) == gone);
    }
    // A lone file whose size could not be asked stays open on purpose: it is not touched again.
    const bool mayStayOpen = victim == tree->path("lone") && verdict == CrushResult::SizeUnusable;
    QVERIFY(leftOpen == 0 || (leftOpen == 1 && mayStayOpen));
}

void TestEveryFault::checkLeftovers() const
{
    QStringList gone = victims;
    gone.erase(std::remove_if(gone.begin(), gone.end(), entryExists), gone.end());
    QStringList recorded = log->firstArguments("addToHistory");
    recorded.sort();
    QCOMPARE(recorded, gone);

    for (const QString &name : files) {
        const QString second = tree->path(secondNameOf(name));
        QCOMPARE(QFileInfo(second).size(), qint64{fileSize});
        // A write that fails is not noticed.
        QVERIFY(entryExists(tree->path(name)) || failed == CallKind::Write
                || !isAsMade(second, fileSize));
    }
}

TEST_SUITE(everyfault, TestEveryFault)
#include "everyfault.moc"
