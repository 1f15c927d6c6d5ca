// SPDX-License-Identifier: MIT
#pragma once

#include <QWidget>

/// Who and what the program is: its icon, name and version, and the publisher's lines.
class AboutBlock : public QWidget
{
    Q_OBJECT

public:
    explicit AboutBlock(QWidget *parent = nullptr);
};
