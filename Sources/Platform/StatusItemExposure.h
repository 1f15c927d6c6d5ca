// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>
#include <QString>

#include <utility>

/// How much of the status item the desktop lets its user see. It changes when panels come and go.
/// Main thread only.
class StatusItemExposure : public QObject
{
    Q_OBJECT

public:
    enum class Extent {
        /// No panel shows it.
        Nothing,
        /// A panel shows the image, and the tooltip never.
        Image,
        /// A panel shows the image, and the tooltip to whoever points at it.
        ImageAndToolTip,
    };

    Extent extent() const { return m_extent; }
    /// Where no panel shows it: the name of what the user can add to the desktop for that, such as
    /// an extension. Empty where nothing is known.
    QString missingExtension() const { return m_missingExtension; }

    void set(Extent extent, const QString &missingExtension = {})
    {
        const bool isSame =
            std::exchange(m_extent, extent) == extent && m_missingExtension == missingExtension;
        m_missingExtension = missingExtension;
        if (!isSame) {
            Q_EMIT changed();
        }
    }

Q_SIGNALS:
    void changed();

private:
    Extent m_extent = Extent::Nothing;
    QString m_missingExtension;
};
