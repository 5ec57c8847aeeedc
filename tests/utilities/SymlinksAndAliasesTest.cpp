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

void PrintTo(const QString &text, std::ostream *stream)
{
    *stream << '"' << text.toStdString() << '"';
}

namespace {

class SymlinksAndAliasesTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        static int run = 0;
        // The real location of the test home, so that expected results need no resolution of their own.
        mRoot = QFileInfo(corvex::test::home()).canonicalFilePath() + QStringLiteral("/links-%1").arg(++run);
        ASSERT_TRUE(QDir().mkpath(mRoot + QStringLiteral("/real/inner")));
        corvex::test::writeFile(mRoot + QStringLiteral("/real/inner/shot.png"), "png");
    }
    void link(const QString &target, const QString &at)
    {
        ASSERT_EQ(::symlink(QFile::encodeName(target).constData(), QFile::encodeName(mRoot + at).constData()),
                  0);
    }
    QString mRoot;
};

TEST_F(SymlinksAndAliasesTest, WholePathResolution)
{
    // A link in the middle of the path is replaced by its target; the rest is kept.
    link(mRoot + QStringLiteral("/real"), QStringLiteral("/middle"));
    EXPECT_EQ(mg_stringByResolvingSymlinksAndAliases(mRoot + QStringLiteral("/middle/inner/shot.png")),
              mRoot + QStringLiteral("/real/inner/shot.png"));

    // A relative target with ".." is joined to the link's folder and standardised.
    link(QStringLiteral("../real/inner"), QStringLiteral("/real/up"));
    EXPECT_EQ(mg_stringByResolvingSymlinksAndAliases(mRoot + QStringLiteral("/real/up/shot.png")),
              mRoot + QStringLiteral("/real/inner/shot.png"));

    // A chain of links is followed to its end.
    link(mRoot + QStringLiteral("/middle"), QStringLiteral("/chain"));
    EXPECT_EQ(mg_stringByResolvingSymlinksAndAliases(mRoot + QStringLiteral("/chain/inner")),
              mRoot + QStringLiteral("/real/inner"));

    // A directory without links comes back as it is (a trailing slash and "." dropped).
    EXPECT_EQ(mg_stringByResolvingSymlinksAndAliases(mRoot + QStringLiteral("/real/./inner/")),
              mRoot + QStringLiteral("/real/inner"));
    EXPECT_EQ(mg_stringByResolvingSymlinksAndAliases(QStringLiteral("/")), QStringLiteral("/"));
}

TEST_F(SymlinksAndAliasesTest, FailuresGiveNothing)
{
    EXPECT_EQ(mg_stringByResolvingSymlinksAndAliases(QStringLiteral("a/b")), std::nullopt);
    EXPECT_EQ(mg_stringByResolvingSymlinksAndAliases(mRoot + QStringLiteral("/real/missing.png")),
              std::nullopt);
    EXPECT_EQ(mg_stringByResolvingSymlinksAndAliases(mRoot + QStringLiteral("/missing/inner")), std::nullopt);
    link(mRoot + QStringLiteral("/nowhere"), QStringLiteral("/dangling"));
    EXPECT_EQ(mg_stringByResolvingSymlinksAndAliases(mRoot + QStringLiteral("/dangling")), std::nullopt);
    // A cycle of links ends instead of running for ever.
    link(mRoot + QStringLiteral("/loop-b"), QStringLiteral("/loop-a"));
    link(mRoot + QStringLiteral("/loop-a"), QStringLiteral("/loop-b"));
    EXPECT_EQ(mg_stringByIterativelyResolvingSymlinkOrAlias(mRoot + QStringLiteral("/loop-a")), std::nullopt);
}

TEST_F(SymlinksAndAliasesTest, SingleSteps)
{
    link(QStringLiteral("inner/shot.png"), QStringLiteral("/real/relative"));
    link(QStringLiteral("/absolute/elsewhere"), QStringLiteral("/absolute"));
    const QString file = mRoot + QStringLiteral("/real/inner/shot.png");

    EXPECT_EQ(mg_stringByConditionallyResolvingSymlink(mRoot + QStringLiteral("/real/relative")), file);
    EXPECT_EQ(mg_stringByConditionallyResolvingSymlink(mRoot + QStringLiteral("/absolute")),
              QStringLiteral("/absolute/elsewhere"));
    EXPECT_EQ(mg_stringByConditionallyResolvingSymlink(file), std::nullopt);
    EXPECT_EQ(mg_stringByResolvingSymlink(file), file);
    EXPECT_EQ(mg_stringByResolvingSymlink(mRoot + QStringLiteral("/real/relative")), file);

    // No alias files exist here.
    EXPECT_EQ(mg_stringByConditionallyResolvingAlias(file), std::nullopt);
    EXPECT_EQ(mg_stringByResolvingAlias(file), file);
    EXPECT_EQ(mg_stringByIterativelyResolvingSymlinkOrAlias(file), file);
}

TEST_F(SymlinksAndAliasesTest, Standardisation)
{
    EXPECT_EQ(stringByStandardizingPath(QStringLiteral("~/Pictures//x/./")),
              QDir::homePath() + "/Pictures/x");
    EXPECT_EQ(stringByStandardizingPath(QStringLiteral("~")), QDir::homePath());
    EXPECT_EQ(stringByStandardizingPath(QStringLiteral("a/../b")), QStringLiteral("a/../b"));
    EXPECT_EQ(stringByStandardizingPath(QStringLiteral("/missing/one/../two")),
              QStringLiteral("/missing/two"));
    EXPECT_EQ(stringByStandardizingPath(QStringLiteral("/..")), QStringLiteral("/"));
    // ".." after a link leads to the link target's parent, as the kernel would take it.
    link(mRoot + QStringLiteral("/real/inner"), QStringLiteral("/deep"));
    EXPECT_EQ(stringByStandardizingPath(mRoot + QStringLiteral("/deep/../inner")), mRoot + "/real/inner");
}

} // namespace
