// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// Loaded into the program by LD_PRELOAD, uses its window from the inside: drops the
// path in SELFDRIVER_PATH on it and starts the run. So a run of the very program that
// users get needs no desktop. It says "shown" with the number of the window, and
// "started", on standard output; the line "close" on standard input closes the window.

#include "windowmap.h"

#include <QApplication>
#include <QDropEvent>
#include <QMimeData>
#include <QMouseEvent>
#include <QSocketNotifier>
#include <QTextStream>
#include <QTimer>
#include <QUrl>
#include <QWidget>

#include <array>
#include <cstdio>

#include <unistd.h>

namespace
{

constexpr int pause = 2; // milliseconds

void say(const QString &words)
{
    QTextStream(stdout) << words << '\n' << flush;
}

class SelfDriver : public QObject
{
public:
    explicit SelfDriver(QObject *parent)
        : QObject(parent)
        , path(qEnvironmentVariable("SELFDRIVER_PATH"))
    {
        proceed();
        auto *orders = new QSocketNotifier(STDIN_FILENO, QSocketNotifier::Read, this);
        connect(orders, &QSocketNotifier::activated, this, [this, orders] { obey(orders); });
    }

private:
    enum class Step { Showing, Dropped, Asking, Started };

    // A chain of single shots goes on inside a dialog, which a repeating timer would not do.
    void proceed() { QTimer::singleShot(pause, this, &SelfDriver::act); }
    void act();
    void obey(QSocketNotifier *orders);
    void close();
    void drop() const;
    static void click(QWidget *target, const QRect &place);

    QWidget *window = nullptr;
    QString path;
    Step step = Step::Showing;
};

void SelfDriver::act()
{
    if (step != Step::Started)
        proceed();
    QWidget *dialog = QApplication::activeModalWidget();
    if (step == Step::Showing) {
        const QWidgetList candidates = QApplication::topLevelWidgets();
        for (QWidget *candidate : candidates) {
            if (candidate->inherits("MainWindow") && candidate->isVisible())
                window = candidate;
        }
        if (window == nullptr)
            return;
        say(QStringLiteral("shown %1").arg(window->winId()));
        step = path.isEmpty() ? Step::Started : Step::Dropped;
        if (!path.isEmpty())
            drop();
    } else if (step == Step::Dropped) {
        const QWidget *button = window->childAt(testsupport::mainwindow::crushButton.center());
        if (button == nullptr || !button->isEnabled())
            return;
        step = Step::Asking;
        click(window, testsupport::mainwindow::crushButton);
    } else if (step == Step::Asking && dialog != nullptr) {
        step = Step::Started;
        say(QStringLiteral("started"));
        click(dialog, testsupport::dialog::questionOk);
    }
}

void SelfDriver::obey(QSocketNotifier *orders)
{
    std::array<char, 64> line = {};
    if (::read(STDIN_FILENO, line.data(), line.size() - 1) <= 0)
        orders->setEnabled(false);
    else if (QByteArray(line.data()).contains("close") && window != nullptr)
        close();
}

/// Nobody can close a window that waits for its dialog; when the run is over that is its report.
void SelfDriver::close()
{
    if (QWidget *dialog = QApplication::activeModalWidget())
        click(dialog, testsupport::dialog::reportOk);
    window->close();
}

void SelfDriver::drop() const
{
    QMimeData data;
    data.setUrls({QUrl::fromLocalFile(path)});
    const QPoint place = testsupport::mainwindow::table.center();
    QDragEnterEvent enter(place, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(window, &enter);
    QDropEvent drop(place, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(window, &drop);
}

void SelfDriver::click(QWidget *target, const QRect &place)
{
    QWidget *child = target->childAt(place.center());
    if (child == nullptr)
        return;
    const QPoint inside = child->mapFrom(target, place.center());
    for (const QEvent::Type type : {QEvent::MouseButtonPress, QEvent::MouseButtonRelease}) {
        QMouseEvent event(type, inside, child->mapToGlobal(inside), Qt::LeftButton, Qt::LeftButton,
                          Qt::NoModifier);
        QCoreApplication::sendEvent(child, &event);
    }
}

void begin()
{
    if (QCoreApplication::applicationName() == QLatin1String("fileshredder"))
        new SelfDriver(qApp);
}

} // namespace

Q_COREAPP_STARTUP_FUNCTION(begin)
