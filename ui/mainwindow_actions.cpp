// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// What the user does in the main window, and how the controller's answers show in
// its buttons and header. Data is handed over first, the command posted second.

#include "ui/mainwindow.h"

#include "controller/walle.h"
#include "ui/rowtable.h"
#include "widgets/customdialog.h"

#include <QDragEnterEvent>
#include <QDropEvent>
#include <QFileDialog>
#include <QLabel>
#include <QMimeData>
#include <QPushButton>

namespace
{

// The texts of the crush button stand for the states of a run.
QString idleText()
{
    return QStringLiteral("粉碎文件");
}

QString runningText()
{
    return QStringLiteral("停止粉碎");
}

QString stoppingText()
{
    return QStringLiteral("正在停止");
}

} // namespace

void MainWindow::windowQuit()
{
    emit quit();
}

void MainWindow::windowMaxi() {}

void MainWindow::windowMini()
{
    showMinimized();
}

void MainWindow::addEva()
{
    if (!walle)
        return;
    // A cancelled dialog is an empty batch.
    walle->addChosenFiles(QFileDialog::getOpenFileNames(this));
    walle->postCommand(CommandAddChosen);
}

/// Always answered with a copy. A source that is told of a move would delete its originals, those
/// of refused files too. A source that offers no copy is refused.
void MainWindow::dragEnterEvent(QDragEnterEvent *event)
{
    if (!event->mimeData()->hasFormat(QStringLiteral("text/uri-list")))
        return;
    if (event->proposedAction() == Qt::CopyAction)
        return event->acceptProposedAction();
    event->setDropAction(Qt::CopyAction); // does nothing when no copy is offered
    event->setAccepted(event->dropAction() == Qt::CopyAction);
}

void MainWindow::dropEvent(QDropEvent *event)
{
    if (!event || !walle)
        return;
    // Not accepted: the source then keeps the copy that it was told of.
    const QList<QUrl> urls = event->mimeData()->urls();
    if (urls.isEmpty())
        return;
    walle->addDroppedUrls(urls);
    walle->postCommand(CommandAddDropped);
}

void MainWindow::removeSomeFilesEva()
{
    if (walle)
        walle->postCommand(CommandRemoveChecked);
}

void MainWindow::selectAllEva(bool state)
{
    if (walle && mainTable)
        walle->postCommand(state ? CommandCheckAll : CommandUncheckAll);
}

void MainWindow::crushFilesEva()
{
    if (!walle || !crushButton)
        return;
    const QString text = crushButton->text();
    if (text == runningText()) {
        walle->postCommand(CommandStopCrush);
        return;
    }
    if (text == stoppingText())
        return;
    const bool alreadyConfirmed = startAwaited;
    CustomDialog question;
    question.moveToCentreOf(geometry());
    question.setMessage(QStringLiteral("选中的内容将被彻底删除，确定要粉碎选定的内容吗？"),
                        DialogKind::Question);
    // Of several confirmations for one run, even if that run is over by now, the first counts.
    if (question.exec() != QDialog::Accepted || alreadyConfirmed || startAwaited)
        return;
    startAwaited = true;
    walle->postCommand(CommandStartCrush);
}

void MainWindow::setCrushStartedEva(int state)
{
    // Any state will do: a start dropped during a run is answered only by the end of that run.
    startAwaited = false;
    switch (state) {
    case RunState::Idle:
        setCrushButtonText(idleText());
        return setRemoveButtonEnabledEva(true);
    case RunState::Running:
        setCrushButtonText(runningText());
        return setRemoveButtonEnabledEva(false);
    case RunState::Stopping:
        return setCrushButtonText(stoppingText());
    default:
        return;
    }
}

void MainWindow::setCrushButtonText(const QString &text)
{
    if (crushButton)
        crushButton->setText(text);
}

void MainWindow::setRemoveButtonEnabledEva(bool enabled)
{
    if (removeButton)
        removeButton->setEnabled(enabled);
}

void MainWindow::setCrushButtonEnabledEva(bool enabled)
{
    if (crushButton)
        crushButton->setEnabled(enabled);
}

void MainWindow::finishOneFileEva(QString path)
{
    Q_UNUSED(path)
}

void MainWindow::finishAllEva(int count)
{
    if (count < 0 || !successLabel || !emptyPanel || !successPanel || !subtitleLabel)
        return;
    // The header tells the result until the next run ends; the success panel stays hidden.
    subtitleLabel->setText(QStringLiteral("已成功粉碎") + QString::number(count)
                           + QStringLiteral("个文件（文件夹）"));
    if (emptyPanel->isVisible())
        emptyPanel->hide();
}
