// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QList>
#include <QMessageBox>
#include <functional>

class CorvexError;
class QPushButton;

// An alert: a message, an informative text and buttons in the order they were added, answered with the
// result code of the button (1000 for the first, 1001 for the second, ...). The first button is the default
// one (Return); a button titled "Cancel" is pressed by Escape. As a sheet it is window-modal on its window
// and reports its answer through a completion callback.
class QZAlert : public QMessageBox
{
    Q_OBJECT

public:
    enum AlertStyle { WarningAlertStyle, InformationalAlertStyle, CriticalAlertStyle };

    static constexpr qint64 NSAlertFirstButtonReturn = 1000;
    static constexpr qint64 NSAlertSecondButtonReturn = 1001;
    static constexpr qint64 NSAlertThirdButtonReturn = 1002;
    // The result when the alert was closed without a button.
    static constexpr qint64 NSModalResponseAbort = -1001;

    explicit QZAlert(QWidget *parent = nullptr);

    void setMessageText(const QString &text) { setText(text); }
    QString messageText() const { return text(); }
    void setAlertStyle(AlertStyle style);
    AlertStyle alertStyle() const { return mAlertStyle; }

    // Adds a button after the others and returns it.
    QPushButton *addButtonWithTitle(const QString &title);
    const QList<QPushButton *> &buttons() const { return mButtons; }
    // The result code of a button of this alert, or NSModalResponseAbort.
    qint64 resultCodeForButton(const QAbstractButton *button) const;

    // Shows the alert as a window-modal sheet on the window (or as an application-modal dialog without one)
    // and returns at once. The callback is called exactly once, after the sheet has ended, with the result
    // code; the alert then deletes itself.
    void qzBeginSheetModalForWindow(QWidget *window,
                                    std::function<void(qint64 returnCode)> completionHandler);

    // Presents an error as a sheet on the window: its description, its recovery suggestion (or failure
    // reason) and an OK button. The callback learns whether the user recovered from it, which these errors
    // never offer, so it is told false.
    static void presentError(const CorvexError &error, QWidget *window,
                             std::function<void(bool didRecover)> didPresent = {});

    // The alert showing as a sheet on the window, if any (the newest one).
    static QZAlert *sheetOfWindow(QWidget *window);

private:
    QList<QPushButton *> mButtons;
    AlertStyle mAlertStyle = WarningAlertStyle;
    bool mEnded = false;
};
