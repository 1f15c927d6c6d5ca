// SPDX-License-Identifier: MIT
#pragma once

#include <QRasterWindow>

/// A window of a single, transparent point, for what a compositor gives to windows alone: the
/// keyboard, for a moment.
class PointWindow : public QRasterWindow
{
public:
    PointWindow();
};
