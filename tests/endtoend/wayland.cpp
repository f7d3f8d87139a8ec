// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// The program as a native Wayland client. The compositor shows its screen as a
// window of the X server, of which pictures can be taken and on which there is a
// pointer; what is in the program's windows is heard.

#include "endtoendtest.h"
#include "suites.h"

#include <QFileInfo>
#include <QLibraryInfo>
#include <QTest>

#include <algorithm>

using namespace testsupport;

namespace
{

/// The background @p name of a window, as it looks on the screen.
QImage background(const QString &name)
{
    return QImage(QStringLiteral(IMAGE_FOLDER "/%1.png").arg(name))
        .convertToFormat(QImage::Format_RGB32);
}

const QRgb *lineOf(const QImage &picture, int y)
{
    return reinterpret_cast<const QRgb *>(picture.constScanLine(y));
}

} // namespace

class TestEndToEndWayland : public EndToEndTest
{
    Q_OBJECT

private slots:
    void initTestCase();

    void mainWindowFollowsItsStrip();
    void historyWindowFollowsItsStrip();
    void dialogFollowsItsStripAndTheRunGoesToItsReport();

private:
    std::optional<QPoint> placeOf(const QImage &image) const;
    QPoint restingPlaceOf(const QImage &image) const;
    void dragByTheStrip(const QImage &image);
    std::optional<HeardNode> openWithRow(const QString &file);
    bool startCompositor();
    TiedProcess compositor;
};

void TestEndToEndWayland::initTestCase()
{
    if (!ScreenReader::isInstalled())
        QSKIP("needs dbus-daemon and at-spi2-core");
    if (!isInstalled("weston"_s))
        QSKIP("needs weston");
    if (!QFileInfo::exists(QLibraryInfo::location(QLibraryInfo::PluginsPath)
                           + "/platforms/libqwayland-generic.so"_s))
        QSKIP("needs qtwayland5");
    EndToEndTest::initTestCase();
    QVERIFY(reader.start(desktop));
    QVERIFY(startCompositor());
}

bool TestEndToEndWayland::startCompositor()
{
    const QProcessEnvironment environment = desktop.environment();
    compositor.launch(environment,
                      wordsOf("weston --backend=x11-backend.so --use-pixman --no-config"
                              " --idle-time=0 --width=1500 --height=900"
                              " --socket=wayland-shredder"_s));
    const QString socket = environment.value("XDG_RUNTIME_DIR"_s) + "/wayland-shredder"_s;
    QProcessEnvironment variables;
    variables.insert("WAYLAND_DISPLAY"_s, socket);
    variables.insert("QT_QPA_PLATFORM"_s, "wayland"_s);
    const bool ready = eventually([&] {
        // It is black before it has drawn its background.
        return QFileInfo::exists(socket)
               && desktop.picture().pixelColor(mainwindow::onScreen.center()) != QColor(Qt::black);
    });
    desktop.addVariables(variables);
    return ready;
}

/// The window with a row for @p file, chosen in the file dialog.
std::optional<HeardNode> TestEndToEndWayland::openWithRow(const QString &file)
{
    shredder->start();
    const auto window = hear(mainwindow::title());
    if (!window || !window->press("添加文件"_s))
        return std::nullopt;
    const auto fileDialog = hear("打开"_s);
    const auto name = fileDialog ? fileDialog->find("text"_s) : std::nullopt;
    if (!name || !name->write(file) || !fileDialog->press("打开(O)"_s))
        return std::nullopt;
    const bool listed =
        eventually([&] { return window->find("list item"_s, "file"_s).has_value(); });
    return listed ? window : std::nullopt;
}

/// Where the window with the background @p image is: by its upper edge up to the buttons, and by
/// its lower.
std::optional<QPoint> TestEndToEndWayland::placeOf(const QImage &image) const
{
    constexpr int buttons = 40;
    const QImage screen = desktop.picture();
    const QRgb *upper = lineOf(image, 0);
    const QRgb *lower = lineOf(image, image.height() - 1);
    for (int y = 0; y <= screen.height() - image.height(); ++y) {
        const QRgb *line = lineOf(screen, y);
        const QRgb *found =
            std::search(line, line + screen.width(), upper, upper + image.width() - buttons);
        const auto x = found - line;
        if (x <= screen.width() - image.width()
            && std::equal(lower, lower + image.width(), lineOf(screen, y + image.height() - 1) + x))
            return QPoint(static_cast<int>(x), y);
    }
    return std::nullopt;
}

/// The place of a window once two looks agree; the corner of the screen if there is none.
QPoint TestEndToEndWayland::restingPlaceOf(const QImage &image) const
{
    std::optional<QPoint> last;
    eventually([&] {
        const auto place = placeOf(image);
        const bool rests = place && place == last;
        last = place;
        return rests;
    });
    return last.value_or(QPoint());
}

/// The compositor moves the window from when it has been asked to, which is a while after the
/// button went down. Until then the pointer goes to the right; of that way some may be lost.
void TestEndToEndWayland::dragByTheStrip(const QImage &image)
{
    const QPoint start = restingPlaceOf(image);
    QVERIFY(!start.isNull());
    // Weston opens windows anywhere, and this one has to stay on the screen.
    const QPoint centre = start + image.rect().center();
    const QPoint way(centre.x() < mainwindow::onScreen.center().x() ? 70 : -70,
                     centre.y() < mainwindow::onScreen.center().y() ? 45 : -45);
    // Weston learns where the pointer is when it comes in from outside.
    desktop.movePointer(QPoint());
    QPoint pointer = start + mainwindow::grip;
    desktop.press(pointer);
    const bool moves = eventually([&] {
        pointer += QPoint(1, 0);
        desktop.movePointer(pointer);
        return placeOf(image) != start;
    });
    desktop.movePointer(pointer + way);
    const int rightward = (pointer - start - mainwindow::grip).x();
    const bool arrives = eventually([&] {
        const QPoint moved = placeOf(image).value_or(start) - start;
        return moved.y() == way.y() && moved.x() >= way.x() && moved.x() <= way.x() + rightward;
    });
    desktop.releaseButton();
    QVERIFY(moves && arrives);
}

void TestEndToEndWayland::mainWindowFollowsItsStrip()
{
    shredder->start();
    QVERIFY(hear(mainwindow::title()));
    const QImage image = background("bk"_s);
    const QPoint start = restingPlaceOf(image);
    desktop.movePointer(QPoint());
    // Below the close button, where nothing takes the press but the strip.
    desktop.drag(start + QPoint(750, 35), start + QPoint(650, 135));
    QCOMPARE(restingPlaceOf(image), start);
    dragByTheStrip(image);
}

void TestEndToEndWayland::historyWindowFollowsItsStrip()
{
    shredder->start();
    const auto window = hear(mainwindow::title());
    QVERIFY(window && window->press("查看粉碎记录"_s));
    dragByTheStrip(background("bk_history"_s));
}

void TestEndToEndWayland::dialogFollowsItsStripAndTheRunGoesToItsReport()
{
    const QString file = tree->makeFile("file", 5000);
    const auto window = openWithRow(file);
    QVERIFY(window && window->press("粉碎文件"_s));
    dragByTheStrip(background("bk_dialog"_s));
    auto message = hear(dialog::title());
    QVERIFY(message && message->press("确定"_s));
    const QString report = "1 个文件(文件夹)已被成功粉碎"_s;
    QTRY_VERIFY_WITH_TIMEOUT((message = hear(dialog::title()))->description().contains(report),
                             patience);
    QVERIFY(!entryExists(file));
    QVERIFY(message->press("确定"_s));
    QVERIFY(window->press("关闭"_s));
    QCOMPARE(shredder->waitForEnd().value_or(-1), 0);
}

TEST_SUITE(wayland, TestEndToEndWayland)
#include "wayland.moc"
