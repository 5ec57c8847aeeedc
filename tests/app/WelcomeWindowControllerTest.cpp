// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "TestSupport.h"

#include "app/TransparentBox.h"
#include "app/WelcomeWindowController.h"

#include <QAbstractTextDocumentLayout>
#include <QApplication>
#include <QDesktopServices>
#include <QDialog>
#include <QDialogButtonBox>
#include <QImage>
#include <QLabel>
#include <QPainter>
#include <QPointer>
#include <QPushButton>
#include <QScreen>
#include <QSignalSpy>
#include <QTest>
#include <QTextBrowser>

using namespace Qt::StringLiterals;

namespace {

// The welcome document as the build puts it into the bundle.
QString bundledDocument()
{
    return QStringLiteral(CORVEX_BUNDLE_DIR "/Contents/Resources/Welcome.rtfd");
}

// Records the web addresses the desktop is asked to open.
class LinkRecorder : public QObject
{
    Q_OBJECT

public:
    LinkRecorder() { QDesktopServices::setUrlHandler(u"https"_s, this, "record"); }
    ~LinkRecorder() override { QDesktopServices::unsetUrlHandler(u"https"_s); }
    QList<QUrl> urls;

public Q_SLOTS:
    void record(const QUrl &url) { urls.append(url); }
};

} // namespace

TEST(WelcomeWindowControllerTest, ShowsTheBundledDocumentWhoseLinksOpenInTheBrowserOrTheErrorText)
{
    EXPECT_EQ(WelcomeWindowController::welcomeDocumentPath(), bundledDocument());
    WelcomeWindowController controller;
    QDialog *window = controller.window();
    ASSERT_TRUE(controller.documentLoaded());
    QTextBrowser *view = controller.welcomeTextView();
    EXPECT_TRUE(view->toPlainText().contains(u"How a screenshot reaches Corvex"_s));
    EXPECT_EQ(view->document()->documentMargin(), 20);
    EXPECT_TRUE(controller.tagLine()->font().bold());
    EXPECT_EQ(controller.tagLine()->font().pointSize(), 16);
    // No backgrounds between the document and the translucent box.
    EXPECT_FALSE(view->viewport()->autoFillBackground());
    EXPECT_EQ(view->palette().color(QPalette::Base).alpha(), 0);
    EXPECT_EQ(view->parentWidget(), controller.box());

    // Links open in the browser: Tab reaches the first link, Return follows it.
    LinkRecorder browser;
    controller.showWindow();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(window));
    view->setFocus();
    QTest::keyClick(view, Qt::Key_Tab);
    QTRY_VERIFY(view->textCursor().hasSelection());
    QTest::keyClick(view, Qt::Key_Return);
    QTRY_COMPARE(browser.urls.size(), 1);
    EXPECT_EQ(browser.urls.first().host(), u"www.gnu.org"_s);

    // A document that cannot be read shows the error text.
    QTemporaryDir dir;
    const QString empty = dir.filePath("Empty.rtfd");
    corvex::test::writeFile(empty + "/index.html", "  \n");
    const QString unreadable = dir.filePath("Unreadable.rtfd");
    QDir().mkpath(unreadable + "/index.html"); // a folder where the page should be
    for (const QString &path : {dir.filePath("Missing.rtfd"), empty, unreadable}) {
        WelcomeWindowController failing(path);
        failing.window();
        EXPECT_FALSE(failing.documentLoaded()) << qPrintable(path);
        EXPECT_EQ(failing.welcomeTextView()->toPlainText(), u"error reading rtfd"_s);
    }
}

TEST(WelcomeWindowControllerTest,
     ShowWelcomeCentresActivatesAndReleasesOnCloseAndAHeldControllerReportsEveryClosing)
{
    QPointer<WelcomeWindowController> controller = WelcomeWindowController::showWelcome();
    ASSERT_TRUE(controller);
    QDialog *window = controller->window();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(window));
    QTRY_VERIFY(window->isActiveWindow());
    const QPoint screenCentre = window->screen()->availableGeometry().center();
    EXPECT_LE((window->frameGeometry().center() - screenCentre).manhattanLength(), 2);
    // A second request brings the same window forward.
    EXPECT_EQ(WelcomeWindowController::showWelcome(), controller.data());

    window->close();
    QTRY_VERIFY(!controller);
    // The next request builds a fresh window.
    QPointer<WelcomeWindowController> next = WelcomeWindowController::showWelcome();
    ASSERT_TRUE(next);
    QTest::keyClick(next->window(), Qt::Key_Escape);
    QTRY_VERIFY(!next);

    // A held controller reports every way of closing.
    WelcomeWindowController held(bundledDocument());
    QSignalSpy willClose(&held, &WelcomeWindowController::windowWillClose);
    const std::function<void(QDialog *)> ways[] = {
        [](QDialog *w) { w->close(); },
        [](QDialog *w) { QTest::keyClick(w, Qt::Key_Escape); },
        [&](QDialog *w) { w->findChild<QDialogButtonBox *>()->button(QDialogButtonBox::Close)->click(); },
    };
    int expected = 0;
    for (const auto &close : ways) {
        held.showWindow();
        ASSERT_TRUE(QTest::qWaitForWindowExposed(held.window()));
        close(held.window());
        QTRY_VERIFY(!held.window()->isVisible());
        EXPECT_EQ(willClose.count(), ++expected);
    }
    // Held controllers are not released by closing.
    EXPECT_NE(held.windowIfLoaded(), nullptr);
}

TEST(WelcomeWindowControllerTest, TransparentBoxIsTranslucentWhiteWithAFrame)
{
    QWidget background;
    background.setAutoFillBackground(true);
    QPalette palette = background.palette();
    palette.setColor(QPalette::Window, Qt::black);
    palette.setColor(QPalette::Shadow, QColor(10, 200, 30));
    background.setPalette(palette);
    background.resize(60, 40);
    auto *box = new TransparentBox(&background);
    box->setGeometry(10, 10, 40, 20);
    EXPECT_FALSE(box->isOpaque());

    QImage image(background.size(), QImage::Format_RGB32);
    image.fill(Qt::red);
    background.render(&image);
    EXPECT_EQ(image.pixelColor(5, 5), QColor(Qt::black));       // outside the box
    EXPECT_EQ(image.pixelColor(10, 10), QColor(10, 200, 30));   // the frame's corner
    EXPECT_EQ(image.pixelColor(49, 29), QColor(10, 200, 30));   // the opposite corner
    EXPECT_EQ(image.pixelColor(30, 10), QColor(10, 200, 30));   // the top edge
    EXPECT_EQ(image.pixelColor(11, 20), QColor(204, 204, 204)); // inside: 80 % white over black
    EXPECT_EQ(image.pixelColor(30, 20), QColor(204, 204, 204));
    EXPECT_EQ(image.pixelColor(50, 20),
              QColor(Qt::black)); // just past the right edge
}

#include "WelcomeWindowControllerTest.moc"
