// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
//
// A test bundle with one pane, "Solo".
#include "TestPane.h"
#include "preferences/SS_PreferencePaneProvider.h"

using namespace Qt::StringLiterals;

class SoloPaneProvider : public QObject, public SS_PreferencePaneProvider
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID "com.ostrel.Corvex.SS_PreferencePaneProvider/1.0")
    Q_INTERFACES(SS_PreferencePaneProvider)

public:
    QList<QObject *> preferencePanes() override
    {
        if (!mPane)
            mPane = new TestPane(u"Solo"_s, QSize(300, 200), false, this);
        return {mPane};
    }

private:
    QObject *mPane = nullptr;
};

#include "SoloPaneProvider.moc"
