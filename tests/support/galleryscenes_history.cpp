// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// The history window, filled by the controller from a history file written for
// the purpose.

#include "galleryscenes.h"

#include "controller/walle.h"
#include "eventually.h"
#include "gallerystage.h"

#include <QDateTime>
#include <QFile>
#include <QPushButton>
#include <QScrollBar>
#include <QTableWidget>

namespace testsupport
{

namespace
{

struct Shredded {
    QString name;
    QString folder;
};

QVector<Shredded> usualEntries()
{
    return {
        {QStringLiteral("2019年度报税材料.xlsx"), QStringLiteral("/home/lina/文档")},
        {QStringLiteral("旧手机备份"), QStringLiteral("/home/lina/下载")},
        {QStringLiteral("护照扫描件.jpg"), QStringLiteral("/home/lina/图片/证件")},
        {QStringLiteral("离职交接.odt"), QStringLiteral("/home/lina/文档/工作")},
        {QStringLiteral("IMG_0417.jpg"), QStringLiteral("/home/lina/图片/手机")},
    };
}

QVector<Shredded> longEntries()
{
    return {
        {QStringLiteral("关于调整办公区域空调运行时间及节能措施的通知（第三次修订）.docx"),
         QStringLiteral("/home/lina/文档/客户资料/二〇二三年/华东区/上海/浦东新区/世纪大道营业部")},
        {QStringLiteral("quarterly-financial-consolidation-worksheet-final.xlsx"),
         QStringLiteral("/home/lina/Documents/Company/Finance/Quarterly reports/2023/Drafts")},
        {QStringLiteral("a"), QStringLiteral("/home/lina")},
    };
}

/// Writes @p count entries over and over from @p entries, a fixed time apart.
void writeHistory(const QVector<Shredded> &entries, int count)
{
    constexpr int secondsApart = 5417;
    const QDateTime first(QDate(2024, 3, 1), QTime(9, 12, 40), Qt::UTC);
    QFile file(Walle::historyFilePath());
    if (!file.open(QIODevice::WriteOnly))
        qFatal("cannot write the history");
    for (int index = 0; index < count; ++index) {
        const Shredded &entry = entries.at(index % entries.size());
        const QString time = first.addSecs(qint64(index) * secondsApart)
                                 .toString(QStringLiteral("yyyy-MM-dd HH:mm:ss"));
        file.write((time + QLatin1Char('\n') + entry.name + QLatin1Char('\n') + entry.folder
                    + QLatin1Char('\n'))
                       .toUtf8());
    }
}

/// Opens the history window and waits until all @p count entries are there.
QWidget *openHistory(const GalleryStage &stage, MainWindow &window, int count)
{
    window.slotShowHistoryEva();
    const auto *table = stage.shown.find<QTableWidget>("historyTable");
    const auto loaded = [&] {
        return table->rowCount() == count && stage.shown.isEnabled("copyButton") == (count > 0);
    };
    if (!eventually(loaded))
        qFatal("the history does not load");
    return stage.shown.find("historyWindow");
}

void showShortHistory(const QDir &folder)
{
    const QVector<Shredded> entries = usualEntries();
    writeHistory(entries, entries.size());
    GalleryStage stage(folder);
    const QWidget *window = openHistory(stage, *stage.shown, entries.size());
    stage.takePicture(QStringLiteral("history-short"), window);
    stage.takePicture(QStringLiteral("history-over-window"));
    stage.waitForTooltip(stage.shown.find<QTableWidget>("historyTable")
                             ->cellWidget(1, 0)
                             ->findChild<QWidget *>(QStringLiteral("nameLabel")));
    stage.takePicture(QStringLiteral("history-tooltip"), window);
    const auto hover = [&](const char *name, const QString &picture) {
        stage.pointAt(name);
        stage.takePicture(picture, window);
    };
    hover("copyButton", QStringLiteral("history-hover-copy"));
    hover("historyCloseButton", QStringLiteral("history-hover-close"));
    stage.holdDown("clearHistoryButton");
    stage.takePicture(QStringLiteral("history-pressed-clear"), window);
}

void showLongHistory(const QDir &folder)
{
    constexpr int manyEntries = 500;
    writeHistory(usualEntries(), manyEntries);
    GalleryStage stage(folder);
    const QWidget *window = openHistory(stage, *stage.shown, manyEntries);
    QScrollBar *bar = stage.shown.find<QTableWidget>("historyTable")->verticalScrollBar();
    stage.takePicture(QStringLiteral("history-long-top"), window);
    bar->setValue(bar->maximum() / 2);
    stage.takePicture(QStringLiteral("history-long-middle"), window);
    bar->setValue(bar->maximum());
    stage.takePicture(QStringLiteral("history-long-end"), window);
}

} // namespace

void showHistory(const QDir &folder)
{
    QFile::remove(Walle::historyFilePath());
    {
        // Its buttons have nothing to copy or clear.
        GalleryStage stage(folder);
        stage.takePicture(QStringLiteral("history-empty"), openHistory(stage, *stage.shown, 0));
    }
    showShortHistory(folder);
    showLongHistory(folder);
    const QVector<Shredded> entries = longEntries();
    writeHistory(entries, entries.size());
    GalleryStage stage(folder);
    const QWidget *window = openHistory(stage, *stage.shown, entries.size());
    stage.takePicture(QStringLiteral("history-long-names"), window);
    stage.waitForTooltip(stage.shown.find<QTableWidget>("historyTable")
                             ->cellWidget(2, 0)
                             ->findChild<QWidget *>(QStringLiteral("pathLabel")));
    stage.takePicture(QStringLiteral("history-long-tooltip"), window);
}

} // namespace testsupport
