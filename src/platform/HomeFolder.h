// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

// A path with a leading "~" or "~/…" standing for the home folder (`home`, the user's own when empty), or
// "~name/…" for another user's home folder. Any other path, and one naming an unknown user, comes back as it
// is.
QString expandTildeInPath(const QString &path, const QString &home = QString());
