// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "FactoryDefaults.h"

#include <QString>

QVariantMap factoryDefaults()
{
    return QVariantMap{
        {QStringLiteral("firstRunVers2"), true},
        {QStringLiteral("hasAskedToStartAtLogIn"), false},
        {QStringLiteral("startAtLogIn"), true},
        {QStringLiteral("allowAgentToRunInBackground"), true},
        {QStringLiteral("showMenuIcon"), true},
        {QStringLiteral("grayscaleMenuIcon"), false},
        {QStringLiteral("useLenientTimeParser"), false},
        {QStringLiteral("useLastDirectoryAndExtensionValues"), false},
        {QStringLiteral("quitAppAfterLastWindowClosed"), true},
        {QStringLiteral("hideExtension"), true},
        {QStringLiteral("autoRename"), false},
        {QStringLiteral("autoRenameCount"), qint64(0)},
        {QStringLiteral("autoReformat"), false},
        {QStringLiteral("autoReformatExtension"), QStringLiteral("jpg")},
        {QStringLiteral("autoMove"), false},
        {QStringLiteral("openWith"), false},
        {QStringLiteral("openWithBundleIdentifier"), QStringLiteral("com.apple.Preview")},
        {QStringLiteral("showCorvexWindow"), true},
        {QStringLiteral("logFontName"), QStringLiteral("Monaco")},
        {QStringLiteral("logFontSize"), qint64(9)},
    };
}
