// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// The words of the two reports, for every set of reasons and kind of result.

#include "ui/reporttexts.h"

#include "suites.h"
#include "widgets/customdialog.h"

#include <QStringList>
#include <QtTest>

namespace
{

const char *const rejectionHeader = "您添加的部分文件或目录由于以下原因无法被添加到文件粉碎机中：";
const char *const resultHeader = "本次文件粉碎任务已经结束";

QString lines(const QByteArrayList &utf8Lines)
{
    return QString::fromUtf8(utf8Lines.join('\n'));
}

} // namespace

class TestReportTexts : public QObject
{
    Q_OBJECT

private slots:
    void refusalListsReasonsInOrder_data();
    void refusalListsReasonsInOrder();
    void everySetOfReasonsIsListedWhole();
    void resultNamesTheCountsThatAreNotZero_data();
    void resultNamesTheCountsThatAreNotZero();
};

void TestReportTexts::refusalListsReasonsInOrder_data()
{
    QTest::addColumn<uint>("reasons");
    QTest::addColumn<QString>("text");
    QTest::newRow("none") << 0U << lines({rejectionHeader});
    QTest::newRow("missing") << 0x01U << lines({rejectionHeader, "文件或目录不存在"});
    QTest::newRow("unknown type") << 0x02U << lines({rejectionHeader, "不能确定文件或目录的类型"});
    QTest::newRow("no permission") << 0x04U << lines({rejectionHeader, "文件或目录没有读写权限"});
    QTest::newRow("twice") << 0x08U << lines({rejectionHeader, "重复添加文件或目录"});
    QTest::newRow("too many") << 0x10U
                              << lines(
                                     {rejectionHeader, "已经超出文件粉碎机的单次处理上限(200个)"});
    QTest::newRow("system") << 0x20U << lines({rejectionHeader, "属于系统目录"});
    QTest::newRow("two") << 0x06U
                         << lines({rejectionHeader, "1.不能确定文件或目录的类型",
                                   "2.文件或目录没有读写权限"});
    QTest::newRow("first and last two")
        << 0x31U
        << lines({rejectionHeader, "1.文件或目录不存在",
                  "2.已经超出文件粉碎机的单次处理上限(200个)", "3.属于系统目录"});
    QTest::newRow("all") << 0x3fU
                         << lines({rejectionHeader, "1.文件或目录不存在",
                                   "2.不能确定文件或目录的类型", "3.文件或目录没有读写权限",
                                   "4.重复添加文件或目录",
                                   "5.已经超出文件粉碎机的单次处理上限(200个)", "6.属于系统目录"});
    QTest::newRow("unknown bit alone") << 0x40U << lines({rejectionHeader});
    QTest::newRow("unknown bits beside one")
        << 0xffffffc8U << lines({rejectionHeader, "重复添加文件或目录"});
}

void TestReportTexts::refusalListsReasonsInOrder()
{
    QFETCH(uint, reasons);
    QTEST(reporttexts::rejectionText(reasons), "text");
}

void TestReportTexts::everySetOfReasonsIsListedWhole()
{
    constexpr uint sets = 0x40;
    constexpr uint reasonCount = 6;
    for (uint reasons = 0; reasons < sets; ++reasons) {
        QStringList expected(QString::fromUtf8(rejectionHeader));
        for (uint bit = 0; bit < reasonCount; ++bit) {
            const uint reason = reasons & (1U << bit);
            if (reason != 0)
                expected += reporttexts::rejectionText(reason).section(QLatin1Char('\n'), 1);
        }
        const bool numbered = expected.size() > 2;
        for (int line = 1; numbered && line < expected.size(); ++line)
            expected[line].prepend(QStringLiteral("%1.").arg(line));
        QCOMPARE(reporttexts::rejectionText(reasons).split(QLatin1Char('\n')), expected);
    }
}

void TestReportTexts::resultNamesTheCountsThatAreNotZero_data()
{
    QTest::addColumn<uint>("succeeded");
    QTest::addColumn<uint>("failed");
    QTest::addColumn<int>("kind");
    QTest::addColumn<QString>("text");
    QTest::newRow("success") << 3U << 0U << DialogKind::Success
                             << lines({resultHeader, "3 个文件(文件夹)已被成功粉碎"});
    QTest::newRow("partial") << 2U << 1U << DialogKind::PartialSuccess
                             << lines({resultHeader, "2 个文件(文件夹)已被成功粉碎",
                                       "1 个文件(文件夹)未能完成粉碎"});
    QTest::newRow("failure") << 0U << 4U << DialogKind::Failure
                             << lines({resultHeader, "4 个文件(文件夹)未能完成粉碎"});
    QTest::newRow("nothing") << 0U << 0U << DialogKind::Failure << lines({resultHeader});
    QTest::newRow("most") << 2147483647U << 200U << DialogKind::PartialSuccess
                          << lines({resultHeader, "2147483647 个文件(文件夹)已被成功粉碎",
                                    "200 个文件(文件夹)未能完成粉碎"});
}

void TestReportTexts::resultNamesTheCountsThatAreNotZero()
{
    QFETCH(uint, succeeded);
    QFETCH(uint, failed);
    QTEST(reporttexts::resultText(succeeded, failed), "text");
    QTEST(reporttexts::resultDialogKind(succeeded, failed), "kind");
}

TEST_SUITE(reporttexts, TestReportTexts)
#include "reporttexts.moc"
