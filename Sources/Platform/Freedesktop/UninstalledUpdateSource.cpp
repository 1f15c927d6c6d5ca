// SPDX-License-Identifier: MIT
#include "Platform/Freedesktop/UninstalledUpdateSource.h"

#include "Platform/AnsweredUpdateTask.h"

namespace {
std::unique_ptr<UpdateTask> refusal(UpdateSource::ResultHandler result)
{
    UpdateResult answer;
    answer.failure.problem = UpdateProblem::NotFromPackage;
    return std::make_unique<AnsweredUpdateTask>(answer, std::move(result));
}
} // namespace

std::unique_ptr<UpdateTask> UninstalledUpdateSource::look(Look, ProgressHandler,
                                                          ResultHandler result)
{
    return refusal(std::move(result));
}

std::unique_ptr<UpdateTask> UninstalledUpdateSource::install(const Update &, ProgressHandler,
                                                             ResultHandler result)
{
    return refusal(std::move(result));
}
