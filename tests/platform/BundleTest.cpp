// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/Bundle.h"
#include "TestSupport.h"
#include "platform/PropertyList.h"

#include <QDir>
#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace {

using corvex::test::home;
using corvex::test::writeFile;

QString makeBundle(const QString &path, const QVariantMap &info)
{
    writeFile(path + u"/Contents/Info.plist"_s, PropertyList::serialize(info, PropertyList::Format::Xml));
    return path;
}

TEST(BundleTest, ReadsTheInfoDictionary)
{
    const QString path =
        makeBundle(home() + u"/Apps/Viewer.app"_s, {{"CFBundleIdentifier", "org.example.viewer"},
                                                    {"CFBundleVersion", "312"},
                                                    {"CFBundleShortVersionString", "3.1.2"},
                                                    {"CFBundleName", "Viewer"},
                                                    {"CFBundleExecutable", "viewer-bin"},
                                                    {"LSUIElement", true}});
    const Bundle bundle(path + QLatin1Char('/'));
    ASSERT_TRUE(bundle.isValid());
    EXPECT_EQ(bundle.bundlePath(), path);
    EXPECT_EQ(bundle.bundleIdentifier(), "org.example.viewer");
    EXPECT_EQ(bundle.bundleVersion(), "312");
    EXPECT_EQ(bundle.shortVersionString(), "3.1.2");
    EXPECT_EQ(bundle.bundleName(), "Viewer");
    EXPECT_EQ(bundle.executablePath(), path + "/Contents/MacOS/viewer-bin");
    EXPECT_EQ(bundle.resourcePath(), path + "/Contents/Resources");
    EXPECT_EQ(bundle.objectForInfoDictionaryKey("LSUIElement"), QVariant(true));
    EXPECT_FALSE(bundle.objectForInfoDictionaryKey("Missing").isValid());
}

TEST(BundleTest, MissingOrMistypedValues)
{
    const QString path = makeBundle(home() + u"/Apps/My.Tool.app"_s,
                                    {{"CFBundleIdentifier", 42}, {"CFBundleVersion", QVariantList{"1"}}});
    const Bundle bundle(path);
    ASSERT_TRUE(bundle.isValid());
    EXPECT_TRUE(bundle.bundleIdentifier().isNull());
    EXPECT_TRUE(bundle.bundleVersion().isNull());
    EXPECT_TRUE(bundle.shortVersionString().isNull());
    // Without "CFBundleExecutable" the executable is named after the bundle.
    EXPECT_EQ(bundle.executablePath(), path + "/Contents/MacOS/My.Tool");
}

TEST(BundleTest, WhatIsNotABundle)
{
    // Right name, no Info.plist.
    QDir().mkpath(home() + "/Apps/Empty.app/Contents");
    EXPECT_FALSE(Bundle::isBundleFolder(home() + "/Apps/Empty.app"));
    EXPECT_FALSE(Bundle(home() + "/Apps/Empty.app").isValid());
    // Info.plist, wrong name.
    makeBundle(home() + "/Apps/NotAnApp", {{"CFBundleIdentifier", "x"}});
    EXPECT_FALSE(Bundle::isBundleFolder(home() + "/Apps/NotAnApp"));
    // A file named like a bundle.
    writeFile(home() + "/Apps/File.app", "x");
    EXPECT_FALSE(Bundle::isBundleFolder(home() + "/Apps/File.app"));
    // An Info.plist that is not a dictionary or not a property list.
    writeFile(home() + "/Apps/Array.app/Contents/Info.plist",
              PropertyList::serialize(QVariantList{"a"}, PropertyList::Format::Xml));
    EXPECT_FALSE(Bundle(home() + "/Apps/Array.app").isValid());
    writeFile(home() + "/Apps/Garbage.app/Contents/Info.plist", "not a plist");
    EXPECT_FALSE(Bundle(home() + "/Apps/Garbage.app").isValid());
    const Bundle invalid;
    EXPECT_TRUE(invalid.executablePath().isNull());
    EXPECT_TRUE(invalid.resourcePath().isNull());
}

TEST(BundleTest, TheInnermostBundleAPathLiesIn)
{
    const QString outer =
        makeBundle(home() + "/Apps/Outer.app", {{"CFBundleIdentifier", "org.example.outer"}});
    const QString inner =
        makeBundle(outer + "/Contents/Helpers/Inner.app", {{"CFBundleIdentifier", "org.example.inner"}});
    writeFile(inner + "/Contents/MacOS/Inner", "#!/bin/sh\n");

    EXPECT_EQ(Bundle::bundlePathContainingPath(inner + "/Contents/MacOS/Inner"), inner);
    EXPECT_EQ(Bundle::bundleContainingPath(inner + "/Contents/MacOS/Inner").bundleIdentifier(),
              "org.example.inner");
    EXPECT_EQ(Bundle::bundlePathContainingPath(outer + "/Contents/Helpers"), outer);
    EXPECT_EQ(Bundle::bundlePathContainingPath(outer), outer);
    // Paths that need cleaning and paths that do not exist yet still find the folder they lie in.
    EXPECT_EQ(Bundle::bundlePathContainingPath(inner + "/Contents/../Contents/MacOS/./Inner"), inner);
    EXPECT_EQ(Bundle::bundlePathContainingPath(outer + "/Contents/Resources/none/yet.txt"), outer);
    EXPECT_TRUE(Bundle::bundlePathContainingPath(home() + "/Apps").isNull());
    EXPECT_TRUE(Bundle::bundlePathContainingPath(QString()).isNull());
    EXPECT_FALSE(Bundle::bundleContainingPath("/usr/bin/env").isValid());
    EXPECT_FALSE(Bundle::mainBundle().isValid()) << "the test program lies in no bundle";
}

} // namespace
