// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// Whole batches from the file dialog and from a drop, the limit and the report.

#include "sandboxhome.h"
#include "suites.h"
#include "temporarytree.h"
#include "walleharness.h"

#include <QtTest>

#include <memory>

using testsupport::SignalRecords;
using testsupport::TemporaryTree;
using testsupport::WalleHarness;

class TestWalleBatches : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { QVERIFY2(home.isInForce(), home.advice()); }
    void init();
    void cleanup();
    void dialogBatchGoesOnBeyondTheLimitAndReportsItOnce();
    void dropEndsAtTheFirstRefusalForTheLimit();
    void urlThatIsNoLocalFileEndsTheDropSilently();
    void reasonsOfABatchAreCollected();
    void removedRowsMakeRoomAgain();
    void emptyBatchOnlyRefreshesTheControls();
    void reportFollowsRowsAndControls();
    void droppedNamesKeepTheirBytes();

private:
    QString make(const QString &name) const { return tree->makeFile(name, 1); }
    QStringList makeMany(const QString &prefix, int count) const;
    /// The reasons reported since the last call; 0 when nothing was.
    uint reported();
    uint admit(const QStringList &paths);
    uint admitDropped(const QList<QUrl> &urls);

    testsupport::SandboxHome home;
    std::unique_ptr<TemporaryTree> tree;
    std::unique_ptr<WalleHarness> harness;
};

void TestWalleBatches::init()
{
    tree = std::make_unique<TemporaryTree>();
    harness = std::make_unique<WalleHarness>();
}

void TestWalleBatches::cleanup()
{
    harness.reset();
    tree.reset();
}

QStringList TestWalleBatches::makeMany(const QString &prefix, int count) const
{
    QStringList paths;
    for (int number = 0; number < count; ++number)
        paths.append(make(prefix + QString::number(number)));
    return paths;
}

uint TestWalleBatches::reported()
{
    if (!harness->performed())
        qFatal("the controller does not answer");
    const SignalRecords reports = harness->log({"alertDialog"});
    harness->takeLog();
    if (reports.size() > 1)
        qFatal("more than one report for one batch");
    return reports.isEmpty() ? 0 : reports.first().arguments.first().toUInt();
}

uint TestWalleBatches::admit(const QStringList &paths)
{
    harness->choose(paths);
    return reported();
}

uint TestWalleBatches::admitDropped(const QList<QUrl> &urls)
{
    harness->drop(urls);
    return reported();
}

void TestWalleBatches::dialogBatchGoesOnBeyondTheLimitAndReportsItOnce()
{
    QCOMPARE(admit(makeMany(QStringLiteral("old"), 199)), 0U);
    const QStringList added = makeMany(QStringLiteral("new"), 3);
    // The last name shows that every name is tried.
    QCOMPARE(admit(added + QStringList{QStringLiteral("/nonexistent")}),
             RejectOverLimit | RejectNotFound);
    QCOMPARE(harness->rows().size(), 200);
    QCOMPARE(harness->paths().last(), added.first());
}

void TestWalleBatches::dropEndsAtTheFirstRefusalForTheLimit()
{
    QCOMPARE(admit(makeMany(QStringLiteral("old"), 199)), 0U);
    QList<QUrl> urls;
    const QStringList added = makeMany(QStringLiteral("new"), 2);
    for (const QString &path : added)
        urls.append(QUrl::fromLocalFile(path));
    // Would add its own reason if it were looked at.
    urls.append(QUrl::fromLocalFile(QStringLiteral("/nonexistent")));
    QCOMPARE(admitDropped(urls), RejectOverLimit);
    QCOMPARE(harness->rows().size(), 200);
    QCOMPARE(harness->paths().last(), added.first());
}

void TestWalleBatches::urlThatIsNoLocalFileEndsTheDropSilently()
{
    const QString first = make(QStringLiteral("first"));
    const QString behind = make(QStringLiteral("behind"));
    QCOMPARE(admitDropped({QUrl::fromLocalFile(first), QUrl(QStringLiteral("http://host/file")),
                           QUrl::fromLocalFile(behind),
                           QUrl::fromLocalFile(QStringLiteral("/nonexistent"))}),
             0U);
    QCOMPARE(harness->paths(), QStringList{first});
}

void TestWalleBatches::reasonsOfABatchAreCollected()
{
    const QString file = make(QStringLiteral("file"));
    QCOMPARE(admit({QStringLiteral("/nonexistent"), file, QStringLiteral("/dev/null"), file,
                    QStringLiteral("/nonexistent/too"), QString()}),
             RejectNotFound | RejectUnknownType | RejectDuplicate);
    QCOMPARE(harness->paths(), QStringList{file});
}

void TestWalleBatches::removedRowsMakeRoomAgain()
{
    QCOMPARE(admit(makeMany(QStringLiteral("old"), 200)), 0U);
    harness->post(CommandRemoveChecked);
    const QString file = make(QStringLiteral("new"));
    QCOMPARE(admit({file}), 0U);
    QCOMPARE(harness->paths(), QStringList{file});
}

/// Such as a file dialog that was cancelled.
void TestWalleBatches::emptyBatchOnlyRefreshesTheControls()
{
    QVERIFY(harness->admitted({make(QStringLiteral("file"))}));
    harness->choose({});
    QVERIFY(harness->performed());
    QCOMPARE(harness->log(), (SignalRecords{
                                 {"setSelectAllCheckBoxEnabled", {true}},
                                 {"setCrushButtonEnabled", {true}},
                                 {"setRemoveButtonEnabled", {true}},
                                 {"setSelectAllCheckBoxState", {true}},
                             }));
}

void TestWalleBatches::reportFollowsRowsAndControls()
{
    const QString first = make(QStringLiteral("first"));
    const QString second = make(QStringLiteral("second"));
    harness->choose({first, QStringLiteral("/nonexistent"), second});
    QVERIFY(harness->performed());
    QCOMPARE(harness->log(), (SignalRecords{
                                 {"addRowToMainTable", {first}},
                                 {"addRowToMainTable", {second}},
                                 {"setSelectAllCheckBoxEnabled", {true}},
                                 {"setCrushButtonEnabled", {true}},
                                 {"setRemoveButtonEnabled", {true}},
                                 {"setSelectAllCheckBoxState", {true}},
                                 {"alertDialog", {RejectNotFound}},
                             }));
}

void TestWalleBatches::droppedNamesKeepTheirBytes()
{
    const QStringList paths{
        make(QStringLiteral("a b%20c#d?e")),
        make(QStringLiteral("'q' \"q\"")),
        make(QStringLiteral("粉碎 🗑")),
        make(QStringLiteral("two\nlines")),
    };
    harness->dropFiles(paths);
    QCOMPARE(reported(), 0U);
    QCOMPARE(harness->paths(), paths);
}

TEST_SUITE(batches, TestWalleBatches)
#include "batches.moc"
