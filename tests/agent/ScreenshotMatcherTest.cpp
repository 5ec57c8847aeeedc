// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "agent/ScreenshotMatcher.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace {

TEST(ScreenshotMatcherTest, NameFolderAndExtensionDecide)
{
    const ScreenshotMatcher byName(u"/home/u/Desktop/"_s, u"Screenshot"_s, false);
    EXPECT_EQ(byName.folder(), u"/home/u/Desktop"_s);
    EXPECT_TRUE(byName.matches(u"/home/u/Desktop/Screenshot 2026.png"_s));
    EXPECT_TRUE(byName.matches(u"/home/u/Desktop/screenshot from today.JPEG"_s));
    for (const char *ext : {"png", "jpg", "jpeg", "tif", "tiff", "gif", "bmp", "pdf"})
        EXPECT_TRUE(byName.matches(u"/home/u/Desktop/Screenshot."_s + QLatin1String(ext))) << ext;
    EXPECT_FALSE(byName.matches(u"/home/u/Desktop/Holiday.png"_s));
    EXPECT_FALSE(byName.matches(u"/home/u/Desktop/Screenshot.webp"_s));
    EXPECT_FALSE(byName.matches(u"/home/u/Desktop/Screenshot"_s));
    EXPECT_FALSE(byName.matches(u"/home/u/Desktop/.Screenshot.png"_s));
    EXPECT_FALSE(byName.matches(u"/home/u/Desktop/sub/Screenshot.png"_s));
    EXPECT_FALSE(byName.matches(u"/home/u/Screenshot.png"_s));

    const ScreenshotMatcher dedicated(u"/home/u/Pictures/Bildschirmfotos"_s, u"Bildschirmfoto"_s, true);
    EXPECT_TRUE(dedicated.matches(u"/home/u/Pictures/Bildschirmfotos/anything.png"_s));
    EXPECT_FALSE(dedicated.matches(u"/home/u/Pictures/Bildschirmfotos/anything.txt"_s));

    const ScreenshotMatcher unnamed(u"/shots"_s, QString(), false);
    EXPECT_TRUE(unnamed.matches(u"/shots/2026-01-01_10-00.png"_s));
    EXPECT_FALSE(ScreenshotMatcher().matches(u"/Screenshot.png"_s));
    EXPECT_NE(byName, dedicated);
    EXPECT_EQ(byName, ScreenshotMatcher(u"/home/u/Desktop"_s, u"Screenshot"_s, false));
}

} // namespace
