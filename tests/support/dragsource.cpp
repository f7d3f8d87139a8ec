// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// The other program of a drag: a small window at 100, 100 from which the pointer drags
// what a line of standard input says, its words apart by tabs:
//
//     [--propose-move|--offer-move|--url|--text] CONTENT...
//
// Files, a raw URL or plain text; a copy is offered and proposed, unless a move is
// proposed beside it or is all that is offered. The program prints "ready", "begin",
// "over ACTION" whenever the target changes its mind, and "end ACTION" with what the
// drop came to, a Qt::DropAction; then its window goes.

#include <QApplication>
#include <QDrag>
#include <QMetaEnum>
#include <QMimeData>
#include <QMouseEvent>
#include <QSocketNotifier>
#include <QTextStream>
#include <QTimer>
#include <QUrl>
#include <QWidget>

#include <iostream>
#include <string>

#include <unistd.h>

namespace
{

void print(const char *event, Qt::DropAction action)
{
    const auto names = QMetaEnum::fromType<Qt::DropAction>();
    QTextStream(stdout) << event << ' ' << names.valueToKey(action) << '\n';
}

class DragSource : public QWidget
{
public:
    DragSource()
    {
        // Without the window manager's help the window stands exactly where asked.
        setWindowFlags(Qt::X11BypassWindowManagerHint);
        setGeometry(100, 100, 120, 80);
    }

    void offer(const QString &line)
    {
        words = line.split(QLatin1Char('\t'));
        kind = words.first().startsWith(QLatin1String("--")) ? words.takeFirst() : QString();
        announced = false;
        show();
    }

protected:
    void paintEvent(QPaintEvent *event) override
    {
        QWidget::paintEvent(event);
        if (!announced)
            QTextStream(stdout) << "ready\n";
        announced = true;
    }

    void mousePressEvent(QMouseEvent *event) override { pressed = event->pos(); }

    void mouseMoveEvent(QMouseEvent *event) override
    {
        const int distance = (event->pos() - pressed).manhattanLength();
        if ((event->buttons() & Qt::LeftButton) && distance >= QApplication::startDragDistance())
            drag();
    }

private:
    QMimeData *content() const
    {
        auto *mime = new QMimeData;
        QList<QUrl> urls;
        for (const QString &word : words)
            urls << (kind == QLatin1String("--url") ? QUrl(word) : QUrl::fromLocalFile(word));
        if (kind == QLatin1String("--text"))
            mime->setText(words.first());
        else
            mime->setUrls(urls);
        return mime;
    }

    void drag()
    {
        auto *drag = new QDrag(this);
        drag->setMimeData(content());
        connect(drag, &QDrag::actionChanged, this,
                [](Qt::DropAction action) { print("over", action); });
        QTextStream(stdout) << "begin\n";
        const bool moveAlone = kind == QLatin1String("--offer-move");
        const bool moves = moveAlone || kind == QLatin1String("--propose-move");
        const Qt::DropActions offered = moveAlone ? Qt::MoveAction
                                        : moves   ? Qt::CopyAction | Qt::MoveAction
                                                  : Qt::CopyAction;
        const Qt::DropAction done = drag->exec(offered, moves ? Qt::MoveAction : Qt::CopyAction);
        hide();
        // The drag held the pointer. Who reads of its end may use it.
        QTimer::singleShot(0, this, [done] {
            QApplication::sync();
            print("end", done);
        });
    }

    QStringList words;
    QString kind;
    QPoint pressed;
    bool announced = false;
};

} // namespace

int main(int argc, char *argv[])
{
    QApplication application(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    DragSource source;
    QSocketNotifier orders(STDIN_FILENO, QSocketNotifier::Read);
    QObject::connect(&orders, &QSocketNotifier::activated, &source, [&] {
        std::string line;
        if (std::getline(std::cin, line))
            source.offer(QString::fromStdString(line));
        else
            QApplication::quit();
    });
    return QApplication::exec();
}
