// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// Every place in the windows has a fixed size, and its text has to be whole in it in the fonts that
// people have, in the sizes that desktops use.

#include "controller/protocol.h"
#include "suites.h"
#include "ui/historyrowframe.h"
#include "ui/mainwindow.h"
#include "ui/reporttexts.h"
#include "widgets/customdialog.h"

#include <QCheckBox>
#include <QFile>
#include <QFontDatabase>
#include <QFontMetrics>
#include <QImage>
#include <QLabel>
#include <QPainter>
#include <QPushButton>
#include <QStyle>
#include <QStyleOptionButton>
#include <QTemporaryDir>
#include <QtAlgorithms>
#include <QtTest>

namespace
{

// The part of a widget in which its text may be.

QSize roomIn(const QLabel &label)
{
    const QRect inner = label.contentsRect();
    const int left = inner.left() + label.margin() + qMax(0, label.indent());
    const int top = inner.top() + qMax(0, label.margin());
    return QRect(QPoint(left, top), label.rect().bottomRight()).size();
}

QSize roomIn(const QPushButton &button)
{
    constexpr int iconGap = 4;
    const int icon = button.icon().isNull() ? 0 : button.iconSize().width() + iconGap;
    return button.size() - QSize(icon, 0);
}

QSize roomIn(const QCheckBox &box)
{
    QStyleOptionButton option;
    option.initFrom(&box);
    const QRect place = box.style()->subElementRect(QStyle::SE_CheckBoxContents, &option, &box);
    return (place & box.rect()).size();
}

template <class Widget>
QStringList tooSmallAmong(const QList<Widget *> &widgets)
{
    QStringList names;
    for (Widget *widget : widgets) {
        widget->ensurePolished();
        const QFontMetrics metrics(widget->font());
        const QSize text(metrics.horizontalAdvance(widget->text()), metrics.height());
        if (!widget->text().isEmpty() && roomIn(*widget).expandedTo(text) != roomIn(*widget))
            names.append(widget->objectName());
    }
    return names;
}

/// The names of the widgets in @p window that are too small for their texts.
QStringList tooSmall(const QWidget &window)
{
    return tooSmallAmong(window.findChildren<QLabel *>())
           + tooSmallAmong(window.findChildren<QPushButton *>())
           + tooSmallAmong(window.findChildren<QCheckBox *>());
}

/// The lines of text in a picture of nothing else, as runs of pixel rows with ink; none when ink
/// touches the upper or the lower edge, because then some of it is lost.
int wholeLines(const QImage &picture)
{
    constexpr int faintest = 60;
    const auto hasInk = [&picture](int y) {
        for (int x = 0; x < picture.width(); ++x) {
            if (qAlpha(picture.pixel(x, y)) > faintest)
                return true;
        }
        return false;
    };
    if (hasInk(0) || hasInk(picture.height() - 1))
        return 0;
    int lines = 0;
    for (int y = 1; y < picture.height(); ++y)
        lines += hasInk(y) && !hasInk(y - 1) ? 1 : 0;
    return lines;
}

/// The lines of a dialog's message as it is drawn, without what is behind it.
int linesOf(const QString &message, int kind)
{
    CustomDialog dialog;
    dialog.setMessage(message, kind);
    auto *label = dialog.findChild<QLabel *>(QStringLiteral("messageText"));
    label->ensurePolished();
    QImage picture(label->size(), QImage::Format_ARGB32_Premultiplied);
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    label->render(&painter, QPoint(), QRegion(), QWidget::DrawChildren);
    return wholeLines(picture);
}

/// As the program finds it at its start; any font file serves under that name.
QString familyOfTheFileInTheHome()
{
    const QTemporaryDir home;
    const QString file = home.filePath(QStringLiteral("NotoSansCJKsc-DemiLight.otf"));
    QFile::copy(QStringLiteral("/usr/share/fonts/opentype/noto/NotoSansCJK-Regular.ttc"), file);
    return QFontDatabase::applicationFontFamilies(QFontDatabase::addApplicationFont(file)).value(0);
}

} // namespace

class TestFonts : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase_data();
    void init();
    void cleanup() { QApplication::setFont(usualFont); }

    void windowsHoldTheirTexts();
    void historyRowAndDialogHoldTheirTexts();
    void everyReportIsWhole();
    void longMessageWrapsInItsPlace();

private:
    const QFont usualFont = QApplication::font();
};

/// Each font, for every test.
void TestFonts::initTestCase_data()
{
    QTest::addColumn<QString>("family");
    QTest::addColumn<int>("points");
    // The last two are 12 points on the densest screens that are not scaled: of 107 dots per inch,
    // and with Qt before 5.14, which scales by whole numbers, of 143.
    for (const int points : {8, 9, 10, 11, 12, 13, 18}) {
        for (const char *family : {"Noto Sans CJK SC", "WenQuanYi Micro Hei"})
            QTest::addRow("%s %d", family, points) << QString::fromLatin1(family) << points;
    }
    const QString family = familyOfTheFileInTheHome();
    for (const int points : {9, 13, 18})
        QTest::addRow("font file in the home folder %d", points) << family << points;
}

void TestFonts::init()
{
    QFETCH_GLOBAL(QString, family);
    QFETCH_GLOBAL(int, points);
    if (!QFontDatabase().families().contains(family))
        QSKIP("no such font here: packages fonts-noto-cjk, fonts-wqy-microhei");
    QApplication::setFont(QFont(family, points));
}

void TestFonts::windowsHoldTheirTexts()
{
    MainWindow window;
    QCOMPARE(tooSmall(window), QStringList());
    window.finishAllEva(200);
    for (const int state : {RunState::Running, RunState::Stopping, RunState::Idle}) {
        window.setCrushStartedEva(state);
        QCOMPARE(tooSmall(window), QStringList());
    }
}

void TestFonts::historyRowAndDialogHoldTheirTexts()
{
    HistoryRowFrame row(nullptr);
    row.setTexts(QStringLiteral("2028-08-28 20:48:58"), QStringLiteral("gÅ年"),
                 QStringLiteral("/home/gÅ年"));
    QCOMPARE(tooSmall(row), QStringList());
    QCOMPARE(tooSmall(CustomDialog()), QStringList());
}

void TestFonts::everyReportIsWhole()
{
    constexpr uint everyReason = 0x3f;
    constexpr int introductionLines = 2;
    for (uint reasons = 0; reasons <= everyReason; ++reasons) {
        QCOMPARE(linesOf(reporttexts::rejectionText(reasons), DialogKind::Refusal),
                 introductionLines + static_cast<int>(qPopulationCount(reasons)));
    }
    for (const uint succeeded : {0U, 1U, 200U}) {
        for (const uint failed : {0U, 1U, 200U}) {
            QCOMPARE(linesOf(reporttexts::resultText(succeeded, failed),
                             reporttexts::resultDialogKind(succeeded, failed)),
                     1 + (succeeded != 0 ? 1 : 0) + (failed != 0 ? 1 : 0));
        }
    }
}

void TestFonts::longMessageWrapsInItsPlace()
{
    QCOMPARE(linesOf(CustomDialog::confirmCrushText(), DialogKind::Question), 2);
}

TEST_SUITE(fonts, TestFonts)
#include "fonts.moc"
