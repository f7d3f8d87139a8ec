// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// The other program of a drag: a small window at 100, 100 from which the pointer drags
// files, raw URLs or plain text. A copy is offered and proposed, unless a move is
// proposed beside it or is all that is offered.
//
//     dragsource [--propose-move|--offer-move|--url|--text] CONTENT...
//
// It prints "ready" once, and for each drag "begin", "over ACTION" whenever the target
// under the pointer changes its mind, and "end ACTION" with what the drop came to. The
// target may fetch the data after that. ACTION is copy, move or ignore.

#include <QApplication>
#include <QDrag>
#include <QMimeData>
#include <QMouseEvent>
#include <QTextStream>
#include <QUrl>
#include <QWidget>

namespace
{

void print(const char *event, Qt::DropAction action)
{
    const char *name = action == Qt::CopyAction   ? "copy"
                       : action == Qt::MoveAction ? "move"
                                                  : "ignore";
    QTextStream(stdout) << event << ' ' << name << '\n';
}

// Lives on the GUI thread; main() owns it.
class DragSource : public QWidget
{
public:
    QList<QUrl> urls;
    QString text;
    Qt::DropActions offered = Qt::CopyAction;
    Qt::DropAction proposed = Qt::CopyAction;

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
    void drag()
    {
        auto *content = new QMimeData;
        if (!urls.isEmpty())
            content->setUrls(urls);
        else
            content->setText(text);
        auto *drag = new QDrag(this);
        drag->setMimeData(content);
        connect(drag, &QDrag::actionChanged, this,
                [](Qt::DropAction action) { print("over", action); });
        QTextStream(stdout) << "begin\n";
        print("end", drag->exec(offered, proposed));
    }

    QPoint pressed;
    bool announced = false;
};

} // namespace

int main(int argc, char *argv[])
{
    QApplication application(argc, argv);
    QStringList words = QApplication::arguments().mid(1);
    const QString kind =
        words.value(0).startsWith(QLatin1String("--")) ? words.takeFirst() : QString();

    DragSource source;
    if (kind == QLatin1String("--text")) {
        source.text = words.join(QLatin1Char(' '));
    } else {
        const bool raw = kind == QLatin1String("--url");
        for (const QString &item : qAsConst(words))
            source.urls.append(raw ? QUrl(item) : QUrl::fromLocalFile(item));
    }
    if (kind == QLatin1String("--propose-move"))
        source.offered |= Qt::MoveAction;
    if (kind == QLatin1String("--offer-move"))
        source.offered = Qt::MoveAction;
    if (source.offered & Qt::MoveAction)
        source.proposed = Qt::MoveAction;
    // Without the window manager's help the window stands exactly where asked.
    source.setWindowFlags(Qt::X11BypassWindowManagerHint);
    source.setGeometry(100, 100, 120, 80);
    source.show();
    return QApplication::exec();
}
