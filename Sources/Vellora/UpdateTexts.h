// SPDX-License-Identifier: MIT
#pragma once

#include "SoftwareUpdate.h"

#include <QCoreApplication>
#include <QString>

/// What people read about an update, in their language. Plain texts, not markup.
class UpdateTexts
{
    Q_DECLARE_TR_FUNCTIONS(UpdateTexts)

public:
    /// What has happened, in one line.
    static QString heading(const SoftwareUpdate &update);
    /// What it means, or what to do; may be empty.
    static QString explanation(const SoftwareUpdate &update);
    /// What is being done right now; empty in stages that do nothing.
    static QString activity(const SoftwareUpdate &update);
    /// What else would be changed, a line for each kind of change; may be empty.
    static QString otherChanges(const Update &update);
    /// A version without what packages add to it: of "1:0.2.0-1" the part "0.2.0".
    static QString versionForPeople(const QString &version);

private:
    static QString phase(UpdateProgress::Phase phase);
    static QString problem(UpdateProblem problem);
    static QString names(const QStringList &packages);
};
