// SPDX-License-Identifier: MIT
// How the process ends when something else ends it: seen by the parent of a child that does.

#include "Platform/ProcessEnd.h"

#include <QTest>

#include <cstdlib>
#include <functional>
#include <optional>
#include <sys/resource.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

namespace {
constexpr int destroyedStatus = 77;
constexpr int farewellStatus = 78;

/// Ends the process in its own way when it is destroyed, which an exit handler should not do.
struct TellTale
{
    ~TellTale() { std::_Exit(destroyedStatus); }
};

/// The exit status of a child that did this; absent where a signal ended it.
std::optional<int> exitStatusOf(const std::function<void()> &action)
{
    const pid_t child = fork();
    if (child == 0) {
        action();
        std::_Exit(0);
    }
    int status = 0;
    waitpid(child, &status, 0);
    return WIFEXITED(status) ? std::optional(WEXITSTATUS(status)) : std::nullopt;
}
} // namespace

class ProcessEndTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void exitDestroysNothingWhileGuarded()
    {
        const auto status = exitStatusOf([] {
            static const TellTale made;
            const ExitGuard guard([] {});
            std::exit(3);
        });
        QCOMPARE(status, std::optional(EXIT_FAILURE));
    }

    void whatIsMadeUnderGuardStaysToo()
    {
        const auto status = exitStatusOf([] {
            const ExitGuard guard([] {});
            static const TellTale made;
            std::exit(3);
        });
        QCOMPARE(status, std::optional(EXIT_FAILURE));
    }

    void anotherThreadMayCallExit()
    {
        const auto status = exitStatusOf([] {
            static const TellTale made;
            const ExitGuard guard([] {});
            std::thread([] { std::exit(3); }).join();
        });
        QCOMPARE(status, std::optional(EXIT_FAILURE));
    }

    void theFarewellIsSaid()
    {
        const auto status = exitStatusOf([] {
            const ExitGuard guard([] { std::_Exit(farewellStatus); });
            std::exit(3);
        });
        QCOMPARE(status, std::optional(farewellStatus));
    }

    void exitIsAsEverAfterTheGuard()
    {
        const auto status = exitStatusOf([] {
            static const TellTale made;
            {
                const ExitGuard guard([] {});
            }
            std::exit(3);
        });
        QCOMPARE(status, std::optional(destroyedStatus));
    }

    void noCoreIsDumped_data()
    {
        QTest::addColumn<bool>("forbidden");
        QTest::newRow("forbidden") << true;
        QTest::newRow("as ever") << false;
    }

    void noCoreIsDumped()
    {
        QFETCH(bool, forbidden);
        rlimit limit{};
        QCOMPARE(getrlimit(RLIMIT_CORE, &limit), 0);
        const auto status = exitStatusOf([&] {
            rlimit open{.rlim_cur = limit.rlim_max, .rlim_max = limit.rlim_max};
            setrlimit(RLIMIT_CORE, &open);
            if (forbidden) {
                forbidCoreDumps();
            }
            getrlimit(RLIMIT_CORE, &open);
            std::_Exit(open.rlim_cur == 1 && open.rlim_max == 1 ? 1 : 0);
        });
        QCOMPARE(status, std::optional(forbidden ? 1 : 0));
    }
};

QTEST_APPLESS_MAIN(ProcessEndTest)
#include "ProcessEndTest.moc"
