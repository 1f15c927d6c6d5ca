// SPDX-License-Identifier: MIT
#include "Platform/Qt/PaintingThread.h"

#include <QThreadPool>

void keepPaintingThread()
{
    QThreadPool &pool = *QThreadPool::globalInstance();
    // More would be started on demand, and what was meant for one that cannot be is never done.
    pool.setMaxThreadCount(1);
    constexpr int never = -1;
    pool.setExpiryTimeout(never);
    pool.start([] {});
}
