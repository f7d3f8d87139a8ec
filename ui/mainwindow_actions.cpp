// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// The user's actions in the main window, and the controller's answers in its buttons
// and header. Data is handed over first, the command posted second.

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

// The texts of the crush button, one for each state of a run.
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

/// Accepts a copy only. A source whose move is accepted deletes its originals, those of refused
/// files too.
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
    // Not accepted, so that the action stays the copy that dragEnterEvent() chose.
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
    const int answer = runDialog(CustomDialog::confirmCrushText(), DialogKind::Question);
    // Of several confirmations for one run, even if that run is over by now, the first counts.
    if (answer != QDialog::Accepted || alreadyConfirmed || startAwaited)
        return;
    startAwaited = true;
    walle->postCommand(CommandStartCrush);
}

void MainWindow::setCrushStartedEva(int state)
{
    // In every state: a start that was dropped during a run is answered only by that run's end.
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

void MainWindow::finishOneFileEva(QString) {}

void MainWindow::finishAllEva(int count)
{
    if (count < 0 || !successLabel || !emptyPanel || !successPanel || !subtitleLabel)
        return;
    // The header shows the result until the next run ends; the success panel stays hidden.
    subtitleLabel->setText(QStringLiteral("已成功粉碎") + QString::number(count)
                           + QStringLiteral("个文件（文件夹）"));
    if (emptyPanel->isVisible())
        emptyPanel->hide();
}
