// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

// The modules Corvex loads on first use live in the PlugIns folder of its bundle (Contents/PlugIns of
// Corvex.app). A program finds them from its own place: in the bundle (the application, the agent, `corvex`
// in Contents/Helpers) or, for a program of the build tree, in the bundle built beside it.
//
// The path of the module with the file name given, or an empty string when there is none.
QString bundlePlugInPath(const QString &fileName);
