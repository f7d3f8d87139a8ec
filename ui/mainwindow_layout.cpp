// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// The regions of the main window, from top to bottom. Everything has a fixed
// place on a window of a fixed size; the background image knows these places.

#include "ui/mainwindow.h"

#include "ui/headings.h"
#include "ui/rowtable.h"
#include "ui/textsize.h"
#include "widgets/customtitlebar.h"
#include "widgets/stylesheets.h"
#include "widgets/windowpalette.h"

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
#include <QStyle>
#include <QStyleOptionSlider>
#include <QStyledItemDelegate>

namespace
{

constexpr int mainWidth = 800;
constexpr int mainHeight = 550;
constexpr int historyWidth = 700;
constexpr int historyHeight = 500;
constexpr int dialogWidth = 420;
constexpr int dialogHeight = 230;

QLabel *addLabel(QWidget *parent, const QRect &place, const QString &styleSheet,
                 const QString &text = QString())
{
    auto *label = new QLabel(text, parent);
    label->setGeometry(place);
    label->setStyleSheet(styleSheet);
    return label;
}

QPushButton *addFlatButton(QWidget *parent, const QRect &place, const QString &styleSheet,
                           const QString &text = QString())
{
    auto *button = new QPushButton(text, parent);
    button->setGeometry(place);
    button->setFlat(true);
    button->setStyleSheet(styleSheet);
    button->setFocusPolicy(Qt::NoFocus);
    return button;
}

/// Draws its handle only. For a scroll bar whose sheet says "background:none", Qt fills the trough
/// with the desktop's window colour, which makes the handle hard to see, or a dark bar beside it.
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

/// Continues the rows into the spare column, which has no cells, so that their lines end at the
/// edge of the window.
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
    windowSizes[DialogWidth] = dialogWidth;
    windowSizes[DialogHeight] = dialogHeight;
    windowSizes[SpareSize] = 0;
}

void MainWindow::placeWindow()
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
    // A widget of its own, so that the image reaches no other child.
    auto *background = new QWidget(this);
    background->setObjectName(QStringLiteral("background"));
    background->move(0, 0);
    background->setFixedSize(windowSizes[MainWidth], windowSizes[MainHeight]);
    background->setStyleSheet(stylesheets::mainWindowBackground());
}

void MainWindow::addTitleBar()
{
    constexpr QRect barPlace(0, 0, 800, 40);
    constexpr QRect iconPlace(16, 12, 16, 16);
    constexpr QRect titlePlace(40, 0, 380, 40);
    constexpr QRect minimizePlace(736, 0, 27, 27);
    constexpr QRect closePlace(768, 0, 27, 27);

    auto *bar = new CustomTitleBar(this);
    bar->setObjectName(QStringLiteral("titleBar"));
    bar->setGeometry(barPlace);
    addLabel(bar, iconPlace, stylesheets::titleIcon())->setObjectName(QStringLiteral("titleIcon"));
    QLabel *title = addLabel(bar, titlePlace, stylesheets::mainTitleText(),
                             QStringLiteral("Brenvale - 文件粉碎机"));
    title->setObjectName(QStringLiteral("titleText"));
    title->setAlignment(Qt::AlignLeft | Qt::AlignVCenter);

    QPushButton *minimize = addFlatButton(bar, minimizePlace, stylesheets::minimizeButton());
    minimize->setObjectName(QStringLiteral("minimizeButton"));
    minimize->setAccessibleName(QStringLiteral("最小化"));
    QPushButton *close = addFlatButton(bar, closePlace, stylesheets::closeButton());
    close->setObjectName(QStringLiteral("closeButton"));
    close->setAccessibleName(QStringLiteral("关闭"));
    connect(close, &QPushButton::clicked, this, &MainWindow::windowQuit);
    connect(minimize, &QPushButton::clicked, this, &MainWindow::windowMini);
    // Built and wired but never shown: the window offers closing only.
    minimize->hide();
}

void MainWindow::addHeader()
{
    constexpr QRect logoPlace(27, 54, 48, 48);
    constexpr QRect headlinePlace(84, 51, 600, 28);
    constexpr QRect subtitlePlace(84, 79, 600, 28);
    constexpr QRect historyLinkPlace(700, 84, 84, 20);

    logoLabel = addLabel(this, logoPlace, stylesheets::logo());
    logoLabel->setObjectName(QStringLiteral("logoLabel"));
    QLabel *headline = addLabel(this, headlinePlace, stylesheets::headerText(),
                                QStringLiteral("彻底粉碎无法删除的 \"顽固\" 文件或文件夹"));
    headline->setObjectName(QStringLiteral("headlineLabel"));
    subtitleLabel =
        addLabel(this, subtitlePlace, stylesheets::headerText(),
                 QStringLiteral("您可以点击添加文件或直接拖拽想要删除的文件或文件夹到本窗口"));
    subtitleLabel->setObjectName(QStringLiteral("subtitleLabel"));

    QPushButton *historyLink = addFlatButton(this, historyLinkPlace, stylesheets::historyLink(),
                                             QStringLiteral("查看粉碎记录"));
    historyLink->setObjectName(QStringLiteral("historyLink"));
    connect(historyLink, &QPushButton::clicked, this, &MainWindow::slotShowHistoryEva);
}

void MainWindow::addMainTable()
{
    constexpr QRect tablePlace(1, 115, 798, 394);
    constexpr int entryColumnWidth = 778;
    constexpr int spareColumnWidth = 20;
    constexpr int headingHeight = 25;
    constexpr int spareColumn = 1;

    tableHost = new QWidget(this);
    tableHost->setObjectName(QStringLiteral("tableHost"));
    tableHost->setGeometry(tablePlace);
    tableHost->hide();

    mainTable = new RowTable(0, 2, this);
    mainTable->setObjectName(QStringLiteral("mainTable"));
    mainTable->setAccessibleName(QStringLiteral("待粉碎的文件或文件夹"));
    mainTable->setGeometry(tablePlace);
    mainTable->setStyleSheet(stylesheets::table());
    QPalette palette = mainTable->palette();
    palette.setBrush(QPalette::Base, QColor(255, 255, 255, 0));
    mainTable->setPalette(palette);
    mainTable->setSelectionMode(QAbstractItemView::NoSelection);
    // Styles and large fonts would make the spare column wider and the rows higher than they are.
    mainTable->horizontalHeader()->setMinimumSectionSize(spareColumnWidth);
    mainTable->verticalHeader()->setMinimumSectionSize(0);
    // A row that comes in another height and is resized has the table laid out once more.
    mainTable->verticalHeader()->setDefaultSectionSize(RowTable::entryHeight);
    mainTable->setColumnWidth(0, entryColumnWidth);
    mainTable->setColumnWidth(1, spareColumnWidth);
    mainTable->setHorizontalHeaderLabels(
        {QStringLiteral("名称"), QStringLiteral("文件或文件夹路径")});
    mainTable->setShowGrid(false);
    mainTable->verticalHeader()->hide();
    mainTable->horizontalHeader()->setDefaultAlignment(Qt::AlignLeft);
    mainTable->horizontalHeader()->setFixedHeight(headingHeight);
    mainTable->horizontalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    mainTable->setSelectionBehavior(QAbstractItemView::SelectRows);
    mainTable->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    mainTable->setVerticalScrollBarPolicy(Qt::ScrollBarAsNeeded);
    mainTable->setVerticalScrollBar(new TroughlessScrollBar(mainTable));
    mainTable->verticalScrollBar()->setStyleSheet(stylesheets::mainScrollBar());
    mainTable->setItemDelegateForColumn(spareColumn, new SpareColumnPainter(mainTable));
    mainTable->setAutoScroll(false);
}

/// The visible heading: labels over the table's own, whose words differ on purpose.
void MainWindow::addTableHeading()
{
    constexpr QRect namePlace(1, 114, 300, 26);
    constexpr QRect pathPlace(301, 114, 498, 26);
    constexpr QRect separatorPlace(301, 114, 6, 26);
    constexpr QRect bottomRulePlace(1, 508, 798, 1);
    constexpr int nameTextLeft = 15;
    constexpr int pathTextLeft = 15;

    QLabel *name = addLabel(this, namePlace, stylesheets::firstHeading(), QStringLiteral("名称"));
    name->setObjectName(QStringLiteral("nameHeading"));
    startTextAt(name, nameTextLeft);
    QLabel *path =
        addLabel(this, pathPlace, stylesheets::laterHeading(), QStringLiteral("文件路径"));
    path->setObjectName(QStringLiteral("pathHeading"));
    startTextAt(path, pathTextLeft);
    addLabel(this, separatorPlace, stylesheets::headingSeparator())
        ->setObjectName(QStringLiteral("headingSeparator"));
    addLabel(this, bottomRulePlace, stylesheets::bottomRule())
        ->setObjectName(QStringLiteral("bottomRule"));
}

void MainWindow::addBottomButtons()
{
    constexpr QRect selectAllPlace(16, 516, 54, 27);
    constexpr QRect addPlace(100, 516, 96, 27);
    constexpr QRect removePlace(200, 516, 96, 27);
    constexpr QRect crushPlace(705, 516, 76, 27);

    selectAllCheckBox = new QCheckBox(QStringLiteral("全选"), this);
    selectAllCheckBox->setObjectName(QStringLiteral("selectAllCheckBox"));
    selectAllCheckBox->setGeometry(selectAllPlace);
    selectAllCheckBox->setPalette(windowPalette());
    selectAllCheckBox->setChecked(false);
    selectAllCheckBox->setEnabled(false);

    addButton =
        addFlatButton(this, addPlace, stylesheets::linkButton(), QStringLiteral("添加文件"));
    addButton->setObjectName(QStringLiteral("addButton"));
    addButton->setIcon(QIcon(QStringLiteral(":/images/icon_add")));
    removeButton =
        addFlatButton(this, removePlace, stylesheets::linkButton(), QStringLiteral("移除文件"));
    removeButton->setObjectName(QStringLiteral("removeButton"));
    removeButton->setIcon(QIcon(QStringLiteral(":/images/icon_remove")));
    removeButton->setEnabled(false);
    crushButton =
        addFlatButton(this, crushPlace, stylesheets::crushButton(), QStringLiteral("粉碎文件"));
    crushButton->setObjectName(QStringLiteral("crushButton"));
    crushButton->setEnabled(false);
    const QWidgetList widgets{selectAllCheckBox, addButton, removeButton, crushButton};
    for (QWidget *widget : widgets)
        limitTextSize(widget);
}

namespace
{

/// A picture with one line of text, in the middle of the table.
QWidget *addPanel(QWidget *parent, const QString &iconName, const QRect &iconPlace,
                  const QString &iconSheet)
{
    constexpr QRect panelPlace(240, 280, 400, 50);
    auto *panel = new QWidget(parent);
    panel->setGeometry(panelPlace);
    addLabel(panel, iconPlace, iconSheet)->setObjectName(iconName);
    return panel;
}

QLabel *addPanelText(QWidget *panel, const QRect &place, const QString &text)
{
    constexpr int margin = 3;
    QLabel *label = addLabel(panel, place, stylesheets::panelText(), text);
    label->setAlignment(Qt::AlignLeft | Qt::AlignTop);
    label->setMargin(margin);
    return label;
}

} // namespace

void MainWindow::addEmptyPanel()
{
    constexpr QRect iconPlace(0, 0, 42, 44);
    constexpr QRect textPlace(52, 10, 400, 25);
    emptyPanel =
        addPanel(this, QStringLiteral("emptyIcon"), iconPlace, stylesheets::emptyPanelIcon());
    emptyPanel->setObjectName(QStringLiteral("emptyPanel"));
    addPanelText(emptyPanel, textPlace,
                 QStringLiteral("试试拖拽想要删除的文件或文件夹到本窗口吧！"))
        ->setObjectName(QStringLiteral("emptyLabel"));
}

void MainWindow::addSuccessPanel()
{
    constexpr QRect iconPlace(0, 0, 45, 45);
    constexpr QRect textPlace(55, 10, 400, 25);
    successPanel =
        addPanel(this, QStringLiteral("successIcon"), iconPlace, stylesheets::successPanelIcon());
    successPanel->setObjectName(QStringLiteral("successPanel"));
    successLabel = addPanelText(successPanel, textPlace, QStringLiteral("文件粉碎成功！"));
    successLabel->setObjectName(QStringLiteral("successLabel"));
    successPanel->hide();
}
