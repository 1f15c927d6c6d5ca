// SPDX-License-Identifier: MIT
#pragma once

#include <QPoint>

#include <memory>

class QMenu;

/// Shows `menu` at `position` (Qt's global coordinates) with the pointer and the keyboard, also
/// while another application is the active one; a click beside it closes it. It is deleted once
/// it is closed.
QMenu *popUpMenu(std::unique_ptr<QMenu> menu, QPoint position);
