// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/ApplicationMenus.h"

#include <QString>
#include <optional>

// The commands of the "qzcv" URL scheme: "qzcv://about", "//prefs", "//prefs/reset", "//feedback" and
// "//checkForUpdate", compared exactly (letter case included), each naming an application-level action.
class URLDispatch
{
public:
    URLDispatch() = delete;

    // Whether the text's scheme (before the first colon) is exactly "qzcv".
    static bool isCorvexURL(const QString &urlString);
    // The action a "qzcv" URL names; none for any other text.
    static std::optional<ApplicationMenus::Action> actionForURL(const QString &url);
};
