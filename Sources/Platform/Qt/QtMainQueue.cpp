// SPDX-License-Identifier: MIT
#include "Platform/Qt/QtMainQueue.h"

#include <QPointer>
#include <QTimer>

#include <utility>

namespace {

class QtRepeatingTimer : public RepeatingTimer,
                         public std::enable_shared_from_this<QtRepeatingTimer>
{
public:
    QtRepeatingTimer(QObject *context, std::function<void(RepeatingTimer &)> block)
        : m_timer(new QTimer(context))
        , m_block(std::move(block))
    {
    }

    ~QtRepeatingTimer() override { QtRepeatingTimer::invalidate(); }

    void start(std::chrono::milliseconds interval)
    {
        m_timer->setTimerType(Qt::PreciseTimer);
        m_timer->callOnTimeout([weak = weak_from_this()] {
            // Held while the block runs: it may drop the last reference from outside.
            if (const auto self = weak.lock()) {
                self->m_block(*self);
            }
        });
        m_timer->start(interval);
    }

    bool isValid() const override { return m_timer && m_timer->isActive(); }

    void invalidate() override
    {
        if (m_timer) {
            m_timer->stop();
            // It may be the one that is firing.
            m_timer->deleteLater();
            m_timer = nullptr;
        }
    }

private:
    QPointer<QTimer> m_timer;
    std::function<void(RepeatingTimer &)> m_block;
};

} // namespace

void QtMainQueue::async(Task task)
{
    QMetaObject::invokeMethod(&m_context, std::move(task), Qt::QueuedConnection);
}

void QtMainQueue::asyncAfter(std::chrono::milliseconds delay, Task task)
{
    QTimer::singleShot(delay, Qt::PreciseTimer, &m_context, std::move(task));
}

std::shared_ptr<RepeatingTimer>
QtMainQueue::scheduledTimer(std::chrono::milliseconds interval,
                            std::function<void(RepeatingTimer &)> block)
{
    auto timer = std::make_shared<QtRepeatingTimer>(&m_context, std::move(block));
    timer->start(interval);
    return timer;
}
