// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>
#include <QString>

/// What has become of the combination that was asked for: the keys that a desktop which chooses
/// them together with its user has given in its place, or why there are none. Main thread only.
class GivenKeys : public QObject
{
    Q_OBJECT

public:
    /// The keys in the desktop's words and language, such as "Press <Control>F9". Empty where it
    /// gave the combination, or does not tell.
    QString description() const { return m_description; }
    void setDescription(const QString &description)
    {
        if (m_description != description) {
            m_description = description;
            Q_EMIT changed();
        }
    }

    /// Why nothing is listened to although it was asked for, and what the user can do about it, in
    /// sentences of the user's language. Empty otherwise.
    QString problem() const { return m_problem; }
    void setProblem(const QString &problem)
    {
        if (m_problem != problem) {
            m_problem = problem;
            Q_EMIT changed();
        }
    }

Q_SIGNALS:
    void changed();

private:
    QString m_description;
    QString m_problem;
};
