// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/SUUpdateArchive.h"
#include "SUTestSupport.h"
#include "core/SUErrors.h"

#include <QFileInfo>
#include <csignal>
#include <gtest/gtest.h>
#include <sys/resource.h>

namespace {

using corvex::test::home;
using corvex::test::writeFile;

// A fresh empty folder to unpack into, and the archive file.
struct Unpacking
{
    QString folder;
    QString archive;
};

Unpacking prepare(const QString &name, const QByteArray &archiveBytes)
{
    const QString root = home() + "/unpack/" + name;
    QDir().mkpath(root + "/into");
    return {root + "/into", writeFile(root + "/archive.tar.xz", archiveBytes)};
}

bool isEmptyFolder(const QString &path)
{
    return QDir(path).isEmpty(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot);
}

TEST(SUUpdateArchiveTest, WhichPathsStayInside)
{
    const struct
    {
        const char *path;
        const char *link; // null: the path alone
        bool contained;
    } cases[] = {
        {"Corvex.app/Contents/Info.plist", nullptr, true},
        {"./Corvex.app", nullptr, true},
        {"Corvex.app/../Corvex.app/x", nullptr, true},
        {"../x", nullptr, false},
        {"Corvex.app/../../x", nullptr, false},
        {"/etc/passwd", nullptr, false},
        {"", nullptr, false},
        {"Corvex.app/Contents/Resources/current", "../Info.plist", true},
        {"Corvex.app/Contents/link", "../../other.app", true},
        {"Corvex.app/Contents/link", "../../../outside", false},
        {"Corvex.app/link", "/usr/bin/sh", false},
        {"top-link", "..", false},
    };
    for (const auto &c : cases) {
        const bool contained = c.link ? SUUpdateArchive::isContainedLink(c.path, c.link)
                                      : SUUpdateArchive::isContainedPath(c.path);
        EXPECT_EQ(contained, c.contained) << c.path << " -> " << (c.link ? c.link : "");
    }
}

TEST(SUUpdateArchiveTest, UnpacksABundleWithItsModesAndLinksIntoAnEmptyFolderOnly)
{
    const Unpacking u = prepare("good", sutest::makeArchive(sutest::bundleEntries("2.1.0")));
    writeFile(u.folder + "/keep.txt", "mine");
    EXPECT_FALSE(SUUpdateArchive::unpack(u.archive, u.folder));
    EXPECT_EQ(corvex::test::readFile(u.folder + "/keep.txt"), "mine");
    ASSERT_TRUE(QFile::remove(u.folder + "/keep.txt"));

    QString bundle;
    CorvexError error;
    ASSERT_TRUE(SUUpdateArchive::unpack(u.archive, u.folder, &bundle, &error))
        << error.localizedDescription().toStdString();
    EXPECT_EQ(bundle, u.folder + "/Corvex.app");
    const QFileInfo executable(bundle + "/Contents/MacOS/Corvex");
    EXPECT_TRUE(executable.isExecutable());
    const QFileInfo link(bundle + "/Contents/Resources/current");
    EXPECT_TRUE(link.isSymLink());
    EXPECT_EQ(link.symLinkTarget(), bundle + "/Contents/Info.plist");
    EXPECT_TRUE(QFile::exists(bundle + "/Contents/Info.plist"));
}

TEST(SUUpdateArchiveTest, RefusesUnsafeOrWrongArchivesAndLeavesNothing)
{
    const QList<sutest::Entry> app = sutest::bundleEntries("2.1.0");
    const struct
    {
        const char *name;
        QByteArray archive;
        const char *expected;
    } cases[] = {
        {"dotdot", sutest::makeArchive(app + QList<sutest::Entry>{{"Corvex.app/../../evil", "x"}}),
         "outside"},
        {"link-out", sutest::makeArchive(app + QList<sutest::Entry>{{"Corvex.app/l", {}, "/etc"}}),
         "points outside"},
        {"two-tops", sutest::makeArchive(app + QList<sutest::Entry>{{"README", "x"}}),
         "one application bundle"},
        {"no-app", sutest::makeArchive({{"Corvex/", {}}, {"Corvex/x", "y"}}), "one application bundle"},
        {"empty", sutest::makeArchive({}), "empty"},
        {"not-archive", QByteArray("this is a web page, not an archive"), "damaged"},
        {"truncated", sutest::makeArchive(app).left(200), "damaged"},
    };
    for (const auto &c : cases) {
        const Unpacking u = prepare(c.name, c.archive);
        CorvexError error;
        EXPECT_FALSE(SUUpdateArchive::unpack(u.archive, u.folder, nullptr, &error)) << c.name;
        EXPECT_TRUE(suErrorIs(error, SUError::UnarchivingError)) << c.name;
        EXPECT_THAT(error.localizedDescription().toStdString(), testing::HasSubstr(c.expected)) << c.name;
        EXPECT_TRUE(isEmptyFolder(u.folder)) << c.name;
    }
}

TEST(SUUpdateArchiveTest, AWriteThatFailsPartWayLeavesNothing)
{
    // A file-size limit makes the disk refuse the large file, as a full disk would.
    QList<sutest::Entry> entries = sutest::bundleEntries("2.1.0");
    QByteArray large(3 * 1024 * 1024, '\0');
    for (qsizetype i = 0; i < large.size(); ++i)
        large[i] = char((i * 7919) >> 3);
    entries.append({"Corvex.app/Contents/Resources/large.bin", large});
    const Unpacking u = prepare("full", sutest::makeArchive(entries));

    rlimit previous{};
    getrlimit(RLIMIT_FSIZE, &previous);
    const auto previousHandler = std::signal(SIGXFSZ, SIG_IGN);
    rlimit limited = previous;
    limited.rlim_cur = 1024 * 1024;
    ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &limited), 0);
    CorvexError error;
    const bool unpacked = SUUpdateArchive::unpack(u.archive, u.folder, nullptr, &error);
    setrlimit(RLIMIT_FSIZE, &previous);
    std::signal(SIGXFSZ, previousHandler);

    EXPECT_FALSE(unpacked);
    EXPECT_THAT(error.localizedDescription().toStdString(), testing::HasSubstr("cannot be unpacked"));
    EXPECT_TRUE(isEmptyFolder(u.folder));
}

} // namespace
