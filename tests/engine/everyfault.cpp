// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// Each single call that the worker makes to the system fails, one after the other,
// with each error that a disk has to offer; and once more with all calls of its
// kind failing from there on. Whatever happens, the verdict says what is left, the
// history says what is gone, nothing goes without having been overwritten, nothing
// else is touched and nothing stays open.

#include "engine/filecrusher.h"

#include "filecalls.h"
#include "inventory.h"
#include "signallog.h"
#include "suites.h"
#include "temporarytree.h"

#include <QtTest>

#include <algorithm>
#include <cerrno>
#include <memory>
#include <optional>

using testsupport::CallFate;
using testsupport::entryExists;
using testsupport::FileCall;
using testsupport::FileCallWatch;
using testsupport::inventoryOf;
using testsupport::SignalLog;
using testsupport::TemporaryTree;

namespace
{

constexpr int fileSize = 5000;

/// The fault of one run: the call numbered @c first, and those of its kind behind it too if it
/// lasts.
struct Fault {
    CallFate fate;
    int first = 0;
    bool lasts = false;
};

} // namespace

class TestFileCrusherEveryFault : public QObject
{
    Q_OBJECT

private slots:
    void folderAmongFaults_data() { listFaults(); }
    void folderAmongFaults();
    void loneFileAmongFaults_data() { listFaults(); }
    void loneFileAmongFaults();
    void loneLinkAmongFaults_data() { listFaults(); }
    void loneLinkAmongFaults();

private:
    static void listFaults();
    void makeTree();
    void tryEveryCall(const QString &victim);
    int shred(const QString &victim, const Fault &fault);
    void checkLeftovers() const;
    void checkVerdict(const QString &victim) const;

    std::unique_ptr<TemporaryTree> outside;
    std::unique_ptr<TemporaryTree> tree;
    std::unique_ptr<FileCrusher> crusher;
    std::unique_ptr<SignalLog> log;
    QStringList victims;            ///< every entry that a run may remove
    std::optional<FileCall> failed; ///< the kind of call that was hit
    qint64 verdict = 0;
    int leftOpen = 0;
};

void TestFileCrusherEveryFault::listFaults()
{
    QTest::addColumn<int>("error");
    QTest::addColumn<bool>("half");
    QTest::addColumn<bool>("lasts");
    const auto rows = [](const char *name, int error, bool half) {
        QTest::addRow("%s", name) << error << half << false;
        QTest::addRow("%s from there on", name) << error << half << true;
    };
    rows("EACCES", EACCES, false);
    rows("EIO", EIO, false);
    rows("ENOSPC", ENOSPC, false);
    rows("EINTR", EINTR, false);
    rows("EROFS", EROFS, false);
    rows("EMFILE", EMFILE, false);
    rows("half done", 0, true);
}

void TestFileCrusherEveryFault::folderAmongFaults()
{
    tryEveryCall(QStringLiteral("top"));
}

void TestFileCrusherEveryFault::loneFileAmongFaults()
{
    tryEveryCall(QStringLiteral("lone"));
}

void TestFileCrusherEveryFault::loneLinkAmongFaults()
{
    tryEveryCall(QStringLiteral("link"));
}

void TestFileCrusherEveryFault::makeTree()
{
    const QByteArray contents(fileSize, 'x');
    tree = std::make_unique<TemporaryTree>();
    victims.clear();
    for (const char *name : {"top/one", "top/sub/two", "lone"}) {
        const QString file = tree->makeFile(QLatin1String(name), contents);
        QString second = QStringLiteral("second-") + QLatin1String(name);
        tree->makeHardLink(second.replace(QLatin1Char('/'), QLatin1Char('-')), file);
        victims.append(file);
    }
    victims.append(tree->makeFile(QStringLiteral("top/empty"), 0));
    for (const char *name : {"top/link", "link"})
        victims.append(tree->makeLink(QLatin1String(name), outside->path(QStringLiteral("file"))));
    victims.append(tree->makeLink(QStringLiteral("top/sub/dangling"), QStringLiteral("nowhere")));
    victims.append(tree->path(QStringLiteral("top/sub")));
    victims.append(tree->path(QStringLiteral("top")));
}

void TestFileCrusherEveryFault::tryEveryCall(const QString &victim)
{
    QFETCH(int, error);
    QFETCH(bool, half);
    QFETCH(bool, lasts);
    outside = std::make_unique<TemporaryTree>();
    outside->makeFile(QStringLiteral("file"), 700);
    const QStringList before = inventoryOf(outside->path());
    // The first run is without a fault; one that a fault cut short says nothing about the number.
    int calls = 0;
    for (int call = -1; call < calls; ++call) {
        makeTree();
        calls = std::max(calls, shred(victim, Fault{CallFate{error, half}, call, lasts}));
        checkVerdict(tree->path(victim));
        checkLeftovers();
        QCOMPARE(inventoryOf(outside->path()), before);
        if (QTest::currentTestFailed()) {
            qInfo("the fault hit call %d of %d, of kind %d; verdict %lld", call, calls,
                  failed ? static_cast<int>(*failed) : -1, verdict);
            return;
        }
    }
    qInfo("%d runs", calls + 1);
}

/// Shreds with @p fault and returns the number of calls that were made.
int TestFileCrusherEveryFault::shred(const QString &victim, const Fault &fault)
{
    crusher = std::make_unique<FileCrusher>();
    log = std::make_unique<SignalLog>(crusher.get());
    const QByteArray path = tree->path(victim).toUtf8();
    const bool isFolder = victim == QLatin1String("top");
    const int openBefore = testsupport::openDescriptors();
    int calls = 0;
    failed.reset();
    {
        const FileCallWatch watch([&](FileCall call) {
            const int number = calls++;
            if (number == fault.first)
                failed = call;
            const bool hit =
                number == fault.first || (fault.lasts && failed.has_value() && call == *failed);
            return hit ? fault.fate : CallFate();
        });
        verdict = isFolder ? crusher->shredDirectory(path.constData())
                           : crusher->shredFile(path.constData());
    }
    leftOpen = testsupport::openDescriptors() - openBefore;
    return calls;
}

/// The verdict tells whether what was chosen is gone.
void TestFileCrusherEveryFault::checkVerdict(const QString &victim) const
{
    const bool gone = !entryExists(victim);
    if (victim == tree->path(QStringLiteral("top"))) {
        QVERIFY(verdict == CrushResult::Success || verdict == CrushResult::NoSuchDirectory
                || verdict == CrushResult::DirectoryFailed);
        QCOMPARE(verdict == CrushResult::Success, gone);
    } else {
        // A path that cannot be looked at counts as one that is not there; it is left alone.
        const bool unseen = verdict == 0 && failed == FileCall::Look && log->count() == 0;
        QVERIFY(verdict >= CrushResult::RemoveFailed && verdict <= fileSize);
        QVERIFY(unseen || (verdict >= 0) == gone);
    }
    // A lone file whose size could not be asked stays open on purpose.
    QCOMPARE(leftOpen, verdict == CrushResult::SizeUnusable && leftOpen == 1
                               && victim == tree->path(QStringLiteral("lone"))
                           ? 1
                           : 0);
}

void TestFileCrusherEveryFault::checkLeftovers() const
{
    QStringList gone;
    for (const QString &path : victims) {
        if (!entryExists(path))
            gone.append(path);
    }
    QStringList recorded = log->firstArguments("addToHistory");
    std::sort(gone.begin(), gone.end());
    std::sort(recorded.begin(), recorded.end());
    QCOMPARE(recorded, gone);

    for (const char *name : {"top/one", "top/sub/two", "lone"}) {
        const bool went = !entryExists(tree->path(QLatin1String(name)));
        QString second = QStringLiteral("second-") + QLatin1String(name);
        const QByteArray contents = TemporaryTree::contentsOf(
            tree->path(second.replace(QLatin1Char('/'), QLatin1Char('-'))));
        QCOMPARE(contents.size(), fileSize);
        // A write that fails is not noticed.
        QVERIFY(!went || failed == FileCall::Write || contents != QByteArray(fileSize, 'x'));
    }
}

TEST_SUITE(everyfault, TestFileCrusherEveryFault)
#include "everyfault.moc"
