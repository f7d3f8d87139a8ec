// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// The regions of the main window, from top to bottom. Window and widgets have fixed
// geometries, which the background image is drawn for.

#include "ui/mainwindow.h"

#include "ui/rowtable.h"
#include "ui/windowparts.h"
#include "widgets/customdialog.h"
#include "widgets/customtitlebar.h"
#include "widgets/stylesheets.h"

#include <QCheckBox>
#include <QGuiApplication>
#include <QHeaderView>
#include <QIcon>
#include <QLabel>
#include <QPainter>
#include <QPixmap>
#include <QPushButton>
#include <QScreen>
#include <QScrollBar>
#include <QStyleOptionSlider>
#include <QStyledItemDelegate>

using windowparts::addFlatButton;
using windowparts::addHeading;
using windowparts::addHeadingSeparator;
using windowparts::addLabel;

namespace
{

constexpr int mainWidth = 800;
constexpr int mainHeight = 550;
constexpr int historyWidth = 700;
constexpr int historyHeight = 500;

/// Draws its handle only. Where the sheet says "background:none", Qt fills the trough with the
/// desktop's window colour, on which the handle is hard to see.
class TroughlessScrollBar : public QScrollBar
{
public:
    using QScrollBar::QScrollBar;

protected:
    void paintEvent(QPaintEvent *) override
    {
        QPainter painter(this);
        QStyleOptionSlider option;
        initStyleOption(&option);
        option.rect = style()->subControlRect(QStyle::CC_ScrollBar, &option,
                                              QStyle::SC_ScrollBarSlider, this);
        style()->drawControl(QStyle::CE_ScrollBarSlider, &option, &painter, this);
    }
};

/// Draws the rows' background in the spare column, which has no cells, so that the rows' lines
/// reach the edge of the window.
class SpareColumnPainter : public QStyledItemDelegate
{
public:
    using QStyledItemDelegate::QStyledItemDelegate;

    void paint(QPainter *painter, const QStyleOptionViewItem &option,
               const QModelIndex &) const override
    {
        painter->drawTiledPixmap(option.rect, background);
    }

private:
    QPixmap background{QStringLiteral(":/images/bk_item")};
};

} // namespace

void MainWindow::fillWindowSizes()
{
    const QRect screen = QGuiApplication::primaryScreen()->availableGeometry();
    windowSizes[ScreenWidth] = static_cast<quint16>(screen.width());
    windowSizes[ScreenHeight] = static_cast<quint16>(screen.height());
    windowSizes[MainWidth] = mainWidth;
    windowSizes[MainHeight] = mainHeight;
    windowSizes[HistoryWidth] = historyWidth;
    windowSizes[HistoryHeight] = historyHeight;
    windowSizes[DialogWidth] = CustomDialog::dialogWidth;
    windowSizes[DialogHeight] = CustomDialog::dialogHeight;
    windowSizes[SpareSize] = 0;
}

void MainWindow::setUpWindow()
{
    setWindowFlags(Qt::FramelessWindowHint);
    const int width = windowSizes[MainWidth];
    const int height = windowSizes[MainHeight];
    setGeometry((windowSizes[ScreenWidth] - width) / 2, (windowSizes[ScreenHeight] - height) / 2,
                width, height);
    setFixedSize(width, height);
    setAcceptDrops(true);
}

void MainWindow::addBackground()
{
    // A widget of its own, because the other children would inherit the image.
    auto *background = new QWidget(this);
    background->setObjectName(QStringLiteral("background"));
    background->move(0, 0);
    background->setFixedSize(windowSizes[MainWidth], windowSizes[MainHeight]);
    background->setStyleSheet(stylesheets::backgroundImage(QStringLiteral("bk")));
}

void MainWindow::addTitleBar()
{
    constexpr QRect barGeometry(0, 0, 800, 40);
    constexpr QPoint minimizePosition(736, 0);
    constexpr QPoint closePosition(768, 0);

    auto *bar = new CustomTitleBar(this);
    bar->setObjectName(QStringLiteral("titleBar"));
    bar->setGeometry(barGeometry);
    bar->addIcon(QStringLiteral("titleIcon"));
    bar->addTitle(QStringLiteral("titleText"), QStringLiteral("Brenvale - 文件粉碎机"),
                  stylesheets::mainTitleText());
    QPushButton *minimize =
        bar->addMinimizeButton(QStringLiteral("minimizeButton"), minimizePosition);
    const QPushButton *close = bar->addCloseButton(QStringLiteral("closeButton"), closePosition);
    connect(close, &QPushButton::clicked, this, &MainWindow::windowQuit);
    connect(minimize, &QPushButton::clicked, this, &MainWindow::windowMini);
    // Connected but never shown: the window offers closing only.
    minimize->hide();
}

void MainWindow::addHeader()
{
    constexpr QRect logoGeometry(27, 54, 48, 48);
    constexpr QRect headlineGeometry(84, 51, 600, 28);
    constexpr QRect subtitleGeometry(84, 79, 600, 28);
    constexpr QRect historyLinkGeometry(700, 84, 84, 20);

    logoLabel = addLabel(this, QStringLiteral("logoLabel"), logoGeometry,
                         stylesheets::backgroundImage(QStringLiteral("logo")));
    addLabel(this, QStringLiteral("headlineLabel"), headlineGeometry, stylesheets::headerText(),
             QStringLiteral("彻底粉碎无法删除的 \"顽固\" 文件或文件夹"));
    subtitleLabel =
        addLabel(this, QStringLiteral("subtitleLabel"), subtitleGeometry, stylesheets::headerText(),
                 QStringLiteral("您可以点击添加文件或直接拖拽想要删除的文件或文件夹到本窗口"));
    const QPushButton *historyLink =
        addFlatButton(this, QStringLiteral("historyLink"), historyLinkGeometry,
                      stylesheets::historyLink(), QStringLiteral("查看粉碎记录"));
    connect(historyLink, &QPushButton::clicked, this, &MainWindow::slotShowHistoryEva);
}

void MainWindow::addMainTable()
{
    constexpr QRect tableGeometry(1, 115, 798, 394);
    constexpr int spareColumn = 1;
    constexpr int spareColumnWidth = 20;

    tableHost = new QWidget(this);
    tableHost->setObjectName(QStringLiteral("tableHost"));
    tableHost->setGeometry(tableGeometry);
    tableHost->hide();

    mainTable = new RowTable(2, this);
    mainTable->setObjectName(QStringLiteral("mainTable"));
    mainTable->setAccessibleName(QStringLiteral("待粉碎的文件或文件夹"));
    mainTable->setGeometry(tableGeometry);
    // Some styles and large fonts have a larger minimum.
    mainTable->horizontalHeader()->setMinimumSectionSize(spareColumnWidth);
    mainTable->setColumnWidth(0, ZZTableCell::cellWidth);
    mainTable->setColumnWidth(spareColumn, spareColumnWidth);
    mainTable->setHorizontalHeaderLabels(
        {QStringLiteral("名称"), QStringLiteral("文件或文件夹路径")});
    mainTable->setVerticalScrollBar(new TroughlessScrollBar(mainTable));
    mainTable->verticalScrollBar()->setStyleSheet(stylesheets::mainScrollBar());
    mainTable->setItemDelegateForColumn(spareColumn, new SpareColumnPainter(mainTable));
}

/// The visible headings: labels that cover the table's own heading, whose texts nobody sees.
void MainWindow::addTableHeading()
{
    constexpr QRect nameGeometry(1, 114, 300, 26);
    constexpr QRect pathGeometry(301, 114, 498, 26);
    constexpr QRect separatorGeometry(301, 114, 6, 26);
    constexpr QRect bottomRuleGeometry(1, 508, 798, 1);
    constexpr int textLeft = 15;

    addHeading(this, QStringLiteral("nameHeading"), nameGeometry, stylesheets::firstHeading(),
               QStringLiteral("名称"), textLeft);
    addHeading(this, QStringLiteral("pathHeading"), pathGeometry, stylesheets::laterHeading(),
               QStringLiteral("文件路径"), textLeft);
    addHeadingSeparator(this, QStringLiteral("headingSeparator"), separatorGeometry);
    addLabel(this, QStringLiteral("bottomRule"), bottomRuleGeometry, stylesheets::bottomRule());
}

void MainWindow::addBottomButtons()
{
    constexpr QRect selectAllGeometry(16, 516, 54, 27);
    constexpr QRect addGeometry(100, 516, 96, 27);
    constexpr QRect removeGeometry(200, 516, 96, 27);
    constexpr QRect crushGeometry(705, 516, 76, 27);

    selectAllCheckBox = new QCheckBox(QStringLiteral("全选"), this);
    selectAllCheckBox->setObjectName(QStringLiteral("selectAllCheckBox"));
    selectAllCheckBox->setGeometry(selectAllGeometry);
    selectAllCheckBox->setPalette(stylesheets::windowPalette());
    selectAllCheckBox->setChecked(false);
    selectAllCheckBox->setEnabled(false);

    addButton = addFlatButton(this, QStringLiteral("addButton"), addGeometry,
                              stylesheets::linkButton(), QStringLiteral("添加文件"));
    addButton->setIcon(QIcon(QStringLiteral(":/images/icon_add")));
    removeButton = addFlatButton(this, QStringLiteral("removeButton"), removeGeometry,
                                 stylesheets::linkButton(), QStringLiteral("移除文件"));
    removeButton->setIcon(QIcon(QStringLiteral(":/images/icon_remove")));
    removeButton->setEnabled(false);
    crushButton = addFlatButton(this, QStringLiteral("crushButton"), crushGeometry,
                                stylesheets::crushButton(), QStringLiteral("粉碎文件"));
    crushButton->setEnabled(false);
    const QWidgetList widgets{selectAllCheckBox, addButton, removeButton, crushButton};
    for (QWidget *widget : widgets)
        windowparts::limitTextSize(widget);
}

namespace
{

/// In the middle of the table, for an image and one line of text.
QWidget *addPanel(QWidget *window, const QString &objectName)
{
    auto *panel = new QWidget(window);
    panel->setObjectName(objectName);
    panel->setGeometry(240, 280, 400, 50);
    return panel;
}

QLabel *addPanelText(QWidget *panel, const QString &objectName, int left, const QString &text)
{
    constexpr int margin = 3;
    QLabel *label =
        addLabel(panel, objectName, QRect(left, 10, 400, 25), stylesheets::panelText(), text);
    label->setAlignment(Qt::AlignLeft | Qt::AlignTop);
    label->setMargin(margin);
    return label;
}

} // namespace

void MainWindow::addEmptyPanel()
{
    constexpr QRect iconGeometry(0, 0, 42, 44);
    constexpr int textLeft = 52;
    emptyPanel = addPanel(this, QStringLiteral("emptyPanel"));
    addLabel(emptyPanel, QStringLiteral("emptyIcon"), iconGeometry,
             stylesheets::backgroundImage(QStringLiteral("ico_smile")));
    addPanelText(emptyPanel, QStringLiteral("emptyLabel"), textLeft,
                 QStringLiteral("试试拖拽想要删除的文件或文件夹到本窗口吧！"));
}

void MainWindow::addSuccessPanel()
{
    constexpr QRect iconGeometry(0, 0, 45, 45);
    constexpr int textLeft = 55;
    successPanel = addPanel(this, QStringLiteral("successPanel"));
    addLabel(successPanel, QStringLiteral("successIcon"), iconGeometry,
             stylesheets::backgroundImage(QStringLiteral("ico_ok")));
    successLabel = addPanelText(successPanel, QStringLiteral("successLabel"), textLeft,
                                QStringLiteral("文件粉碎成功！"));
    successPanel->hide();
}
