// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "agent/ScreenshotMatcher.h"

#include <gtest/gtest.h>

namespace {

TEST(ScreenshotMatcherTest, NameFolderAndExtensionDecide)
{
    const ScreenshotMatcher byName(QStringLiteral("/home/u/Desktop/"), QStringLiteral("Screenshot"), false);
    EXPECT_EQ(byName.folder(), QStringLiteral("/home/u/Desktop"));
    EXPECT_TRUE(byName.matches(QStringLiteral("/home/u/Desktop/Screenshot 2026.png")));
    EXPECT_TRUE(byName.matches(QStringLiteral("/home/u/Desktop/screenshot from today.JPEG")));
    for (const char *ext : {"png", "jpg", "jpeg", "tif", "tiff", "gif", "bmp", "pdf"})
        EXPECT_TRUE(byName.matches(QStringLiteral("/home/u/Desktop/Screenshot.") + QLatin1String(ext)))
            << ext;
    EXPECT_FALSE(byName.matches(QStringLiteral("/home/u/Desktop/Holiday.png")));
    EXPECT_FALSE(byName.matches(QStringLiteral("/home/u/Desktop/Screenshot.webp")));
    EXPECT_FALSE(byName.matches(QStringLiteral("/home/u/Desktop/Screenshot")));
    EXPECT_FALSE(byName.matches(QStringLiteral("/home/u/Desktop/.Screenshot.png")));
    EXPECT_FALSE(byName.matches(QStringLiteral("/home/u/Desktop/sub/Screenshot.png")));
    EXPECT_FALSE(byName.matches(QStringLiteral("/home/u/Screenshot.png")));

    const ScreenshotMatcher dedicated(QStringLiteral("/home/u/Pictures/Bildschirmfotos"),
                                      QStringLiteral("Bildschirmfoto"), true);
    EXPECT_TRUE(dedicated.matches(QStringLiteral("/home/u/Pictures/Bildschirmfotos/anything.png")));
    EXPECT_FALSE(dedicated.matches(QStringLiteral("/home/u/Pictures/Bildschirmfotos/anything.txt")));

    const ScreenshotMatcher unnamed(QStringLiteral("/shots"), QString(), false);
    EXPECT_TRUE(unnamed.matches(QStringLiteral("/shots/2026-01-01_10-00.png")));
    EXPECT_FALSE(ScreenshotMatcher().matches(QStringLiteral("/Screenshot.png")));
    EXPECT_NE(byName, dedicated);
    EXPECT_EQ(byName,
              ScreenshotMatcher(QStringLiteral("/home/u/Desktop"), QStringLiteral("Screenshot"), false));
}

} // namespace
