// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/RunningApplications.h"

#include <QList>
#include <QString>
#include <QStringList>
#include <functional>

// What the alert offering the move says, and what the user answered.
struct PFMoveApplicationAlertRequest
{
    QString title;
    QString informativeText;
    bool showsSuppressionButton = true;
};

struct PFMoveApplicationAlertAnswer
{
    bool move = false;               // the first button ("Move to Applications Folder") was chosen
    bool suppressionChecked = false; // "Do not show this message again" was ticked
};

// Everything the move into an Applications folder reads from and does to the world outside it: the folders,
// the programs it runs, the alerts, the delegate's operations, ending the process. systemEnvironment() is the
// real one; a test replaces the parts it stands in for.
class PFMoveApplicationEnvironment
{
public:
    // The environment of this process: the main bundle, ~/Applications and /opt/Applications, the XDG
    // download folder, pkexec, the Trash, modal alerts, the delegate actions set with setDelegateActions().
    static PFMoveApplicationEnvironment systemEnvironment();

    // The application delegate's quitCorvexAgent and quitOtherCorvexs, which the move calls; set once by the
    // application before it runs the move.
    static void setDelegateActions(std::function<void()> quitCorvexAgent,
                                   std::function<void()> quitOtherCorvexs);

    QString bundlePath;                       // the running bundle
    QString userApplicationsDirectory;        // the user's own Applications folder
    QStringList localApplicationsDirectories; // the machine's Applications folders, the last one the target
    QStringList otherApplicationsDirectories; // further Applications folders that are never targets
    QStringList downloadsDirectories;         // folders that downloads land in
    QStringList diskImageMountRoots;          // where removable media are mounted ("/media/")
    QString launcherDirectory;                // where the desktop's launcher entries live (user's)
    QString autostartDirectory;               // where the autostart entries live
    QString privilegeProgram;                 // runs a command as administrator: pkexec
    QString shell;                            // "/bin/sh"
    qint64 processId = 0;                     // this process

    std::function<bool()> isAlertSuppressed;
    std::function<void()> suppressAlert;
    std::function<PFMoveApplicationAlertAnswer(const PFMoveApplicationAlertRequest &request)> runAlert;
    std::function<void(const QString &title)> runFailureAlert;
    std::function<QList<RunningApplication>()> runningApplications;
    std::function<bool(const QString &path)> moveToTrash;
    // Starts a program without waiting for it; false when it could not be started.
    std::function<bool(const QString &program, const QStringList &arguments)> startDetached;
    std::function<void()> quitCorvexAgent;
    std::function<void()> quitOtherCorvexs;
    // Ends the process; a stand-in that returns makes the routine return.
    std::function<void(int status)> exitProcess;
    // One line of the plain system log (stderr).
    std::function<void(const QString &line)> log;
};
