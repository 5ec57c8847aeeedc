// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QDialog>

class QLabel;
class QProgressBar;
class QPushButton;

// The small updater window that shows one state at a time: checking (a moving progress bar and Cancel),
// "You're up to date!" (OK), or an error (OK).
class UpdateStatusWindow : public QDialog
{
    Q_OBJECT

public:
    explicit UpdateStatusWindow(QWidget *parent = nullptr);

    // "Checking for updates…" with a moving bar; Cancel emits cancelRequested().
    void showChecking();
    // "You're up to date!" with the running version.
    void showUpToDate(const QString &displayVersion);
    // "Update Error!" with the sentence.
    void showError(const QString &message);

    QString titleText() const;
    QString messageText() const;

Q_SIGNALS:
    void cancelRequested();

protected:
    // Escape or closing the window while checking cancels the check.
    void reject() override;

private:
    void setState(const QString &title, const QString &message, bool busy, const QString &buttonText);

    QLabel *mIconLabel;
    QLabel *mTitleLabel;
    QLabel *mMessageLabel;
    QProgressBar *mProgressBar;
    QPushButton *mButton;
    bool mBusy = false;
};
