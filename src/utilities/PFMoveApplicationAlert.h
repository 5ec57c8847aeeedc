// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "utilities/PFMoveApplicationEnvironment.h"

class QZAlert;

// The two alerts of the move into an Applications folder: the offer ("Move to Applications Folder" as the
// default button, "Do Not Move" on Escape, a suppression check box) and the failure notice.
class PFMoveApplicationAlert
{
public:
    PFMoveApplicationAlert() = delete;

    // The offer, built but not shown. The caller owns it. Its buttons answer NSAlertFirstButtonReturn (move)
    // and NSAlertSecondButtonReturn (do not move); checkBox() is the suppression check box when it is shown.
    static QZAlert *makeAlert(const PFMoveApplicationAlertRequest &request);

    // Brings the application to the front, runs the offer modally and returns the answer.
    static PFMoveApplicationAlertAnswer run(const PFMoveApplicationAlertRequest &request);

    // Runs the plain failure alert with this title modally.
    static void runFailure(const QString &title);
};
