// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/SystemLog.h"

/// Standard error, which the journal collects from the programs of a session.
class StandardErrorLog : public SystemLog
{
protected:
    void write(const QString &line) override;
};
