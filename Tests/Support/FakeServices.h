// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/Platform.h"

#include <QImage>
#include <QMap>
#include <QPointer>
#include <QRectF>
#include <QStringList>
#include <QWidget>

#include <functional>
#include <new>
#include <optional>

/// Fakes of the desktop's services. Each answers what a test told it to and remembers what was
/// asked of it; all fields are free to read and set.

class FakeSystemLog : public SystemLog
{
public:
    QStringList lines;
    /// Called with each line, if set.
    std::function<void()> onWrite;

protected:
    void write(const QString &line) override
    {
        lines << line;
        if (onWrite) {
            onWrite();
        }
    }
};

class FakeScreens : public Screens
{
public:
    QList<Screen> list;
    std::optional<Screen> main;

    QList<Screen> screens() const override { return list; }
    std::optional<Screen> mainScreen() const override { return main; }

    /// A screen whose frame has its lower-left corner at (x, y), at `scale` pixels a point.
    /// `primaryHeight` turns y upwards into Qt's y downwards.
    static Screen screen(quint32 number, CocoaRect frame, double primaryHeight, double scale = 1)
    {
        const QRectF geometry(frame.minX(), primaryHeight - frame.maxY(), frame.size.width,
                              frame.size.height);
        const QRectF pixels(geometry.topLeft() * scale, geometry.size() * scale);
        return {frame, frame, number, geometry.toRect(), pixels.toRect()};
    }
};

class FakeScreenRecording : public ScreenRecording
{
public:
    bool preflight = true;
    bool request = false;
    std::optional<ScreenRecordingRefusal> refused;
    QImage nextImage;
    /// False: there is none for the next picture.
    bool hasMemory = true;
    mutable int preflightCount = 0;
    int requestCount = 0;
    struct Grab
    {
        quint32 display;
        QRectF rect;
    };
    QList<Grab> grabs;

    bool preflightAccess() const override
    {
        ++preflightCount;
        return preflight;
    }
    bool requestAccess() override
    {
        ++requestCount;
        return request;
    }
    std::optional<ScreenRecordingRefusal> refusal() const override { return refused; }
    QImage createImage(quint32 display, const QRectF &rect) override
    {
        grabs << Grab{display, rect};
        if (!hasMemory) {
            throw std::bad_alloc();
        }
        return nextImage;
    }
};

class FakeOverlaySurface : public OverlaySurface
{
public:
    /// The panels on screen, in the order in which they were shown.
    QList<QPointer<QWidget>> shown;
    QPointer<QWidget> key;
    int orderOutCount = 0;
    QPixmap backdrop;
    /// So many screens can be covered still.
    int coverable = 100;
    /// False: there is none for making a panel the one with the keyboard.
    bool hasMemory = true;

    std::optional<QPixmap> cover(QWidget &panel, const Screen &screen) override
    {
        if (coverable-- <= 0) {
            return std::nullopt;
        }
        panel.setGeometry(screen.geometry);
        return backdrop;
    }
    void orderFront(QWidget &panel) override
    {
        shown << &panel;
        panel.show();
    }
    void makeKey(QWidget &panel) override
    {
        if (!hasMemory) {
            throw std::bad_alloc();
        }
        key = &panel;
    }
    void orderOut(QWidget &panel) override
    {
        ++orderOutCount;
        shown.removeAll(&panel);
        panel.hide();
    }
};

class FakeEventMonitor : public EventMonitor
{
public:
    /// False: the desktop does not tell of mouse presses elsewhere.
    bool tellsMouse = true;

    int mouseMonitorCount() const { return static_cast<int>(m_mouse.size()); }
    int activationObserverCount() const { return static_cast<int>(m_activation.size()); }

    void pressOutside(CocoaPoint location)
    {
        for (auto *entry : QList(m_mouse)) {
            if (m_mouse.contains(entry)) {
                const auto handler = entry->mouse;
                handler(location);
            }
        }
    }
    void resignActive()
    {
        for (auto *entry : QList(m_activation)) {
            if (m_activation.contains(entry)) {
                const auto handler = entry->activation;
                handler();
            }
        }
    }

    std::unique_ptr<Monitor>
    addGlobalMouseDownMonitor(std::function<void(CocoaPoint)> handler) override
    {
        return tellsMouse ? std::make_unique<Entry>(m_mouse, std::move(handler), nullptr) : nullptr;
    }
    std::unique_ptr<Monitor> addResignActiveObserver(std::function<void()> handler) override
    {
        return std::make_unique<Entry>(m_activation, nullptr, std::move(handler));
    }

private:
    struct Entry : Monitor
    {
        Entry(QList<Entry *> &monitors, std::function<void(CocoaPoint)> onMouse,
              std::function<void()> onActivation)
            : all(monitors)
            , mouse(std::move(onMouse))
            , activation(std::move(onActivation))
        {
            all << this;
        }
        ~Entry() override { all.removeAll(this); }

        QList<Entry *> &all;
        std::function<void(CocoaPoint)> mouse;
        std::function<void()> activation;
    };

    QList<Entry *> m_mouse;
    QList<Entry *> m_activation;
};

class FakePasteboard : public Pasteboard
{
public:
    /// Absent after `clearContents`.
    std::optional<QString> text = QStringLiteral("earlier text");
    /// Whether `text` was set here, and no other program copied something since.
    bool isOwn = false;
    int clearCount = 0;
    /// Set: texts wait, each for a call of `late`.
    bool isLate = false;
    std::function<void(bool)> late;

    void clearContents() override
    {
        ++clearCount;
        text.reset();
    }
    void setString(const QString &string) override
    {
        text = string;
        isOwn = true;
    }
    void whenCopied(std::function<void(bool)> done) override
    {
        if (isLate) {
            late = std::move(done);
        } else {
            done(true);
        }
    }
    std::optional<QString> ownString() const override { return isOwn ? text : std::nullopt; }
};

class FakePopupPlacement : public PopupPlacement
{
public:
    double titleBarHeight = 24;
    QPointer<QWidget> window;
    CocoaPoint origin;
    /// What panels leave of every screen, where the desktop itself does not tell.
    std::optional<CocoaRect> visible;
    bool tells = true;

    void makeFloating(QWidget &floating) override { window = &floating; }
    CocoaRect visibleFrame(const Screen &screen) const override
    {
        return visible.value_or(PopupPlacement::visibleFrame(screen));
    }
    bool tellsPlaces() const override { return tells; }
    CocoaSize frameSize(const QWidget &measured) const override
    {
        return {static_cast<double>(measured.width()), measured.height() + titleBarHeight};
    }
    CocoaRect frame(const QWidget &measured) const override
    {
        return {origin, frameSize(measured)};
    }
    void setFrameOrigin(QWidget &, CocoaPoint place) override { origin = place; }
    void makeKeyAndOrderFront(QWidget &shown) override
    {
        shown.show();
        shown.activateWindow();
    }
};

class FakeSystemSounds : public SystemSounds
{
public:
    /// The theme: names and the files that stand for them.
    QMap<QString, QString> theme{
        {QStringLiteral("camera-shutter"), QStringLiteral("/theme/camera-shutter.oga")},
        {QStringLiteral("screen-capture"), QStringLiteral("/theme/screen-capture.oga")}};
    QStringList unplayable;
    QStringList played;
    int beepCount = 0;

    QString file(const QString &soundName) const override { return theme.value(soundName); }
    bool play(const QString &filePath) override
    {
        if (unplayable.contains(filePath)) {
            return false;
        }
        played << filePath;
        return true;
    }
    void beep() override { ++beepCount; }
};

class FakeLoginItem : public LoginItem
{
public:
    bool launched = false;
    std::optional<QString> error;
    QStringList requests;
    /// Called with each request, if set.
    std::function<void()> onRequest;

    std::optional<QString> registerItem() override
    {
        if (onRequest) {
            onRequest();
        }
        requests << QStringLiteral("register");
        return error;
    }
    std::optional<QString> unregisterItem() override
    {
        requests << QStringLiteral("unregister");
        return error;
    }
    bool launchedProgram() const override { return launched; }
};

class FakeApplicationService : public ApplicationService
{
public:
    Claim answer = Claim::First;
    QStringList forwarded;
    ActionHandler handler;

    bool isReleased = false;

    Claim claim() override { return answer; }
    void release() override { isReleased = true; }
    bool forward(const QString &action) override
    {
        forwarded << action;
        return true;
    }
    void setActionHandler(ActionHandler actionHandler) override
    {
        handler = std::move(actionHandler);
    }
};
