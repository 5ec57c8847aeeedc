// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QObject>

class QCheckBox;
class QDialog;

// The start-at-login question: a small panel, run modally for the whole application, whose check box edits
// the preference "startAtLogIn" directly. Its only button ends the run; the answer is what the preference
// holds.
class UserConsentPanelController : public QObject
{
    Q_OBJECT

public:
    explicit UserConsentPanelController(QObject *parent = nullptr);
    ~UserConsentPanelController() override;

    static QString windowNibName() { return QStringLiteral("UserConsentPanel"); }

    // The panel (made on first use).
    QDialog *window();
    QCheckBox *startAtLogInCheckBox();

    // Centres the panel, runs it modally until okAction(), then orders it out. Returns the run's code (1).
    int runModal();
    // Ends the modal run with code 1.
    void okAction();

private:
    QDialog *mWindow = nullptr;
    QCheckBox *mStartAtLogInCheckBox = nullptr;
};
