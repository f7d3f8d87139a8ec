// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// One row of the history: its labels, how they shorten what is too wide, and that
// text from the disk is shown letter by letter, in the row and in its tips.

#include "ui/historyrowframe.h"
#include "suites.h"

#include <QFontMetrics>
#include <QHelpEvent>
#include <QLabel>
#include <QTextDocument>
#include <QToolTip>
#include <QtTest>

#include <memory>

namespace
{

QLabel *visibleTip()
{
    const QWidgetList widgets = QApplication::topLevelWidgets();
    for (QWidget *widget : widgets) {
        if (widget->inherits("QTipLabel") && widget->isVisible())
            return qobject_cast<QLabel *>(widget);
    }
    return nullptr;
}

/// The tip that appears when the pointer rests on @p widget.
QLabel *tipOf(QWidget *widget)
{
    QTest::ignoreMessage(QtWarningMsg, "This plugin does not support raise()");
    const QPoint middle = widget->rect().center();
    QHelpEvent rest(QEvent::ToolTip, middle, widget->mapToGlobal(middle));
    QApplication::sendEvent(widget, &rest);
    return visibleTip();
}

QString readableText(const QLabel *tip)
{
    if (!Qt::mightBeRichText(tip->text()))
        return tip->text();
    QTextDocument document;
    document.setHtml(tip->text());
    return document.toPlainText();
}

} // namespace

class TestHistoryRowFrame : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void rowHasItsLabelsInPlace();
    void textsThatFitAreShownWhole();
    void textsWiderThanTheirPlaceEndInAnEllipsis_data();
    void textsWiderThanTheirPlaceEndInAnEllipsis();
    void nameIsCutAtTwoHundredPixelsExactly();
    void rowShowsAnotherEntryWhenTold();
    void namesAreShownLiterally_data();
    void namesAreShownLiterally();
    void rowImageIsDrawnOnce();
    void tipLooksLikeAnyOther();

private:
    QLabel *label(const char *name) const;

    std::unique_ptr<QWidget> window;
    HistoryRowFrame *frame = nullptr;
};

void TestHistoryRowFrame::init()
{
    window = std::make_unique<QWidget>();
    window->resize(698, 415);
    frame = new HistoryRowFrame(window.get());
    // As a table does with a cell's widget.
    frame->setParent(window.get());
    window->show();
    QVERIFY(QTest::qWaitForWindowExposed(window.get()));
}

void TestHistoryRowFrame::cleanup()
{
    QToolTip::hideText();
    QTRY_VERIFY(visibleTip() == nullptr);
    window.reset();
}

QLabel *TestHistoryRowFrame::label(const char *name) const
{
    return frame->findChild<QLabel *>(QString::fromLatin1(name));
}

void TestHistoryRowFrame::rowHasItsLabelsInPlace()
{
    QCOMPARE(frame->size(), QSize(678, 30));
    QCOMPARE(frame->styleSheet(), QStringLiteral("background:url(:/images/bk_item);border:none;"
                                                 "color:#333;font-size:12px;"));
    QVERIFY(HistoryRowFrame(window.get()).windowFlags().testFlag(Qt::FramelessWindowHint));
    QCOMPARE(label("timeLabel")->geometry(), QRect(2, 0, 150, 30));
    QCOMPARE(label("nameLabel")->geometry(), QRect(154, 0, 200, 30));
    QCOMPARE(label("pathLabel")->geometry(), QRect(356, 0, 322, 30));
    QCOMPARE(label("nameLabel")->font().pixelSize(), 12);
    QCOMPARE(label("nameLabel")->palette().color(QPalette::WindowText), QColor(0x33, 0x33, 0x33));
}

void TestHistoryRowFrame::textsThatFitAreShownWhole()
{
    const QString time = QStringLiteral("2026-01-02 03:04:05");
    frame->setTexts(time, QStringLiteral("年报.pdf"), QStringLiteral("/home/somebody"));
    QCOMPARE(label("timeLabel")->text(), time);
    QCOMPARE(label("timeLabel")->toolTip(), time);
    QCOMPARE(label("nameLabel")->text(), QStringLiteral("年报.pdf"));
    QCOMPARE(label("nameLabel")->toolTip(), QStringLiteral("年报.pdf"));
    QCOMPARE(label("pathLabel")->text(), QStringLiteral("/home/somebody"));
    QCOMPARE(label("pathLabel")->toolTip(), QStringLiteral("/home/somebody"));
    // The time is never shortened.
    const QString longTime(100, QLatin1Char('0'));
    frame->setTexts(longTime, QString(), QString());
    QCOMPARE(label("timeLabel")->text(), longTime);
}

void TestHistoryRowFrame::textsWiderThanTheirPlaceEndInAnEllipsis_data()
{
    QTest::addColumn<QString>("text");
    QTest::newRow("name") << QString(255, QLatin1Char('w'));
    QTest::newRow("path") << QStringLiteral("/folder").repeated(500);
    QTest::newRow("Chinese") << QString(60, QChar(0x7c89));
    QTest::newRow("emoji") << QStringLiteral("🗑").repeated(60);
    QTest::newRow("markup") << QStringLiteral("<b>bold</b>").repeated(20);
}

void TestHistoryRowFrame::textsWiderThanTheirPlaceEndInAnEllipsis()
{
    QFETCH(QString, text);
    frame->setTexts(QStringLiteral("time"), text, text);
    const QFontMetrics metrics(label("nameLabel")->font());
    for (const QLabel *shown : {label("nameLabel"), label("pathLabel")}) {
        QVERIFY(shown->text() != text);
        QVERIFY(shown->text().endsWith(QChar(0x2026)));
        QVERIFY(text.startsWith(shown->text().chopped(1)));
        QVERIFY(metrics.horizontalAdvance(shown->text()) <= shown->width());
        QCOMPARE(shown->toolTip(), text);
    }
    QVERIFY(label("pathLabel")->text().size() > label("nameLabel")->text().size());
}

void TestHistoryRowFrame::nameIsCutAtTwoHundredPixelsExactly()
{
    const QFontMetrics metrics(label("nameLabel")->font());
    QString fitting;
    while (metrics.horizontalAdvance(fitting + QLatin1Char('i')) <= 200)
        fitting += QLatin1Char('i');
    frame->setTexts(QStringLiteral("time"), fitting, fitting);
    QCOMPARE(label("nameLabel")->text(), fitting);
    const QString tooWide = fitting + QLatin1Char('i');
    frame->setTexts(QStringLiteral("time"), tooWide, tooWide);
    QVERIFY(label("nameLabel")->text().endsWith(QChar(0x2026)));
    QCOMPARE(label("pathLabel")->text(), tooWide);
}

void TestHistoryRowFrame::rowShowsAnotherEntryWhenTold()
{
    frame->setTexts(QStringLiteral("1"), QStringLiteral("name"), QStringLiteral("/"));
    frame->setTexts(QStringLiteral("2"), QStringLiteral("name"), QStringLiteral("/"));
    QCOMPARE(label("timeLabel")->text(), QStringLiteral("2"));
    frame->setTexts(QStringLiteral("2"), QStringLiteral("other"), QStringLiteral("/"));
    QCOMPARE(label("nameLabel")->text(), QStringLiteral("other"));
    frame->setTexts(QStringLiteral("2"), QStringLiteral("other"), QStringLiteral("/folder"));
    QCOMPARE(label("pathLabel")->text(), QStringLiteral("/folder"));
}

void TestHistoryRowFrame::namesAreShownLiterally_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("markup") << QStringLiteral("<b>x</b>");
    QTest::newRow("entity") << QStringLiteral("a&amp;b");
    QTest::newRow("accelerator") << QStringLiteral("a&b");
    QTest::newRow("percent") << QStringLiteral("100%s %1");
    QTest::newRow("line feed") << QStringLiteral("a\nb");
    QTest::newRow("visible line feed") << QStringLiteral("a␤b");
    QTest::newRow("emoji") << QStringLiteral("👩‍👩‍👧 🗑.txt");
    QTest::newRow("blanks") << QStringLiteral("<i>a   b");
}

void TestHistoryRowFrame::namesAreShownLiterally()
{
    QFETCH(QString, name);
    frame->setTexts(QStringLiteral("time"), name, QLatin1Char('/') + name);
    QCOMPARE(label("nameLabel")->textFormat(), Qt::PlainText);
    QCOMPARE(label("nameLabel")->text(), name);
    const QLabel *tip = tipOf(label("nameLabel"));
    QVERIFY(tip != nullptr);
    QCOMPARE(readableText(tip), name);
}

void TestHistoryRowFrame::rowImageIsDrawnOnce()
{
    const QImage picture = frame->grab().toImage().convertToFormat(QImage::Format_RGB32);
    const QImage line(QStringLiteral(":/images/bk_item"));
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x)
            QCOMPARE(QColor(picture.pixel(x, y)), QColor(line.pixel(0, y)));
    }
}

void TestHistoryRowFrame::tipLooksLikeAnyOther()
{
    frame->setTexts(QStringLiteral("time"), QStringLiteral("name"), QStringLiteral("/folder"));
    QLabel *tip = tipOf(label("nameLabel"));
    QVERIFY(tip != nullptr);
    const QImage ofRow = tip->grab().toImage();
    QToolTip::hideText();
    QTRY_VERIFY(visibleTip() == nullptr);

    QWidget unstyled;
    unstyled.setToolTip(QStringLiteral("name"));
    tip = tipOf(&unstyled);
    QVERIFY(tip != nullptr);
    QCOMPARE(ofRow, tip->grab().toImage());
}

TEST_SUITE(historyrowframe, TestHistoryRowFrame)
#include "historyrowframe.moc"
