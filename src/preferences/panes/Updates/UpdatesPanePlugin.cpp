// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
//
// The principal class of the Updates pane bundle.
#include "UpdatesPane.h"
#include "preferences/SS_PreferencePaneProvider.h"

#include <QObject>
#include <QPointer>

class UpdatesPanePlugin : public QObject, public SS_PreferencePaneProvider
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID "com.ostrel.Corvex.SS_PreferencePaneProvider/1.0")
    Q_INTERFACES(SS_PreferencePaneProvider)

public:
    QList<QObject *> preferencePanes() override
    {
        if (!mPane)
            mPane = new UpdatesPane(this);
        return {mPane.data()};
    }

private:
    QPointer<UpdatesPane> mPane;
};

#include "UpdatesPanePlugin.moc"
