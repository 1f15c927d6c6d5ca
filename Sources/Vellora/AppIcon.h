// SPDX-License-Identifier: MIT
#pragma once

#include <QIcon>
#include <QWidget>

/// The application's icon: that of the main bundle, else the one that the desktop shows for the
/// application.
QIcon loadedAppIcon();

/// Shows the application's icon, 44 points wide and high, with rounded corners.
class AppIconView : public QWidget
{
    Q_OBJECT

public:
    explicit AppIconView(QIcon icon, QWidget *parent = nullptr);

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    QIcon m_icon;
};
