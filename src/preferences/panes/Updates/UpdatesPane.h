// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "BasicPreferencePane.h"

#include <QPointer>

class QLabel;
class QPushButton;

// The Updates pane: automatic update checks ("checkForUpdates"), "Check Now" and the time of the last check.
// "Check Now" triggers the window's action named "checkForUpdatesAction" and is enabled exactly while that
// action is.
class UpdatesPane : public BasicPreferencePane
{
    Q_OBJECT

public:
    explicit UpdatesPane(QObject *parent);

    bool respondsToPaneDidLoad() const override { return true; }
    void paneDidLoad() override;

    // "Never", or the date and time of the last check in the user's words.
    static QString lastCheckDescription();

protected:
    QWidget *makeView() override;

private:
    void followAction();

    QPointer<QPushButton> mCheckNow;
    QPointer<QAction> mAction;
};
