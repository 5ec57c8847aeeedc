// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
//
// A test bundle whose principal class loads but provides no panes.
#include <QObject>

class NotAPaneProvider : public QObject
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID "com.ostrel.Corvex.SomethingElse/1.0")
};

#include "NotAPaneProvider.moc"
