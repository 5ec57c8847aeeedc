// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
//
// A test bundle with two panes: "Alpha" (tall, fixed size) and "Beta" (short, resizable vertically), and one
// object that is no pane.
#include "TestPane.h"
#include "preferences/SS_PreferencePaneProvider.h"

using namespace Qt::StringLiterals;

class TestPaneProvider : public QObject, public SS_PreferencePaneProvider
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID "com.ostrel.Corvex.SS_PreferencePaneProvider/1.0")
    Q_INTERFACES(SS_PreferencePaneProvider)

public:
    QList<QObject *> preferencePanes() override
    {
        if (mPanes.isEmpty())
            mPanes = {new TestPane(u"Alpha"_s, QSize(420, 380), false, this),
                      new TestPane(u"Beta"_s, QSize(420, 140), true, this), new QObject(this)};
        return mPanes;
    }

private:
    QList<QObject *> mPanes;
};

#include "TestPaneProvider.moc"
