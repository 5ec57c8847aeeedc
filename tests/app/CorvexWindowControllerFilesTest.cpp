// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "WindowTestSupport.h"
#include "app/ImageView.h"

#include <QFile>
#include <QScreen>
#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

using namespace corvex::test;

// The renaming window's picture: a reduced copy is shown, the full picture is printed.
class CorvexWindowControllerFilesTest : public ::testing::Test
{
protected:
    void SetUp() override { clearWindowPreferences(); }
    void TearDown() override { clearWindowPreferences(); }
    RecordingPrinter mPrinter;
};

TEST_F(CorvexWindowControllerFilesTest, ALargePictureIsShownReducedAndPrintedInFullWhileTheWindowIsOpen)
{
    const QString path = writeImage(folder(u"Large"_s) + u"/Screenshot.png"_s, QSize(5120, 2880));
    auto controller = openWindow(path, &mPrinter);
    ASSERT_TRUE(controller->isImageLoaded());
    const ImageView *view = controller->imageView();
    const QImage shown = controller->image();
    EXPECT_LE(shown.width(), view->width() * view->devicePixelRatioF() + 1) << "no larger than the view";
    EXPECT_NEAR(double(shown.width()) / shown.height(), 5120.0 / 2880.0, 0.01);
    EXPECT_NEAR(shown.deviceIndependentSize().width(), 5120, 1.0) << "measured as the full picture";
    const QRect drawn = view->imageRect();
    EXPECT_NEAR(double(drawn.width()) / drawn.height(), 5120.0 / 2880.0, 0.02) << "scaled proportionally";
    // The window is as large as the screen allows, and on it.
    QWidget *window = controller->window();
    const QRect available = window->screen()->availableGeometry();
    EXPECT_TRUE(available.contains(window->frameGeometry()));
    EXPECT_GT(window->width(), available.width() / 2);

    int prints = 0;
    QImage printed;
    mPrinter.onPrint = ([&](QWidget *printedWindow, const QImage &image, const QPageLayout &layout) {
        EXPECT_EQ(printedWindow, window);
        EXPECT_EQ(layout.margins(QPageLayout::Point), QMarginsF(18, 30, 18, 30));
        EXPECT_EQ(layout.orientation(), QPageLayout::Portrait);
        printed = image;
        ++prints;
    });
    controller->printDocument();
    controller->printDocument(); // a second request while the first is on its way is the same print
    ASSERT_TRUE(waitUntil([&] { return prints > 0; }));
    settleBackgroundWork();
    EXPECT_EQ(prints, 1);
    EXPECT_EQ(printed.size(), QSize(5120, 2880)) << "the full picture is printed";
    EXPECT_EQ(printed.pixel(100, 100), QColor(Qt::blue).rgb());
    EXPECT_TRUE(QFile::exists(path)) << "printing leaves the file alone";

    // A window closed before the full picture arrives prints nothing.
    controller->printDocument();
    controller->cancel();
    settleBackgroundWork();
    EXPECT_EQ(prints, 1);
}

TEST_F(CorvexWindowControllerFilesTest, AWindowMadeLargerGetsASharperCopy)
{
    const QString path = writeImage(folder(u"Larger"_s) + u"/Screenshot.png"_s, QSize(4000, 2000));
    auto controller = openWindow(path, &mPrinter);
    const int before = controller->image().width();
    ASSERT_LT(before, 4000);
    QWidget *window = controller->window();
    window->resize(window->width() * 2, window->height() * 2);
    controller->imageView()->repaint();
    const int wanted = qRound(controller->imageView()->imageRect().width() * window->devicePixelRatioF());
    ASSERT_GT(wanted, before + 1);
    ASSERT_TRUE(waitUntil([&] { return controller->image().width() > before; }));
    EXPECT_NEAR(controller->image().width(), wanted, 1);
    EXPECT_NEAR(controller->image().deviceIndependentSize().width(), 4000, 1.0);
    EXPECT_EQ(controller->imageView()->image().cacheKey(), controller->image().cacheKey()) << "it is shown";

    // Once the copy is the full picture nothing more is loaded.
    window->resize(5000, 3000);
    controller->imageView()->repaint();
    ASSERT_TRUE(waitUntil([&] { return controller->image().width() == 4000; }));
    const qint64 full = controller->image().cacheKey();
    window->resize(5200, 3200);
    controller->imageView()->repaint();
    settleBackgroundWork();
    EXPECT_EQ(controller->image().cacheKey(), full);
}

TEST_F(CorvexWindowControllerFilesTest, APictureGoneBeforePrintingPrintsWhatIsShown)
{
    const QString path = writeImage(folder(u"Gone"_s) + u"/Screenshot.png"_s, QSize(3000, 2000));
    auto controller = openWindow(path, &mPrinter);
    const QImage shown = controller->image();
    ASSERT_FALSE(shown.isNull());
    // Replaced by a picture of another size: the window's copy no longer matches, the new file is unreadable.
    ASSERT_TRUE(QFile::remove(path));
    writeFile(path, QByteArray("\x89PNG\r\n\x1a\n", 8) + QByteArray(100, 'x'));
    QImage printed;
    mPrinter.onPrint = ([&](QWidget *, const QImage &image, const QPageLayout &) { printed = image; });
    controller->printDocument();
    ASSERT_TRUE(waitUntil([&] { return !printed.isNull(); }));
    EXPECT_EQ(printed.cacheKey(), shown.cacheKey());
}
