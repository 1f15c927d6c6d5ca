// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/Platform.h"

#include <QMenu>
#include <QPointer>
#include <QRectF>
#include <QStringList>
#include <QWidget>

#include <atomic>
#include <condition_variable>
#include <functional>
#include <mutex>
#include <stop_token>

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
    void makeKey(QWidget &panel) override { key = &panel; }
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

class FakeStatusItemButton : public StatusItemButton
{
public:
    StatusItemImage currentImage;
    QString currentToolTip;
    std::function<void(const StatusItemEvent &)> action;
    /// Called with each image, if set.
    std::function<void()> onImage;
    std::unique_ptr<QMenu> menu;
    int menuCount = 0;

    StatusItemImage image() const override { return currentImage; }
    void setImage(const StatusItemImage &image) override
    {
        currentImage = image;
        if (onImage) {
            onImage();
        }
    }
    QString toolTip() const override { return currentToolTip; }
    void setToolTip(const QString &toolTip) override { currentToolTip = toolTip; }
    void setAction(std::function<void(const StatusItemEvent &)> handler) override
    {
        action = std::move(handler);
    }
    void popUpContextMenu(std::unique_ptr<QMenu> shown, const StatusItemEvent &) override
    {
        menu = std::move(shown);
        ++menuCount;
    }

    void leftClick() { action({StatusItemEvent::Type::LeftMouseUp, {}}); }
    void rightClick() { action({StatusItemEvent::Type::RightMouseUp, {}}); }
};

class FakeStatusBar : public StatusBar
{
public:
    /// Reset: status items have no button.
    std::shared_ptr<FakeStatusItemButton> button = std::make_shared<FakeStatusItemButton>();

    StatusItemExposure shown;

    FakeStatusBar() { shown.set(StatusItemExposure::Extent::ImageAndToolTip); }

    /// Called when a status item is asked for, if set.
    std::function<void()> onMake;

    std::unique_ptr<StatusItem> makeStatusItem() override
    {
        if (onMake) {
            onMake();
        }
        return std::make_unique<Item>(button);
    }
    const StatusItemExposure &exposure() const override { return shown; }

private:
    struct Item : StatusItem
    {
        explicit Item(std::shared_ptr<StatusItemButton> shown)
            : m_button(std::move(shown))
        {
        }
        std::shared_ptr<StatusItemButton> button() const override { return m_button; }

    private:
        std::shared_ptr<StatusItemButton> m_button;
    };
};

class FakeNotifications : public Notifications
{
public:
    /// What is seen now, by its id.
    QMap<QString, Notification> shown;
    /// Every message there was, in the order of their posting.
    QList<Notification> posted;

    void post(const QString &id, const Notification &notification) override
    {
        shown[id] = notification;
        posted << notification;
    }
    void withdraw(const QString &id) override { shown.remove(id); }

    /// The user clicks what is shown under `id`.
    void click(const QString &id)
    {
        const Notification clicked = shown.take(id);
        if (clicked.action) {
            clicked.action();
        }
    }
};

class FakeTextRecognizer : public TextRecognizer
{
public:
    QStringList supported{QStringLiteral("en-US")};
    /// Set: the languages cannot be told.
    std::optional<RecognitionError> supportedError;
    QList<RecognizedTextObservation> nextResults;
    /// Set: the completion handler gets it.
    std::optional<RecognitionError> nextError;
    /// Set: `perform` throws it.
    std::optional<RecognitionError> nextThrow;
    /// Set: `perform` calls it in place of answering, so that it may throw anything.
    std::function<void()> throwFailure;

    /// Set: a request that is stopped goes on all the same.
    bool ignoresStop = false;

    /// Makes the recognitions from now on wait, each for one `release` or until it is stopped.
    void hold() { m_holds = true; }
    /// Lets one go on, whichever.
    void release()
    {
        const std::lock_guard lock(m_mutex);
        ++m_releases;
        m_released.notify_all();
    }
    /// Lets the one that was begun as the `number`th go on, from 1.
    void release(int number)
    {
        const std::lock_guard lock(m_mutex);
        m_releasedNumbers << number;
        m_released.notify_all();
    }
    /// Requests that ended because they were stopped.
    int stopCount() const
    {
        const std::lock_guard lock(m_mutex);
        return m_stopCount;
    }

    /// The last request as it was configured.
    TextRecognitionRequest lastRequest() const
    {
        const std::lock_guard lock(m_mutex);
        return m_lastRequest;
    }
    int performCount() const
    {
        const std::lock_guard lock(m_mutex);
        return m_performCount;
    }

    QStringList supportedRecognitionLanguages(const TextRecognitionRequest &) const override
    {
        if (supportedError) {
            throw RecognitionError(*supportedError);
        }
        return supported;
    }

    void perform(TextRecognitionRequest &request, const QImage &) override
    {
        QList<RecognizedTextObservation> results;
        {
            std::unique_lock lock(m_mutex);
            m_lastRequest = request;
            const int number = ++m_performCount;
            results = nextResults;
            const bool isReleased = !m_holds || waitForRelease(lock, request.stop, number);
            if (!isReleased) {
                ++m_stopCount;
                return;
            }
        }
        if (throwFailure) {
            throwFailure();
        }
        if (!nextThrow || nextError) {
            request.results = results;
            request.completionHandler(request, nextError);
        }
        if (nextThrow) {
            throw RecognitionError(*nextThrow);
        }
    }

    /// One line that is read as `text`.
    static RecognizedTextObservation line(const QString &text) { return {QRectF(), {{text, 0.9}}}; }

private:
    /// False if it was stopped before.
    bool waitForRelease(std::unique_lock<std::mutex> &lock, const std::stop_token &stop, int number)
    {
        const auto isReleased = [this, number] {
            return m_releases > 0 || m_releasedNumbers.contains(number);
        };
        if (!m_released.wait(lock, ignoresStop ? std::stop_token() : stop, isReleased)) {
            return false;
        }
        if (!m_releasedNumbers.removeOne(number)) {
            --m_releases;
        }
        return true;
    }

    mutable std::mutex m_mutex;
    std::condition_variable_any m_released;
    TextRecognitionRequest m_lastRequest;
    int m_performCount = 0;
    int m_stopCount = 0;
    int m_releases = 0;
    QList<int> m_releasedNumbers;
    std::atomic<bool> m_holds = false;
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

class FakeUpdateSource : public UpdateSource
{
public:
    bool starts = true;
    int startCount = 0;
    /// Every look, in its order.
    QList<Look> looks;
    QList<Update> installs;
    /// How often the task under way was asked for its end.
    int cancelCount = 0;
    /// How many tasks there are.
    int taskCount = 0;

    bool start() override
    {
        ++startCount;
        return starts;
    }
    std::unique_ptr<UpdateTask> look(Look why, ProgressHandler progress,
                                     ResultHandler result) override
    {
        looks << why;
        return task(std::move(progress), std::move(result));
    }
    std::unique_ptr<UpdateTask> install(const Update &update, ProgressHandler progress,
                                        ResultHandler result) override
    {
        installs << update;
        return task(std::move(progress), std::move(result));
    }

    void tell(const UpdateProgress &progress) const { m_progress(progress); }
    /// Answers the task that was begun last.
    void answer(const UpdateResult &result)
    {
        const ResultHandler handler = std::exchange(m_result, nullptr);
        handler(result);
    }
    void change() { Q_EMIT changed(); }

private:
    struct Task : UpdateTask
    {
        explicit Task(FakeUpdateSource &owner)
            : m_owner(&owner)
        {
            ++m_owner->taskCount;
        }
        ~Task() override
        {
            if (m_owner) {
                --m_owner->taskCount;
            }
        }
        void cancel() override { ++m_owner->cancelCount; }

    private:
        QPointer<FakeUpdateSource> m_owner;
    };

    std::unique_ptr<UpdateTask> task(ProgressHandler progress, ResultHandler result)
    {
        m_progress = std::move(progress);
        m_result = std::move(result);
        return std::make_unique<Task>(*this);
    }

    ProgressHandler m_progress;
    ResultHandler m_result;
};

class FakeProgramRestart : public ProgramRestart
{
public:
    bool possible = true;
    int successorCount = 0;
    bool successor = false;
    /// What a predecessor handed over.
    std::optional<QString> handedOver;

    bool canRestart() const override { return possible; }
    void startSuccessor(char *[]) override { ++successorCount; }
    bool isSuccessor() const override { return successor; }
    const std::optional<QString> &toBeHandedOver() const { return clipboardText(); }
    std::optional<QString> takeClipboardText() override
    {
        return std::exchange(handedOver, std::nullopt);
    }
};

class FakeProgramFile : public ProgramFile
{
public:
    bool replaced = false;

    bool isReplaced() const override { return replaced; }
    /// An update has put another file in its place.
    void replace()
    {
        replaced = true;
        Q_EMIT changed();
    }
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
