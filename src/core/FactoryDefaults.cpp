// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/FactoryDefaults.h"
#include "foundation/PreferenceKeys.h"

#include <QString>

QVariantMap factoryDefaults()
{
    return QVariantMap{
        {kFirstRunVers2Key, true},
        {kHasAskedToStartAtLogInKey, false},
        {kStartAtLogInKey, true},
        {kAllowAgentToRunInBackgroundKey, true},
        {kShowMenuIconKey, true},
        {kGrayscaleMenuIconKey, false},
        {kUseLenientTimeParserKey, false},
        {kUseLastDirectoryAndExtensionValuesKey, false},
        {kQuitAppAfterLastWindowClosedKey, true},
        {kHideExtensionKey, true},
        {kAutoRenameKey, false},
        {kAutoRenameCountKey, qint64(0)},
        {kAutoReformatKey, false},
        {kAutoReformatExtensionKey, QStringLiteral("jpg")},
        {kAutoMoveKey, false},
        {kOpenWithKey, false},
        {kOpenWithBundleIdentifierKey, QStringLiteral("com.apple.Preview")},
        {kShowCorvexWindowKey, true},
        {kLogFontNameKey, QStringLiteral("Monaco")},
        {kLogFontSizeKey, qint64(9)},
    };
}
