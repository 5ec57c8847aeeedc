// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QIcon>
#include <QObject>
#include <QString>

class QWidget;

// One pane of the preferences window: a view with a unique name, a label, an icon and a tooltip. A pane is a
// QObject that implements this interface (qobject_cast finds it); panes are made by the root object of a pane
// bundle (see SS_PreferencePaneProvider).
class SS_PreferencePaneProtocol
{
public:
    virtual ~SS_PreferencePaneProtocol() = default;

    // The pane's view, made on first request and owned by the pane while the window does not show it; nullptr
    // when it cannot be made.
    virtual QWidget *paneView() = 0;
    // The unique name: the key of the pane and the identifier of its toolbar item.
    virtual QString paneName() const = 0;
    // The toolbar label, and the window title while the pane is shown.
    virtual QString displayLabel() const = 0;
    virtual QIcon paneIcon() const = 0;
    // The toolbar item's tooltip; empty for none.
    virtual QString paneToolTip() const = 0;
    virtual bool allowsHorizontalResizing() const = 0;
    virtual bool allowsVerticalResizing() const = 0;

    // Optional: a pane that wants to hear about being hidden or shown says so through
    // respondsToPaneWillUnload()/respondsToPaneDidLoad() and then gets the call.
    virtual bool respondsToPaneWillUnload() const { return false; }
    virtual void paneWillUnload() {}
    virtual bool respondsToPaneDidLoad() const { return false; }
    virtual void paneDidLoad() {}
};

#define SS_PreferencePaneProtocol_iid "com.ostrel.Corvex.SS_PreferencePaneProtocol/1.0"
Q_DECLARE_INTERFACE(SS_PreferencePaneProtocol, SS_PreferencePaneProtocol_iid)
