// SPDX-License-Identifier: MIT
#pragma once

#include <QTest>

/// Milliseconds that a test waits for what has to come. Generous, because tests run on machines
/// that have ten times as much to do as they can; only a test that fails takes that long.
///
/// Every test has this header (vellora_add_test), and with it Qt Test's QTRY_ macros have this
/// limit instead of five seconds. What has a limit of its own, such as QTest::qWaitFor, is given
/// it.
inline constexpr int testPatience = 60'000;

#undef QTRY_VERIFY
#define QTRY_VERIFY(expr) QTRY_VERIFY_WITH_TIMEOUT(expr, testPatience)
#undef QTRY_VERIFY2
#define QTRY_VERIFY2(expr, message) QTRY_VERIFY2_WITH_TIMEOUT(expr, message, testPatience)
#undef QTRY_COMPARE
#define QTRY_COMPARE(expr, expected) QTRY_COMPARE_WITH_TIMEOUT(expr, expected, testPatience)
