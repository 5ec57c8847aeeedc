// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "BasicPreferencePane.h"

#include <QPointer>

class FavoriteFoldersEditor;
class QLabel;

// The General pane: the renaming window, start at log-in, the tray icon, the agent, where the desktop saves
// screenshots, and the favourite folders.
class GeneralPane : public BasicPreferencePane
{
    Q_OBJECT

public:
    explicit GeneralPane(QObject *parent);

    bool respondsToPaneDidLoad() const override { return true; }
    void paneDidLoad() override;

    // "~/Pictures/Screenshots as PNG (GNOME Screenshot)": where and in which format screenshots are saved,
    // and whose settings say so.
    static QString screenshotServiceDescription();

protected:
    QWidget *makeView() override;

private:
    QPointer<FavoriteFoldersEditor> mFavorites;
    QPointer<QLabel> mScreenshotService;
};
