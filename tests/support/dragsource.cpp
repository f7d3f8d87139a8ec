// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// The other program of a drag: a small window at a given place of the screen from
// which the pointer drags files, raw URLs or plain text.
//
//     dragsource X Y [--propose-move|--offer-move|--url|--text] CONTENT...
//
// It prints "ready" once, and for each drag "begin", "over ACTION" whenever the
// target under the pointer changes its mind, "end ACTION" with what the drop came
// to, and "given" when the target fetches the data, which is after the end of the
// drag: the program has to live on until then. ACTION is copy, move or ignore. A copy is
// offered and proposed, unless a move is proposed beside it or is all that is offered.

#include <QApplication>
#include <QDrag>
#include <QMimeData>
#include <QMouseEvent>
#include <QTextStream>
#include <QTimer>
#include <QUrl>
#include <QWidget>

namespace
{

constexpr QSize windowSize{120, 80};

const char *nameOf(Qt::DropAction action)
{
    switch (action) {
    case Qt::CopyAction:
        return "copy";
    case Qt::MoveAction:
        return "move";
    default:
        return "ignore";
    }
}

void print(const char *event, const char *detail = "")
{
    QTextStream(stdout) << event << detail << '\n';
}

// Sets off a timer when it is asked for its data, so that this is told from the
// event loop, when the answer is really on its way.
class TellingMimeData : public QMimeData
{
public:
    explicit TellingMimeData(QTimer *alarm)
        : given(alarm)
    {
    }

protected:
    QVariant retrieveData(const QString &format, QVariant::Type type) const override
    {
        given->start();
        return QMimeData::retrieveData(format, type);
    }

private:
    QTimer *given;
};

// Lives on the GUI thread; main() owns it.
class DragSource : public QWidget
{
public:
    DragSource()
    {
        given.setSingleShot(true);
        connect(&given, &QTimer::timeout, this, [] { print("given"); });
    }

    QList<QUrl> urls;
    QString text;
    Qt::DropActions offered = Qt::CopyAction;
    Qt::DropAction proposed = Qt::CopyAction;

protected:
    void paintEvent(QPaintEvent *event) override
    {
        QWidget::paintEvent(event);
        if (!announced)
            print("ready");
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
        auto *content = new TellingMimeData(&given);
        if (!urls.isEmpty())
            content->setUrls(urls);
        else
            content->setText(text);
        auto *drag = new QDrag(this);
        drag->setMimeData(content);
        connect(drag, &QDrag::actionChanged, this,
                [](Qt::DropAction action) { print("over ", nameOf(action)); });
        print("begin");
        print("end ", nameOf(drag->exec(offered, proposed)));
    }

    QTimer given;
    QPoint pressed;
    bool announced = false;
};

} // namespace

int main(int argc, char *argv[])
{
    QApplication application(argc, argv);
    QStringList words = QApplication::arguments().mid(1);
    if (words.size() < 3)
        return 2;
    const QPoint place(words.at(0).toInt(), words.at(1).toInt());
    words = words.mid(2);
    const QString kind =
        words.first().startsWith(QLatin1String("--")) ? words.takeFirst() : QString();

    DragSource source;
    if (kind == QLatin1String("--text")) {
        source.text = words.join(QLatin1Char(' '));
    } else {
        const bool raw = kind == QLatin1String("--url");
        for (const QString &item : qAsConst(words))
            source.urls.append(raw ? QUrl(item) : QUrl::fromLocalFile(item));
    }
    if (kind == QLatin1String("--propose-move")) {
        source.offered = Qt::CopyAction | Qt::MoveAction;
        source.proposed = Qt::MoveAction;
    } else if (kind == QLatin1String("--offer-move")) {
        source.offered = Qt::MoveAction;
        source.proposed = Qt::MoveAction;
    }
    // Without the window manager's help the window stands exactly where asked.
    source.setWindowFlags(Qt::X11BypassWindowManagerHint);
    source.setGeometry(QRect(place, windowSize));
    source.show();
    return QApplication::exec();
}
