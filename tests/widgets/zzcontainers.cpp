// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

#include "suites.h"
#include "widgets/zzscrollarea.h"
#include "widgets/zzwidget.h"

#include <QtTest>

class TestZZContainers : public QObject
{
    Q_OBJECT

private slots:
    void carryTheirOwnTypeNames();
    void belongToTheirParent();
    void haveNoStylingOfTheirOwn();
};

void TestZZContainers::carryTheirOwnTypeNames()
{
    QCOMPARE(ZZWidget::staticMetaObject.className(), "ZZWidget");
    QCOMPARE(ZZScrollArea::staticMetaObject.className(), "ZZScrollArea");
}

void TestZZContainers::belongToTheirParent()
{
    QWidget parent;
    const auto *widget = new ZZWidget(&parent);
    const auto *area = new ZZScrollArea(&parent);
    QCOMPARE(widget->parentWidget(), &parent);
    QCOMPARE(area->parentWidget(), &parent);
}

void TestZZContainers::haveNoStylingOfTheirOwn()
{
    QVERIFY(ZZWidget(nullptr).styleSheet().isEmpty());
    QVERIFY(ZZScrollArea(nullptr).styleSheet().isEmpty());
}

TEST_SUITE(zzcontainers, TestZZContainers)
#include "zzcontainers.moc"
