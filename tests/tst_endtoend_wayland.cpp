// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// The program as a native Wayland client. The compositor shows its screen as a
// window of the X server, of which pictures can be taken; what is in the program's
// windows is heard.

#include "endtoendtest.h"
#include "screenreader.h"

#include <QFileInfo>
#include <QLibraryInfo>
#include <QStandardPaths>
#include <QTest>

using namespace testsupport;

class TestEndToEndWayland : public EndToEndTest
{
    Q_OBJECT

private slots:
    void initTestCase();
    void cleanupTestCase() { compositor.end(); }

    void runGoesFromTheFileDialogToTheReport();

private:
    bool startCompositor();
    std::optional<HeardNode> hear(const QString &window) const;
    ScreenReader reader;
    TiedProcess compositor;
};

void TestEndToEndWayland::initTestCase()
{
    if (!ScreenReader::isInstalled())
        QSKIP("needs dbus-daemon and at-spi2-core");
    if (QStandardPaths::findExecutable(QStringLiteral("weston")).isEmpty())
        QSKIP("needs weston");
    if (!QFileInfo::exists(QLibraryInfo::location(QLibraryInfo::PluginsPath)
                           + QStringLiteral("/platforms/libqwayland-generic.so")))
        QSKIP("needs qtwayland5");
    EndToEndTest::initTestCase();
    QVERIFY(reader.start(desktop.environment()));
    desktop.addVariables(reader.variables());
    QVERIFY(startCompositor());
}

bool TestEndToEndWayland::startCompositor()
{
    const QProcessEnvironment environment = desktop.environment();
    compositor.setProcessEnvironment(environment);
    compositor.setStandardOutputFile(QProcess::nullDevice());
    compositor.setStandardErrorFile(QProcess::nullDevice());
    compositor.start(QStringLiteral("weston"),
                     {QStringLiteral("--backend=x11-backend.so"), QStringLiteral("--use-pixman"),
                      QStringLiteral("--no-config"), QStringLiteral("--idle-time=0"),
                      QStringLiteral("--width=1500"), QStringLiteral("--height=900"),
                      QStringLiteral("--socket=wayland-shredder")});
    const QString socket =
        environment.value(QStringLiteral("XDG_RUNTIME_DIR")) + QStringLiteral("/wayland-shredder");
    QProcessEnvironment variables;
    variables.insert(QStringLiteral("WAYLAND_DISPLAY"), socket);
    variables.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("wayland"));
    const bool ready = eventually([&] {
        // It is black before it has drawn its background.
        return QFileInfo::exists(socket)
               && desktop.picture().pixelColor(mainwindow::onScreen.center()) != QColor(Qt::black);
    });
    desktop.addVariables(variables);
    return ready;
}

void TestEndToEndWayland::runGoesFromTheFileDialogToTheReport()
{
    const QString file = tree->makeFile(QStringLiteral("file"), 5000);
    shredder->start();
    const auto window = hear(mainwindow::title());
    QVERIFY(window && window->press(QStringLiteral("添加文件")));
    const auto fileDialog = hear(QStringLiteral("打开"));
    QVERIFY(fileDialog);
    const auto name = fileDialog->find(QStringLiteral("text"));
    QVERIFY(name && name->write(file));
    QVERIFY(fileDialog->press(QStringLiteral("打开(O)")));
    QTRY_VERIFY_WITH_TIMEOUT(window->find(QStringLiteral("list item"), QStringLiteral("file")),
                             patience);
    keepPicture("wayland-row");

    QVERIFY(window->press(QStringLiteral("粉碎文件")));
    auto message = hear(dialog::title());
    QVERIFY(message && message->press(QStringLiteral("确定")));
    QTRY_VERIFY_WITH_TIMEOUT((message = hear(dialog::title()))
                                 ->description()
                                 .contains(QStringLiteral("1 个文件(文件夹)已被成功粉碎")),
                             patience);
    keepPicture("wayland-report");
    QVERIFY(!entryExists(file));
    QVERIFY(message->press(QStringLiteral("确定")));
    QVERIFY(window->press(QStringLiteral("关闭")));
    QVERIFY(shredder->waitForEnd());
    QCOMPARE(shredder->exitStatus(), 0);
}

std::optional<HeardNode> TestEndToEndWayland::hear(const QString &window) const
{
    return reader.waitForWindow(shredder->processId(), window);
}

QTEST_GUILESS_MAIN(TestEndToEndWayland)
#include "tst_endtoend_wayland.moc"
