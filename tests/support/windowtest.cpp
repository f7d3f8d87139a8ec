// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

#include "windowtest.h"

#include "widgets/zztablecell.h"

#include <QDir>
#include <QFile>
#include <QTableWidget>
#include <QtTest>

namespace testsupport
{

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

void WindowTest::init()
{
    testHome().forgetHistory();
    tree = std::make_unique<TemporaryTree>();
    dialogs = std::make_unique<DialogDriver>();
    window = std::make_unique<ShownWindow>();
    mainWindow = &**window;
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

QString WindowTest::makeBigFolder(int files) const
{
    for (int file = 0; file < files; ++file)
        tree->makeFile(QStringLiteral("big/%1").arg(file), 100);
    return tree->path(QStringLiteral("big"));
}

QString WindowTest::makeFailingFolder() const
{
    const QString folder = tree->makeFolder(QStringLiteral("failing"));
    tree->makeFifo(QStringLiteral("failing/fifo"));
    return folder;
}

void WindowTest::drop(const QStringList &paths)
{
    const int before = window->table()->rowCount();
    window->drop(paths);
    settle();
    QCOMPARE(window->rows().mid(before), paths);
}

QStringList WindowTest::dropFiles(int count)
{
    const QStringList files = makeFiles(count);
    drop(files);
    return files;
}

QWidget *WindowTest::overlayOf(int row) const
{
    return window->cell(row)->findChild<QWidget *>(QStringLiteral("progressOverlay"));
}

void WindowTest::settle()
{
    QVERIFY(window->settle());
}

void WindowTest::press(const char *name)
{
    window->click(name);
    settle();
}

void WindowTest::pressRow(int row)
{
    window->clickRow(row);
    settle();
}

void WindowTest::crush()
{
    const int before = dialogs->seen().size();
    dialogs->next(Answer::Ok);
    dialogs->next(Answer::Ok);
    window->click("crushButton");
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
