// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>

#include <functional>

/// Starts the program anew once its file was replaced and nothing of it is in use: a desktop may
/// show the screen only to the program that is installed, which the running one no longer is. Main
/// thread only.
class UpdateRestart : public QObject
{
public:
    /// `isIdle` answers whether the user would miss nothing.
    explicit UpdateRestart(std::function<bool()> isIdle);

private:
    void scheduleLook();
    void look();

    std::function<bool()> m_isIdle;
    bool m_looksLater = false;
};
