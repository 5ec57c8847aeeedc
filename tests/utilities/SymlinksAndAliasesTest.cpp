// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "utilities/SymlinksAndAliases.h"
#include "TestSupport.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <gtest/gtest.h>
#include <ostream>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {

class SymlinksAndAliasesTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        static int run = 0;
        // The real location of the test home, so that expected results need no resolution of their own.
        mRoot = QFileInfo(corvex::test::home()).canonicalFilePath() + u"/links-%1"_s.arg(++run);
        ASSERT_TRUE(QDir().mkpath(mRoot + u"/real/inner"_s));
        corvex::test::writeFile(mRoot + u"/real/inner/shot.png"_s, "png");
    }
    void link(const QString &target, const QString &at)
    {
        ASSERT_EQ(::symlink(QFile::encodeName(target).constData(), QFile::encodeName(mRoot + at).constData()),
                  0);
    }
    QString mRoot;
};

TEST_F(SymlinksAndAliasesTest, WholePathResolutionAndItsFailures)
{
    // A link in the middle of the path is replaced by its target; the rest is kept.
    link(mRoot + u"/real"_s, u"/middle"_s);
    EXPECT_EQ(mg_stringByResolvingSymlinksAndAliases(mRoot + u"/middle/inner/shot.png"_s),
              mRoot + u"/real/inner/shot.png"_s);

    // A relative target with ".." is joined to the link's folder and standardised.
    link(u"../real/inner"_s, u"/real/up"_s);
    EXPECT_EQ(mg_stringByResolvingSymlinksAndAliases(mRoot + u"/real/up/shot.png"_s),
              mRoot + u"/real/inner/shot.png"_s);

    // A chain of links is followed to its end.
    link(mRoot + u"/middle"_s, u"/chain"_s);
    EXPECT_EQ(mg_stringByResolvingSymlinksAndAliases(mRoot + u"/chain/inner"_s), mRoot + u"/real/inner"_s);

    // A directory without links comes back as it is (a trailing slash and "." dropped).
    EXPECT_EQ(mg_stringByResolvingSymlinksAndAliases(mRoot + u"/real/./inner/"_s), mRoot + u"/real/inner"_s);
    EXPECT_EQ(mg_stringByResolvingSymlinksAndAliases(u"/"_s), u"/"_s);

    // Failures give nothing.
    EXPECT_EQ(mg_stringByResolvingSymlinksAndAliases(u"a/b"_s), std::nullopt);
    EXPECT_EQ(mg_stringByResolvingSymlinksAndAliases(mRoot + u"/real/missing.png"_s), std::nullopt);
    EXPECT_EQ(mg_stringByResolvingSymlinksAndAliases(mRoot + u"/missing/inner"_s), std::nullopt);
    link(mRoot + u"/nowhere"_s, u"/dangling"_s);
    EXPECT_EQ(mg_stringByResolvingSymlinksAndAliases(mRoot + u"/dangling"_s), std::nullopt);
    // A cycle of links ends instead of running for ever.
    link(mRoot + u"/loop-b"_s, u"/loop-a"_s);
    link(mRoot + u"/loop-a"_s, u"/loop-b"_s);
    EXPECT_EQ(mg_stringByIterativelyResolvingSymlinkOrAlias(mRoot + u"/loop-a"_s), std::nullopt);
}

TEST_F(SymlinksAndAliasesTest, SingleStepsAndStandardisation)
{
    link(u"inner/shot.png"_s, u"/real/relative"_s);
    link(u"/absolute/elsewhere"_s, u"/absolute"_s);
    const QString file = mRoot + u"/real/inner/shot.png"_s;

    EXPECT_EQ(mg_stringByConditionallyResolvingSymlink(mRoot + u"/real/relative"_s), file);
    EXPECT_EQ(mg_stringByConditionallyResolvingSymlink(mRoot + u"/absolute"_s), u"/absolute/elsewhere"_s);
    EXPECT_EQ(mg_stringByConditionallyResolvingSymlink(file), std::nullopt);
    EXPECT_EQ(mg_stringByResolvingSymlink(file), file);
    EXPECT_EQ(mg_stringByResolvingSymlink(mRoot + u"/real/relative"_s), file);

    // No alias files exist here.
    EXPECT_EQ(mg_stringByConditionallyResolvingAlias(file), std::nullopt);
    EXPECT_EQ(mg_stringByResolvingAlias(file), file);
    EXPECT_EQ(mg_stringByIterativelyResolvingSymlinkOrAlias(file), file);

    // Standardisation.
    EXPECT_EQ(stringByStandardizingPath(u"~/Pictures//x/./"_s), QDir::homePath() + "/Pictures/x");
    EXPECT_EQ(stringByStandardizingPath(u"~"_s), QDir::homePath());
    EXPECT_EQ(stringByStandardizingPath(u"a/../b"_s), u"a/../b"_s);
    EXPECT_EQ(stringByStandardizingPath(u"/missing/one/../two"_s), u"/missing/two"_s);
    EXPECT_EQ(stringByStandardizingPath(u"/.."_s), u"/"_s);
    // ".." after a link leads to the link target's parent, as the kernel would take it.
    link(mRoot + u"/real/inner"_s, u"/deep"_s);
    EXPECT_EQ(stringByStandardizingPath(mRoot + u"/deep/../inner"_s), mRoot + "/real/inner");
}

} // namespace
