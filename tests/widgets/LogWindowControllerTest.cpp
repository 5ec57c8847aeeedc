// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "widgets/LogWindowController.h"
#include "TestSupport.h"
#include "foundation/Notifications.h"
#include "platform/DistributedNotificationCenter.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QFontDatabase>
#include <QPlainTextEdit>
#include <QScrollBar>
#include <QStandardPaths>
#include <cmath>
#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

using corvex::test::spin;
using corvex::test::waitUntil;

namespace {

class LogWindowControllerTest : public testing::Test
{
protected:
    void SetUp() override
    {
        QDir(QFileInfo(LogWindowController::logFilePath()).absolutePath()).removeRecursively();
    }
    static void append(const QByteArray &bytes)
    {
        QDir().mkpath(QFileInfo(LogWindowController::logFilePath()).absolutePath());
        QFile file(LogWindowController::logFilePath());
        ASSERT_TRUE(file.open(QIODevice::Append));
        file.write(bytes);
    }
    static QByteArray lines(int from, int count)
    {
        QByteArray bytes;
        for (int i = from; i < from + count; ++i)
            bytes += "2026/01/01 10:00:00:000  line " + QByteArray::number(i) + '\n';
        return bytes;
    }
    static QString text(LogWindowController &controller) { return controller.textView()->toPlainText(); }
};

TEST_F(LogWindowControllerTest, FontSizesAreClampedAndMissingFontsFallBack)
{
    const QString mono = u"DejaVu Sans Mono"_s;
    ASSERT_TRUE(LogWindowController::fontExists(mono, 12)) << "fonts-dejavu-core is not installed";
    EXPECT_EQ(LogWindowController::logFont(mono, 4).pointSize(), 8);
    EXPECT_EQ(LogWindowController::logFont(mono, 100).pointSize(), 64);
    EXPECT_EQ(LogWindowController::logFont(mono, 13).pointSize(), 13);
    EXPECT_EQ(LogWindowController::logFont(mono, 13).family(), mono);

    const QFont fallback = LogWindowController::logFont(u"No Such Font Family"_s, 20);
    EXPECT_EQ(fallback.pointSize(), 9);
    const QString expected = LogWindowController::fontExists(u"Monaco"_s, 9) ? u"Monaco"_s : mono;
    EXPECT_EQ(fallback.family(), expected);
    EXPECT_EQ(LogWindowController::logFont(QString(), 12).pointSize(), 9);
}

TEST_F(LogWindowControllerTest, FollowsTheFileInTheSharedLogsFolderReadingItInTheBackground)
{
    EXPECT_EQ(LogWindowController::logFilePath(),
              QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) +
                  u"/Corvex/Logs/Corvex log.txt"_s);
    LogWindowController controller;
    EXPECT_EQ(controller.windowIfLoaded(), nullptr);
    controller.window();
    EXPECT_TRUE(text(controller).isEmpty()) << "no file yet: an empty window";

    append(lines(0, 3));
    ASSERT_TRUE(waitUntil([&] { return text(controller).contains(u"line 2"_s); }));
    append(lines(3, 2));
    ASSERT_TRUE(waitUntil([&] { return text(controller).contains(u"line 4"_s); }));
    EXPECT_EQ(text(controller).count(u"line 0"_s), 1);
    EXPECT_TRUE(text(controller).startsWith(u"2026/01/01 10:00:00:000  line 0\n"_s));

    // A large file is read in the background and its text arrives through the event loop.
    append(lines(5, 20000));
    LogWindowController large;
    large.window(); // opens and starts reading the file
    EXPECT_TRUE(text(large).isEmpty()) << "nothing is read on the main thread";
    ASSERT_TRUE(waitUntil([&] { return text(large).contains(u"line 20004"_s); }));
    EXPECT_EQ(text(large).count(u"line 1000\n"_s), 1);
}

TEST_F(LogWindowControllerTest, NewLinesScrollOnlyAViewThatWasAtTheBottom)
{
    append(lines(0, 400));
    LogWindowController controller;
    QWidget *window = controller.window();
    window->resize(600, 300);
    window->show();
    QScrollBar *bar = controller.textView()->verticalScrollBar();
    ASSERT_TRUE(waitUntil([&] { return bar->maximum() > 10; }));
    const int lineHeight = controller.textView()->fontMetrics().lineSpacing();

    controller.scrollToBottom();
    EXPECT_TRUE(controller.isScrolledAtBottom());
    append(lines(400, 5));
    ASSERT_TRUE(waitUntil([&] { return text(controller).contains(u"line 404"_s); }));
    EXPECT_EQ(bar->value(), bar->maximum());

    // Within 50 points of the end it still follows.
    const int near = 50 / lineHeight;
    bar->setValue(bar->maximum() - near);
    EXPECT_TRUE(controller.isScrolledAtBottom());
    append(lines(405, 5));
    ASSERT_TRUE(waitUntil([&] { return text(controller).contains(u"line 409"_s); }));
    EXPECT_EQ(bar->value(), bar->maximum());

    // Scrolled up by more than 50 points: the view keeps its place.
    const int far = int(std::ceil(51.0 / lineHeight));
    bar->setValue(bar->maximum() - far);
    EXPECT_FALSE(controller.isScrolledAtBottom());
    const int kept = bar->value();
    append(lines(410, 5));
    ASSERT_TRUE(waitUntil([&] { return text(controller).contains(u"line 414"_s); }));
    EXPECT_EQ(bar->value(), kept);
    EXPECT_FALSE(controller.isScrolledAtBottom());
}

TEST_F(LogWindowControllerTest, AnArchivedFileIsFollowedByTheNewOneBelowTheOldText)
{
    append(lines(0, 2));
    LogWindowController controller;
    controller.window();
    ASSERT_TRUE(waitUntil([&] { return text(controller).contains(u"line 1"_s); }));

    // The agent's archive: the file gets another name, a new one starts at the same path.
    const QString path = LogWindowController::logFilePath();
    append(lines(2, 1)); // written just before the archive: must not be lost from view
    ASSERT_TRUE(QFile::rename(path, QFileInfo(path).absolutePath() + u"/log-ABC123.txt"_s));
    append(lines(100, 2));
    DistributedNotificationCenter::defaultCenter().postNotificationName(CorvexDidArchiveLogFileNotification);
    ASSERT_TRUE(waitUntil([&] { return text(controller).contains(u"line 101"_s); }));
    // A line written later shows after anything the archive could still bring twice.
    append(lines(150, 1));
    ASSERT_TRUE(waitUntil([&] { return text(controller).contains(u"line 150"_s); }));
    const QString shown = text(controller);
    EXPECT_EQ(shown.count(u"line 100"_s), 1);
    EXPECT_EQ(shown.count(u"line 2\n"_s), 1);
    EXPECT_LT(shown.indexOf(u"line 1\n"_s), shown.indexOf(u"line 100"_s));

    append(lines(102, 1));
    ASSERT_TRUE(waitUntil([&] { return text(controller).contains(u"line 102"_s); }));
}

TEST_F(LogWindowControllerTest, UndecodableDataShowsTheWholeFileReadAnew)
{
    append(lines(0, 2));
    LogWindowController controller;
    controller.window();
    ASSERT_TRUE(waitUntil([&] { return text(controller).contains(u"line 1"_s); }));
    append(QByteArray("caf\xe9 latin-1\n"));
    ASSERT_TRUE(waitUntil([&] { return text(controller).contains(u"café latin-1"_s); }));
    EXPECT_EQ(text(controller).count(u"line 0"_s), 1);
    // A read that ends inside a character: the whole file is shown once it decodes.
    LogWindowController other;
    other.window();
    ASSERT_TRUE(waitUntil([&] { return text(other).contains(u"latin-1"_s); }));
    other.appendLogFileData(QByteArray("\xc3"));
    EXPECT_EQ(text(other).count(u"line 0"_s), 1);
}

} // namespace
