// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

class PFMoveApplicationEnvironment;

// Offers to move the running bundle into an Applications folder (~/Applications when it already holds an
// application, /opt/Applications otherwise) when it runs from anywhere else, unless the user asked never to
// be asked again ("moveToApplicationsFolderAlertSuppress"). When the user agrees it quits the agent, copies
// the bundle there (through pkexec when the folder is not writable), moves the old copy to the Trash, points
// the launcher and autostart entries at the new place, relaunches from there once this process has ended,
// and ends this process. An equal or newer copy already running from there is switched to instead. On a
// failure it says so in an alert and returns: the application goes on from where it is.
//
// Call it once, when launching has finished, right after the launch log line and before any other launch
// work; set the delegate actions first (PFMoveApplicationEnvironment::setDelegateActions).
void PFMoveToApplicationsFolderIfNecessary();

// The same with the outside world given: the folders, programs, alerts and actions it uses.
void PFMoveToApplicationsFolderIfNecessary(const PFMoveApplicationEnvironment &environment);
