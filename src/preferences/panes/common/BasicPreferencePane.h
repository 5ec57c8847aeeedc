// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "preferences/SS_PreferencePaneProtocol.h"

#include <QObject>
#include <QPointer>
#include <QWidget>

// A pane of a Corvex pane bundle: its name, label, icon and tooltip are fixed when it is made; the view is
// made by makeView() on first request and belongs to the pane (it is deleted with the pane unless a window
// holds it).
class BasicPreferencePane : public QObject, public SS_PreferencePaneProtocol
{
    Q_OBJECT
    Q_INTERFACES(SS_PreferencePaneProtocol)

public:
    struct Description
    {
        QString name;
        QString label;
        QString iconPath;
        QString toolTip;
    };

    BasicPreferencePane(const Description &description, QObject *parent);
    ~BasicPreferencePane() override;

    QWidget *paneView() override;
    QString paneName() const override { return mDescription.name; }
    QString displayLabel() const override { return mDescription.label; }
    QIcon paneIcon() const override;
    QString paneToolTip() const override { return mDescription.toolTip; }
    bool allowsHorizontalResizing() const override { return false; }
    bool allowsVerticalResizing() const override { return false; }

protected:
    virtual QWidget *makeView() = 0;

private:
    Description mDescription;
    QPointer<QWidget> mView;
};
