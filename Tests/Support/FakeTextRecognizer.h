// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/TextRecognizer.h"

#include <QImage>
#include <QRectF>
#include <QStringList>

#include <atomic>
#include <condition_variable>
#include <functional>
#include <mutex>
#include <optional>
#include <stop_token>

/// Answers what a test told it to; all fields are free to read and set.
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
