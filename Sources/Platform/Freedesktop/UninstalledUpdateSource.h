// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/UpdateSource.h"

/// Of a copy that no package manager knows, such as one run from where it was built: there is no
/// place where newer versions of it would appear, and it says so when asked.
class UninstalledUpdateSource : public UpdateSource
{
    Q_OBJECT

public:
    /// Always false: there is nothing to begin.
    bool start() override { return false; }
    std::unique_ptr<UpdateTask> look(Look why, ProgressHandler progress,
                                     ResultHandler result) override;
    std::unique_ptr<UpdateTask> install(const Update &update, ProgressHandler progress,
                                        ResultHandler result) override;
};
