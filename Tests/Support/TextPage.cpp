// SPDX-License-Identifier: MIT
// A window with a known text in a known place, for programs that read the screen.
//
//   text-page --place X,Y,W,H [--pixel-size N] [--title T] [--framed] TEXT|FILE.html
//
// Everything is in pixels. Only with --framed the window manager gives it a title bar. Says "shown
// X Y W H" on standard output whenever it has been drawn at a new place, "active" when it gets the
// keyboard, "key K" for each key that reaches it, and "click X Y" for each press of a button.

#include <QApplication>
#include <QCommandLineParser>
#include <QFile>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QTextDocument>
#include <QWidget>

#include <cstdio>

using namespace Qt::StringLiterals;

namespace {

void say(const QString &line)
{
    std::puts(line.toUtf8().constData());
    std::fflush(stdout);
}

class TextPage : public QWidget
{
public:
    TextPage(const QString &text, int pixelSize, bool isFramed)
    {
        if (!isFramed) {
            // So that the page stands exactly where it was asked to.
            setWindowFlags(Qt::Window | Qt::FramelessWindowHint);
        }
        QFont font(u"DejaVu Sans"_s);
        font.setPixelSize(pixelSize);
        m_document.setDefaultFont(font);
        m_document.setDocumentMargin(pixelSize / 2.0);
        if (text.endsWith(".html"_L1)) {
            QFile file(text);
            if (!file.open(QIODevice::ReadOnly)) {
                qFatal("cannot read %s", qPrintable(text));
            }
            m_document.setHtml(QString::fromUtf8(file.readAll()));
        } else {
            m_document.setPlainText(text);
        }
    }

protected:
    void paintEvent(QPaintEvent * /*event*/) override
    {
        m_document.setTextWidth(width());
        QPainter painter(this);
        painter.fillRect(rect(), Qt::white);
        m_document.drawContents(&painter);
        painter.end();
        tellPlace();
    }

    void changeEvent(QEvent *event) override
    {
        QWidget::changeEvent(event);
        if (event->type() == QEvent::ActivationChange && isActiveWindow()) {
            say(u"active"_s);
            // Drawn before the window manager had placed it, the page has told a place in its
            // frame; Qt tells of no move where that is the place asked for.
            update();
        }
    }

    void moveEvent(QMoveEvent * /*event*/) override { update(); }

    void keyPressEvent(QKeyEvent *event) override { say(u"key %1"_s.arg(event->key())); }

    void mousePressEvent(QMouseEvent *event) override
    {
        const QPoint place = event->globalPosition().toPoint();
        say(u"click %1 %2"_s.arg(place.x()).arg(place.y()));
    }

private:
    void tellPlace()
    {
        const QRect place(mapToGlobal(QPoint(0, 0)), size());
        if (place != m_told) {
            m_told = place;
            say(u"shown %1 %2 %3 %4"_s.arg(place.x())
                    .arg(place.y())
                    .arg(place.width())
                    .arg(place.height()));
        }
    }

    QTextDocument m_document;
    QRect m_told;
};

} // namespace

int main(int argc, char **argv)
{
    qputenv("QT_ENABLE_HIGHDPI_SCALING", "0");
    const QApplication app(argc, argv);
    QCommandLineParser parser;
    const QCommandLineOption place(u"place"_s, {}, u"X,Y,W,H"_s, u"100,100,600,300"_s);
    const QCommandLineOption pixelSize(u"pixel-size"_s, {}, u"N"_s, u"40"_s);
    const QCommandLineOption title(u"title"_s, {}, u"T"_s, u"Text page"_s);
    const QCommandLineOption framed(u"framed"_s);
    parser.addOptions({place, pixelSize, title, framed});
    parser.addPositionalArgument(u"text"_s, {});
    parser.process(app);

    const QStringList sides = parser.value(place).split(u',');
    const QString text = parser.positionalArguments().value(0);
    if (sides.size() != 4 || parser.value(pixelSize).toInt() <= 0) {
        parser.showHelp(2);
    }

    TextPage page(text, parser.value(pixelSize).toInt(), parser.isSet(framed));
    page.setWindowTitle(parser.value(title));
    page.setGeometry(sides[0].toInt(), sides[1].toInt(), sides[2].toInt(), sides[3].toInt());
    page.show();
    return QApplication::exec();
}
