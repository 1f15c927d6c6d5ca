// SPDX-License-Identifier: MIT
// Another program on the desktop, for tests: covers the desktop with a known pattern, has a window
// of its own, and grabs input when told to. One command a line on the standard input:
//   background     shows the pattern; answers "background"
//   window X Y W H shows a window there (client area, pixels); answers "window ID"
//   grab           takes keyboard and pointer for itself, as an open menu does; answers "grab"
//   ungrab         gives them back; answers "ungrab"
// Tells "press X Y" (root pixels) and "key TEXT" of that window.
#include "Support/Pattern.h"

#include <QApplication>
#include <QImage>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QSocketNotifier>
#include <QTextStream>
#include <QWidget>
#include <QWindow>

#include <iostream>
#include <memory>
#include <string>

using namespace Qt::StringLiterals;

namespace {
void say(const QString &line)
{
    std::cout << qPrintable(line) << std::endl;
}

/// Nothing can cover any of it unnoticed.
class Background : public QWidget
{
public:
    explicit Background(QSize size)
        : m_pattern(pattern(size))
    {
        setAttribute(Qt::WA_OpaquePaintEvent);
        setAttribute(Qt::WA_X11NetWmWindowTypeDesktop);
        setWindowFlags(Qt::FramelessWindowHint | Qt::WindowStaysOnBottomHint);
        setGeometry({QPoint(), size});
    }

protected:
    void paintEvent(QPaintEvent *) override { QPainter(this).drawImage(0, 0, m_pattern); }

private:
    QImage m_pattern;
};

class Window : public QWidget
{
protected:
    void keyPressEvent(QKeyEvent *event) override { say(u"key "_s + event->text()); }
    void mousePressEvent(QMouseEvent *event) override
    {
        const QPoint place = event->globalPosition().toPoint();
        say(u"press %1 %2"_s.arg(place.x()).arg(place.y()));
    }
};

QSize desktopSize()
{
    QRect all;
    for (const QScreen *screen : QGuiApplication::screens()) {
        all |= screen->geometry();
    }
    return all.size();
}
} // namespace

int main(int argc, char **argv)
{
    const QApplication application(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    std::unique_ptr<Background> background;
    Window window;
    window.setFocusPolicy(Qt::StrongFocus);
    window.setWindowTitle(u"Peer"_s);

    QSocketNotifier input(0, QSocketNotifier::Read);
    QObject::connect(&input, &QSocketNotifier::activated, [&] {
        std::string line;
        if (!std::getline(std::cin, line)) {
            QApplication::quit();
            return;
        }
        const QStringList words = QString::fromStdString(line).split(u' ');
        if (words.first() == "background"_L1) {
            background = std::make_unique<Background>(desktopSize());
            background->show();
            background->lower();
            say(u"background"_s);
        } else if (words.first() == "window"_L1 && words.size() == 5) {
            window.setGeometry(words[1].toInt(), words[2].toInt(), words[3].toInt(),
                               words[4].toInt());
            window.show();
            say(u"window %1"_s.arg(window.winId()));
        } else if (words.first() == "grab"_L1) {
            window.windowHandle()->setKeyboardGrabEnabled(true);
            window.windowHandle()->setMouseGrabEnabled(true);
            say(u"grab"_s);
        } else if (words.first() == "ungrab"_L1) {
            window.windowHandle()->setMouseGrabEnabled(false);
            window.windowHandle()->setKeyboardGrabEnabled(false);
            say(u"ungrab"_s);
        }
    });
    return QApplication::exec();
}
