// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/Bundle.h"

#include <QIcon>
#include <QWidget>

/// The application's icon: that of `bundle`, if it has a readable one, else the one that the
/// desktop shows for the application.
QIcon loadedAppIcon(const Bundle &bundle = Bundle::main());

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
