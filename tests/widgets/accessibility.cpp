// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// Rows, dialogs and title bars as screen readers meet them. What is announced is
// tested where it is heard, in endtoend.accessibility.

#include "suites.h"

#include "widgets/accessiblewidgets.h"

#include "widgets/customdialog.h"
#include "widgets/zztablecell.h"

#include <QAccessible>
#include <QCheckBox>
#include <QIcon>
#include <QImage>
#include <QLabel>
#include <QPushButton>
#include <QSignalSpy>
#include <QtTest>

#include <memory>

namespace
{

QAccessibleInterface *heard(QObject *widget)
{
    return QAccessible::queryAccessibleInterface(widget);
}

QString nameOf(QObject *widget)
{
    return heard(widget)->text(QAccessible::Name);
}

QString descriptionOf(QObject *widget)
{
    return heard(widget)->text(QAccessible::Description);
}

} // namespace

class TestAccessibility : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();

    void rowIsNamedByItsEntry();
    void rowTellsTheWholeOfAShortenedText();
    void rowTellsItsTickAndIsTickedByItsAction();
    void rowTellsItsProgress();
    void dialogTellsItsMessage_data();
    void dialogTellsItsMessage();
    void fixedMessagesAreToldToo();
    void titleBarAndEveryButtonOfADialogHaveTheirRoles();

private:
    template <class Widget>
    Widget *part(const char *name) const
    {
        return cell->findChild<Widget *>(QString::fromLatin1(name));
    }

    std::unique_ptr<ZZTableCell> cell;
};

void TestAccessibility::initTestCase()
{
    installAccessibleWidgets();
}

void TestAccessibility::init()
{
    cell = std::make_unique<ZZTableCell>(nullptr);
    cell->build(QStringLiteral("/some folder/letter.txt"), QIcon(), QImage(), 0, 0);
}

void TestAccessibility::rowIsNamedByItsEntry()
{
    QCOMPARE(heard(cell.get())->role(), QAccessible::ListItem);
    QCOMPARE(nameOf(cell.get()), QStringLiteral("letter.txt"));
    QCOMPARE(descriptionOf(cell.get()), QStringLiteral("/some folder"));

    ZZTableCell nameless(nullptr);
    nameless.build(QStringLiteral("/some folder/"), QIcon(), QImage(), 0, 0);
    QCOMPARE(nameOf(&nameless), QStringLiteral("/some folder/"));
    QCOMPARE(nameOf(nameless.findChild<QCheckBox *>()), QStringLiteral("/some folder/"));
}

void TestAccessibility::rowTellsTheWholeOfAShortenedText()
{
    const QString name(200, QLatin1Char('n'));
    const QString folder = QLatin1Char('/') + QString(200, QLatin1Char('f'));
    cell = std::make_unique<ZZTableCell>(nullptr);
    cell->build(folder + QLatin1Char('/') + name, QIcon(), QImage(), 0, 0);
    QVERIFY(part<QLabel>("nameLabel")->text() != name);
    QCOMPARE(nameOf(part<QLabel>("nameLabel")), name);
    QCOMPARE(nameOf(part<QLabel>("placeLabel")), folder);
    QCOMPARE(nameOf(cell.get()), name);
}

void TestAccessibility::rowTellsItsTickAndIsTickedByItsAction()
{
    const QSignalSpy reports(cell.get(), &ZZTableCell::tableCellClicked);
    QVERIFY(heard(cell.get())->state().checkable);
    QVERIFY(heard(cell.get())->state().checked);
    QAccessibleActionInterface *actions = heard(cell.get())->actionInterface();
    QCOMPARE(actions->actionNames(), QStringList{QAccessibleActionInterface::toggleAction()});
    actions->doAction(QAccessibleActionInterface::pressAction());
    QCOMPARE(reports.count(), 0);
    actions->doAction(QAccessibleActionInterface::toggleAction());
    QCOMPARE(reports.count(), 1);
    QVERIFY(!cell->isChecked());
    QVERIFY(!heard(cell.get())->state().checked);
}

void TestAccessibility::rowTellsItsProgress()
{
    auto *overlay = part<QLabel>("progressOverlay");
    QAccessibleInterface *bar = heard(overlay);
    QCOMPARE(bar->role(), QAccessible::ProgressBar);
    QCOMPARE(bar->text(QAccessible::Name), QStringLiteral("粉碎进度"));
    QCOMPARE(bar->valueInterface()->currentValue().toInt(), 0);
    cell->setProgress(40);
    QCOMPARE(bar->valueInterface()->currentValue().toInt(), 40);
    QCOMPARE(bar->valueInterface()->minimumValue().toInt(), 0);
    QCOMPARE(bar->valueInterface()->maximumValue().toInt(), 100);
    QCOMPARE(bar->text(QAccessible::Value), QStringLiteral("40%"));
    QCOMPARE(descriptionOf(cell.get()), QStringLiteral("/some folder，已粉碎40%"));
    cell->setProgress(0);
    QCOMPARE(descriptionOf(cell.get()), QStringLiteral("/some folder"));
    QVERIFY(bar->state().invisible);
}

void TestAccessibility::dialogTellsItsMessage_data()
{
    QTest::addColumn<int>("kind");
    QTest::addColumn<QString>("iconName");
    QTest::newRow("refusal") << DialogKind::Refusal << QStringLiteral("警告");
    QTest::newRow("success") << DialogKind::Success << QStringLiteral("成功");
    QTest::newRow("partial success") << DialogKind::PartialSuccess << QStringLiteral("部分成功");
    QTest::newRow("failure") << DialogKind::Failure << QStringLiteral("警告");
    QTest::newRow("question") << DialogKind::Question << QStringLiteral("询问");
    QTest::newRow("unknown") << 5 << QString();
}

void TestAccessibility::dialogTellsItsMessage()
{
    QFETCH(int, kind);
    CustomDialog dialog;
    const QString message = QStringLiteral("第一行\n<b>第二行</b>");
    dialog.setMessage(message, kind);
    QCOMPARE(heard(&dialog)->role(), QAccessible::Dialog);
    QCOMPARE(nameOf(&dialog), QStringLiteral("文件粉碎机"));
    QCOMPARE(descriptionOf(&dialog), message);
    QCOMPARE(nameOf(dialog.findChild<QLabel *>(QStringLiteral("messageText"))), message);
    QTEST(nameOf(dialog.findChild<QLabel *>(QStringLiteral("messageIcon"))), "iconName");
}

void TestAccessibility::fixedMessagesAreToldToo()
{
    CustomDialog question;
    question.setConfirmCrush();
    QVERIFY(descriptionOf(&question).contains(QStringLiteral("确定要粉碎")));
    CustomDialog refusal;
    refusal.setSystemFileRefusal();
    QVERIFY(descriptionOf(&refusal).contains(QStringLiteral("不能进行粉碎")));
}

void TestAccessibility::titleBarAndEveryButtonOfADialogHaveTheirRoles()
{
    CustomDialog dialog;
    dialog.setMessage(QStringLiteral("text"), DialogKind::Question);
    QCOMPARE(heard(dialog.findChild<QWidget *>(QStringLiteral("titleBar")))->role(),
             QAccessible::TitleBar);
    QSet<QString> names;
    const auto buttons = dialog.findChildren<QPushButton *>();
    for (QPushButton *button : buttons) {
        QCOMPARE(heard(button)->role(), QAccessible::Button);
        names.insert(nameOf(button));
    }
    const QSet<QString> expected{QStringLiteral("关闭"), QStringLiteral("取消"),
                                 QStringLiteral("确定")};
    QCOMPARE(names, expected);
}

TEST_SUITE(accessibility, TestAccessibility)
#include "accessibility.moc"
