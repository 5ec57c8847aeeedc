// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QVariantMap>

// The factory defaults of the shared domain's preferences: the registration domain of the standard
// preferences, and the values "Reset Preferences" writes back. Twenty keys.
QVariantMap factoryDefaults();
