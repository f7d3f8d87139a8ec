// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

#include "windowtest.h"

#include <QApplication>
#include <QClipboard>
#include <QDir>
#include <QDragEnterEvent>
#include <QFile>
#include <QUrl>
#include <QWindow>
#include <QtTest>

namespace testsupport
{

void ShownWindow::show()
{
    window = std::make_unique<MainWindow>();
    window->show();
    if (!QTest::qWaitForWindowExposed(window.get(), patience))
        qFatal("the window does not appear");
}

QStringList ShownWindow::rows() const
{
    QStringList paths;
    for (int row = 0; row < table()->rowCount(); ++row)
        paths.append(cell(row)->fullPath());
    return paths;
}

QStringList ShownWindow::tickedRows() const
{
    QStringList paths;
    for (int row = 0; row < table()->rowCount(); ++row) {
        if (cell(row)->isChecked())
            paths.append(cell(row)->fullPath());
    }
    return paths;
}

void ShownWindow::click(QWidget *widget)
{
    const QPoint place = widget->visibleRegion().boundingRect().center();
    QTest::mouseClick(widget->window()->windowHandle(), Qt::LeftButton, Qt::NoModifier,
                      widget->mapTo(widget->window(), place));
}

const SandboxHome &testHome()
{
    static const SandboxHome home;
    return home;
}

void moveIntoTestHome()
{
    const QString home = testHome().path();
    const QString runtime = home + QStringLiteral("/runtime");
    QDir().mkpath(runtime);
    QFile::setPermissions(runtime, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    qputenv("HOME", home.toUtf8());
    qputenv("XDG_CONFIG_HOME", home.toUtf8());
    qputenv("XDG_RUNTIME_DIR", runtime.toUtf8());
}

std::unique_ptr<QMimeData> dragOf(const QStringList &paths)
{
    QList<QUrl> urls;
    for (const QString &path : paths)
        urls.append(QUrl::fromLocalFile(path));
    auto data = std::make_unique<QMimeData>();
    data->setUrls(urls);
    return data;
}

void WindowTest::init()
{
    testHome().forgetHistory();
    tree = std::make_unique<TemporaryTree>();
    dialogs = std::make_unique<DialogDriver>();
    show();
}

void WindowTest::cleanup()
{
    window.reset();
    dialogs.reset();
    tree.reset();
}

QStringList WindowTest::makeFiles(int count) const
{
    QStringList files;
    for (int name = 0; name < count; ++name)
        files.append(tree->makeFile(QString::number(name), 10));
    return files;
}

WindowTest::DropOutcome WindowTest::letGo(const QMimeData &data) const
{
    const QPoint place = window->rect().center();
    const Qt::DropActions offered = Qt::CopyAction | Qt::MoveAction;
    QDragEnterEvent enter(place, offered, &data, Qt::LeftButton, Qt::NoModifier);
    enter.ignore();
    QApplication::sendEvent(window.get(), &enter);
    QDropEvent letGo(place, offered, &data, Qt::LeftButton, Qt::NoModifier);
    letGo.ignore();
    if (enter.isAccepted())
        QApplication::sendEvent(window.get(), &letGo);
    return {enter.isAccepted(), letGo.isAccepted()};
}

void WindowTest::drop(const QStringList &paths)
{
    const int before = table()->rowCount();
    letGo(paths);
    settle();
    QCOMPARE(rows().mid(before), paths);
}

QStringList WindowTest::dropFiles(int count)
{
    const QStringList files = makeFiles(count);
    drop(files);
    return files;
}

void WindowTest::settle()
{
    // Commands are performed in order, and a copy answers whatever the state of things.
    const QString uncopied = QStringLiteral("nothing was copied yet");
    QClipboard *clipboard = QGuiApplication::clipboard();
    clipboard->setText(uncopied);
    window->copyToClipboardEva();
    PROMPTLY_VERIFY(clipboard->text() != uncopied);
}

void WindowTest::press(const char *name)
{
    click(name);
    settle();
}

void WindowTest::pressRow(int row)
{
    clickRow(row);
    settle();
}

void WindowTest::beginCrush()
{
    dialogs->next(Answer::Ok);
    dialogs->next(Answer::Ok);
    click("crushButton");
}

void WindowTest::crush()
{
    const int before = dialogs->seen().size();
    beginCrush();
    PROMPTLY_COMPARE(dialogs->seen().size(), before + 2);
    PROMPTLY_VERIFY(dialogs->isDone());
}

QStringList WindowTest::reports() const
{
    QStringList texts;
    for (const SeenDialog &dialog : dialogs->seen()) {
        if (dialog.buttons.size() == 1)
            texts.append(dialog.text);
    }
    return texts;
}

} // namespace testsupport
