#pragma once

#include "workbenchdriver.h"

#include <QElapsedTimer>
#include <QTest>
#include <QThread>

#include <functional>

/// Ends the test with the driver's problem when the step fails.
#define STEP(driver, step) QVERIFY2((driver).step, qPrintable((driver).problem()))

/// Compares as soon as it holds, or fails when the patience has ended.
#define EVENTUALLY(actual, expected)                                                                                   \
    do {                                                                                                               \
        waitUntil([&] { return (actual) == (expected); });                                                             \
        QCOMPARE(actual, expected);                                                                                    \
    } while (false)

inline void waitUntil(const std::function<bool()> &condition)
{
    QElapsedTimer timer;
    timer.start();
    while (!condition() && !timer.hasExpired(Program::Patience))
        QThread::msleep(15);
}
