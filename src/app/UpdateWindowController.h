// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/SUAppcastItem.h"

#include <QDialog>

class QDialogButtonBox;
class QLabel;
class QProgressBar;
class QPushButton;
class QStackedWidget;
class QTextBrowser;

// The window that offers a newer version: the versions, the release notes, and Install Update / Remind Me
// Later / Skip This Version. Once installing, it shows the download's progress with Cancel, then the
// checking and installing steps.
class UpdateWindowController : public QDialog
{
    Q_OBJECT

public:
    // The offer of the item to a user who runs the version shown as currentVersion.
    UpdateWindowController(const SUAppcastItem &item, const QString &currentVersion,
                           QWidget *parent = nullptr);

    const SUAppcastItem &item() const { return mItem; }

    // Switches to the progress page: bytes received of the total (-1: unknown).
    void showDownloadProgress(qint64 received, qint64 total);
    // Switches to the progress page with a step that has no measure ("Verifying update…"). Until the step
    // is the last one, the window cannot be closed: the steps cannot be stopped half-way.
    void showStep(const QString &text, bool last = false);
    // Back to the offer with the buttons enabled (after a cancelled download).
    void showOffer();

    QString headlineText() const;
    QString releaseNotesText() const;
    QString statusText() const;

Q_SIGNALS:
    void installRequested();
    void remindLaterRequested();
    void skipRequested();
    void cancelRequested();

protected:
    void reject() override;

private:
    QWidget *makeOfferButtons();
    QWidget *makeProgressPage();

    SUAppcastItem mItem;
    QLabel *mHeadlineLabel;
    QLabel *mInfoLabel;
    QTextBrowser *mReleaseNotes;
    QStackedWidget *mBottom;
    QPushButton *mInstallButton = nullptr;
    QProgressBar *mProgressBar = nullptr;
    QLabel *mStatusLabel = nullptr;
    QPushButton *mCancelButton = nullptr;
    bool mClosable = true;
};
