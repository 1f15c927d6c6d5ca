// SPDX-License-Identifier: MIT
#pragma once

#include <atomic>
#include <chrono>
#include <exception>
#include <stop_token>

namespace recognition {

/// Thrown where work ends because nobody wants its result any more.
class Stopped : public std::exception
{
public:
    const char *what() const noexcept override { return "The recognition was stopped."; }
};

/// Thrown where work ends because it has taken all the processor time that it may.
class Spent : public std::exception
{
public:
    const char *what() const noexcept override { return "The recognition took too long."; }
};

/// The processor time that the calling thread has taken since it began.
std::chrono::nanoseconds threadTime();

/// The work on one picture: whether it is still wanted, and how much processor time it has taken
/// on all its threads together.
///
/// A thread works for the one effort whose `Share` it has. What it calls knows nothing of that but
/// `checkpoint()`: handed on as an argument, the effort would pass through every operation between
/// a request and the innermost loop of a network.
class Effort
{
public:
    using ThreadClock = std::chrono::nanoseconds (*)();

    /// Without end, for what has no budget.
    static constexpr std::chrono::nanoseconds endless = std::chrono::nanoseconds::max();

    /// How many times less than the budget may be taken by reading without having found any text:
    /// what goes on so long is a texture, each dot of which every model would try.
    static constexpr int shareWithoutText = 4;

    /// `clock`: the time that the calling thread has taken.
    explicit Effort(std::stop_token stop, std::chrono::nanoseconds budget = endless,
                    ThreadClock clock = &threadTime);

    bool isStopped() const { return m_stop.stop_requested(); }
    /// Of all threads, as of their last checkpoints.
    std::chrono::nanoseconds taken() const { return std::chrono::nanoseconds(m_taken); }
    /// Lines were found, which are read from now on. Finding them takes its time by the picture's
    /// size, and may take all of the budget: of a large page nothing was read yet.
    void beginReading() { m_readingBegan = m_taken.load(); }
    /// There is text for sure: from now on the work may take the whole budget.
    void foundText() { m_hasText = true; }
    bool hasText() const { return m_hasText; }
    /// From now on only a stop ends the work: what is left to do is little.
    void liftBudget() { m_isLifted = true; }

    /// The effort that the calling thread works for; null if there is none.
    static Effort *current();

    /// Makes the calling thread work for an effort, as long as it lives. Null: for none.
    class Share
    {
    public:
        explicit Share(Effort *effort);
        ~Share();
        Share(const Share &) = delete;
        Share &operator=(const Share &) = delete;

    private:
        friend class Effort;
        friend void checkpoint();

        /// Adds what the thread took since the last time.
        void count();

        Effort *const m_effort;
        Share *const m_outer;
        std::chrono::nanoseconds m_counted{0};
        int m_calls = 0;
    };

private:
    friend void checkpoint();

    bool isSpent() const
    {
        if (m_isLifted) {
            return false;
        }
        const std::chrono::nanoseconds began(m_readingBegan);
        const bool isTexture =
            !m_hasText && began.count() >= 0 && taken() - began > m_budget / shareWithoutText;
        return isTexture || taken() > m_budget;
    }

    const std::stop_token m_stop;
    const std::chrono::nanoseconds m_budget;
    const ThreadClock m_clock;
    std::atomic<bool> m_hasText = false;
    std::atomic<bool> m_isLifted = false;
    /// In nanoseconds.
    std::atomic<std::chrono::nanoseconds::rep> m_taken = 0;
    /// What was taken when reading began; negative before.
    std::atomic<std::chrono::nanoseconds::rep> m_readingBegan = -1;
};

/// To be called at least once in some milliseconds of work: throws Stopped at once, and Spent soon,
/// if the effort that the thread works for is over. Takes a few nanoseconds; asking for the time
/// takes a quarter of a microsecond, so that only every eighth call does.
void checkpoint();

/// Tells the effort that the thread works for, if there is one, that from now on models are asked.
void beginReading();

/// A checkpoint for what goes over a picture row by row, before every 32nd, which is after some
/// tenths of a millisecond.
inline void checkAt(int row)
{
    if (row % 32 == 0) {
        checkpoint();
    }
}

} // namespace recognition
