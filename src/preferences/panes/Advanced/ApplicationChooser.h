// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QComboBox>
#include <QIcon>
#include <QList>
#include <QString>

// A chooser of the application that opens new screenshots ("openWithBundleIdentifier"): the desktop's default
// image viewer and text editor (the platform ids "com.apple.Preview" and "com.apple.TextEdit"), then every
// installed application that opens PNG images, with its icon and name. The chosen desktop-file id is stored
// at once. A stored application that is no longer installed is shown as missing, never replaced.
class ApplicationChooser : public QComboBox
{
    Q_OBJECT

public:
    struct Application
    {
        QString identifier; // the desktop-file id, as GIO gives it ("org.gnome.Loupe.desktop")
        QString name;
        QIcon icon;
    };

    explicit ApplicationChooser(QWidget *parent = nullptr);

    // The installed applications that open PNG images, by name.
    static QList<Application> imageApplications();
    // The same application id, with or without ".desktop".
    static bool sameIdentifier(const QString &a, const QString &b);

    // Shows the stored identifier again.
    void showStoredIdentifier();

private:
    void chosen(int index);

    int mMissingIndex = -1;
};
