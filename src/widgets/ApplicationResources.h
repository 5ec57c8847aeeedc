// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

class QApplication;

// Installs the user's language from the bundle's translations (and Qt's own) and makes Corvex's icon the icon
// of every window. `resources` is the bundle's resource folder.
void installApplicationResources(QApplication &application, const QString &resources);
