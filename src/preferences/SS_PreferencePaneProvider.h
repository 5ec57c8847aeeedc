// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QList>
#include <QObject>

// The root object of a pane bundle (its principal class): the Qt plugin that `<Name>.preferencePane/Contents`
// holds implements this interface and hands out the panes the bundle provides. Each returned object
// implements SS_PreferencePaneProtocol and stays owned by the provider.
class SS_PreferencePaneProvider
{
public:
    virtual ~SS_PreferencePaneProvider() = default;

    // The panes of the bundle, in toolbar order.
    virtual QList<QObject *> preferencePanes() = 0;
};

#define SS_PreferencePaneProvider_iid "com.ostrel.Corvex.SS_PreferencePaneProvider/1.0"
Q_DECLARE_INTERFACE(SS_PreferencePaneProvider, SS_PreferencePaneProvider_iid)
