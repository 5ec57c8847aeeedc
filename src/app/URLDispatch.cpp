// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/URLDispatch.h"

bool URLDispatch::isCorvexURL(const QString &urlString)
{
    // The scheme is the text before the first colon, compared exactly ("QZCV:" is another scheme).
    const qsizetype colon = urlString.indexOf(u':');
    return colon > 0 && urlString.left(colon) == u"qzcv";
}

std::optional<ApplicationMenus::Action> URLDispatch::actionForURL(const QString &url)
{
    using Action = ApplicationMenus::Action;
    if (!isCorvexURL(url))
        return std::nullopt;
    const QString specifier = url.mid(url.indexOf(u':') + 1);
    if (specifier == u"//about")
        return Action::About;
    if (specifier == u"//prefs")
        return Action::Preferences;
    if (specifier == u"//prefs/reset")
        return Action::ResetPreferences;
    if (specifier == u"//feedback")
        return Action::SendFeedback;
    if (specifier == u"//checkForUpdate")
        return Action::CheckForUpdates;
    return std::nullopt;
}
