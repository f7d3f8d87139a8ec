// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// Rows, dialogs and title bars as screen readers meet them. What is announced is
// tested where it is heard, in endtoend.accessibility.

#include "suites.h"
#include "widgets/accessiblewidgets.h"
#include "widgets/customdialog.h"
#include "widgets/zztablecell.h"

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
    void initTestCase() { installAccessibleWidgets(); }
    void init() { build(QStringLiteral("/some folder/letter.txt")); }

    void rowAndItsBoxAreNamedByTheEntryOrItsPath();
    void rowTellsTheWholeOfAShortenedText();
    void rowTellsItsTickAndIsTickedByItsAction();
    void rowTellsItsProgress();
    void dialogTellsItsMessage();
    void titleBarAndEveryButtonOfADialogHaveTheirRoles();

private:
    void build(const QString &path)
    {
        cell = std::make_unique<ZZTableCell>(nullptr);
        cell->build(path, QIcon(), QImage(), 0, 0);
    }
    QWidget *part(const char *name) const
    {
        return cell->findChild<QWidget *>(QString::fromLatin1(name));
    }

    std::unique_ptr<ZZTableCell> cell;
};

void TestAccessibility::rowAndItsBoxAreNamedByTheEntryOrItsPath()
{
    QCOMPARE(heard(cell.get())->role(), QAccessible::ListItem);
    QCOMPARE(nameOf(cell.get()), QStringLiteral("letter.txt"));
    QCOMPARE(nameOf(part("checkBox")), QStringLiteral("letter.txt"));
    QCOMPARE(descriptionOf(cell.get()), QStringLiteral("/some folder"));
    QCOMPARE(descriptionOf(part("checkBox")), QStringLiteral("/some folder"));
    build(QStringLiteral("/some folder/"));
    QCOMPARE(nameOf(cell.get()), QStringLiteral("/some folder/"));
    QCOMPARE(nameOf(part("checkBox")), QStringLiteral("/some folder/"));
}

void TestAccessibility::rowTellsTheWholeOfAShortenedText()
{
    const QString name(200, QLatin1Char('n'));
    const QString folder = QLatin1Char('/') + QString(200, QLatin1Char('f'));
    build(folder + QLatin1Char('/') + name);
    QVERIFY(part("nameLabel")->property("text") != name);
    QCOMPARE(nameOf(part("nameLabel")), name);
    QCOMPARE(nameOf(part("placeLabel")), folder);
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
    const QAccessibleInterface *bar = heard(part("progressOverlay"));
    QAccessibleValueInterface *value = heard(part("progressOverlay"))->valueInterface();
    QCOMPARE(bar->role(), QAccessible::ProgressBar);
    QCOMPARE(bar->text(QAccessible::Name), QStringLiteral("粉碎进度"));
    QCOMPARE(value->currentValue().toInt(), 0);
    cell->setProgress(40);
    QCOMPARE(value->currentValue().toInt(), 40);
    QCOMPARE(value->minimumValue().toInt(), 0);
    QCOMPARE(value->maximumValue().toInt(), 100);
    QCOMPARE(bar->text(QAccessible::Value), QStringLiteral("40%"));
    QCOMPARE(descriptionOf(cell.get()), QStringLiteral("/some folder，已粉碎40%"));
    cell->setProgress(0);
    QCOMPARE(descriptionOf(cell.get()), QStringLiteral("/some folder"));
    QVERIFY(bar->state().invisible);
}

/// No part of a dialog takes the focus, so a reader reads only the dialog itself.
void TestAccessibility::dialogTellsItsMessage()
{
    CustomDialog message;
    CustomDialog question;
    CustomDialog refusal;
    message.setMessage(QStringLiteral("第一行\n<b>第二行</b>"), DialogKind::Failure);
    question.setConfirmCrush();
    refusal.setSystemFileRefusal();
    for (CustomDialog *dialog : {&message, &question, &refusal}) {
        auto *label = dialog->findChild<QLabel *>(QStringLiteral("messageText"));
        QCOMPARE(heard(dialog)->role(), QAccessible::Dialog);
        QCOMPARE(nameOf(dialog), QStringLiteral("文件粉碎机"));
        QCOMPARE(descriptionOf(dialog), label->text());
        QCOMPARE(nameOf(label), label->text());
    }
}

void TestAccessibility::titleBarAndEveryButtonOfADialogHaveTheirRoles()
{
    const CustomDialog dialog;
    QCOMPARE(heard(dialog.findChild<QWidget *>(QStringLiteral("titleBar")))->role(),
             QAccessible::TitleBar);
    QStringList names;
    const auto buttons = dialog.findChildren<QPushButton *>();
    for (QPushButton *button : buttons) {
        QCOMPARE(heard(button)->role(), QAccessible::Button);
        names.append(nameOf(button));
    }
    names.sort();
    QCOMPARE(names,
             (QStringList{QStringLiteral("关闭"), QStringLiteral("取消"), QStringLiteral("确定")}));
}

TEST_SUITE(accessibility, TestAccessibility)
#include "accessibility.moc"
