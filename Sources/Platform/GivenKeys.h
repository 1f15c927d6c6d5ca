// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>
#include <QString>

/// What a desktop that chooses the shortcut's keys together with its user has given in place of the
/// combination that was asked for. Main thread only.
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

Q_SIGNALS:
    void changed();

private:
    QString m_description;
};
