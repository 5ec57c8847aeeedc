// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "WindowTestSupport.h"
#include "app/AppDelegate.h"
#include "app/AppEventHandler.h"
#include "core/AppUserDefaults.h"
#include "foundation/Notifications.h"
#include "platform/Bookmark.h"
#include "platform/DistributedNotificationCenter.h"

#include <QAction>
#include <QApplication>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCall>
#include <QSignalSpy>
#include <QThread>
#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

using namespace corvex::test;

namespace {

const QString CorvexExecutable = QStringLiteral(CORVEX_BUNDLE_DIR "/Contents/MacOS/Corvex");

// Counts the triggers of every application-level action, enabling those that have no window in this build so
// that the dispatch itself can be seen.
class ActionRecorder
{
public:
    explicit ActionRecorder(AppDelegate &delegate)
    {
        for (int which = int(AppDelegate::Action::About); which <= int(AppDelegate::Action::Quit); ++which) {
            QAction *action = delegate.action(AppDelegate::Action(which));
            action->setEnabled(true);
            // The recorder replaces what the actions do, so that no window or alert opens.
            QObject::disconnect(action, &QAction::triggered, nullptr, nullptr);
            QObject::connect(action, &QAction::triggered,
                             [this, which] { triggered.append(AppDelegate::Action(which)); });
        }
    }
    QList<AppDelegate::Action> triggered;
};

} // namespace

class AppDelegateCommandLineTest : public ::testing::Test
{
protected:
    void SetUp() override { mDelegate = std::make_unique<AppDelegate>(); }
    void TearDown() override
    {
        QApplication::closeAllWindows();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        mDelegate.reset();
    }
    std::unique_ptr<AppDelegate> mDelegate;
};

TEST_F(AppDelegateCommandLineTest, QzcvURLsAreDispatchedExactlyAlsoFromTheBusEachAnsweredBeforeItRuns)
{
    ActionRecorder recorder(*mDelegate);
    using A = AppDelegate::Action;
    const QList<std::pair<QString, QList<A>>> cases{
        {u"qzcv://about"_s, {A::About}},
        {u"qzcv://prefs"_s, {A::Preferences}},
        {u"qzcv://prefs/reset"_s, {A::ResetPreferences}},
        {u"qzcv://feedback"_s, {A::SendFeedback}},
        {u"qzcv://checkForUpdate"_s, {A::CheckForUpdates}},
        {u"qzcv://checkForUpdates"_s, {}},
        {u"qzcv://prefs/"_s, {}},
        {u"qzcv://Prefs"_s, {}},
        {u"qzcv:prefs"_s, {}},
        {u"qzcv://prefs?x=1"_s, {}},
        {u"QZCV://prefs"_s, {}},
        {u"http://prefs"_s, {}},
        {u"prefs"_s, {}},
        {QString(), {}},
    };
    for (const auto &[url, expected] : cases) {
        recorder.triggered.clear();
        mDelegate->handleGetURLEvent(url);
        EXPECT_EQ(recorder.triggered, expected) << url.toStdString();
    }
    recorder.triggered.clear();
    mDelegate->handleAboutEvent();
    mDelegate->handlePreferencesEvent();
    mDelegate->handleCheckForUpdatesEvent();
    EXPECT_EQ(recorder.triggered, (QList<A>{A::About, A::Preferences, A::CheckForUpdates}));

    // The same commands arrive on the bus, in turn, each answered before it runs.
    mDelegate->applicationWillFinishLaunching();
    ASSERT_TRUE(AppEventHandler::claimServiceName());
    EXPECT_FALSE(AppEventHandler::isAnotherInstanceRunning()) << "this process holds the name";
    const auto call = [](const QString &method, const QVariantList &arguments = {}) {
        QDBusMessage message = QDBusMessage::createMethodCall(
            AppEventHandler::ServiceName, AppEventHandler::ObjectPath, AppEventHandler::Interface, method);
        message.setArguments(arguments);
        // The call is made from another thread's connection so that this thread can answer it.
        return QDBusConnection::sessionBus().asyncCall(message);
    };
    recorder.triggered.clear();
    call(u"About"_s);
    call(u"CheckForUpdates"_s);
    call(u"GetURL"_s, {u"qzcv://feedback"_s});
    call(u"GetURL"_s, {u"mailto:someone"_s});
    call(u"Preferences"_s);
    // In turn: a "mailto" link dispatched by mistake would stand before Preferences.
    ASSERT_TRUE(waitUntil([&] { return recorder.triggered.size() == 4; }));
    EXPECT_EQ(recorder.triggered, (QList<A>{A::About, A::CheckForUpdates, A::SendFeedback, A::Preferences}));

    // A command that opens a window is answered first. About stands in for a modal window: it runs its own
    // event loop until the caller has its answer.
    const QDBusPendingCall pending = call(u"GetURL"_s, {u"qzcv://about"_s});
    bool ran = false;
    bool answeredWhileOpen = false;
    QObject::connect(mDelegate->action(A::About), &QAction::triggered, [&] {
        ran = true;
        answeredWhileOpen = waitUntil([&] { return pending.isFinished(); }, std::chrono::milliseconds(3000));
    });
    ASSERT_TRUE(waitUntil([&] { return ran; }));
    EXPECT_TRUE(answeredWhileOpen);
    EXPECT_FALSE(pending.isError());
    QDBusConnection::sessionBus().unregisterService(AppEventHandler::ServiceName);
}

TEST_F(AppDelegateCommandLineTest, ASecondLaunchHandsItsScreenshotAndURLToTheRunningInstance)
{
    ASSERT_TRUE(QFileInfo::exists(CorvexExecutable)) << "build the Corvex target first";
    ActionRecorder recorder(*mDelegate);
    mDelegate->applicationWillFinishLaunching();
    ASSERT_TRUE(AppEventHandler::claimServiceName());
    mDelegate->addNotificationObservers();
    QList<QVariantMap> posted;
    const int observer = DistributedNotificationCenter::defaultCenter().addObserver(
        CorvexScreenshotMatchedNotification, nullptr,
        [&](const QString &, const QVariantMap &userInfo) { posted.append(userInfo); });

    const QString path = writeImage(folder(u"Handed"_s) + u"/Handed.png"_s);
    AppUserDefaults &shared = AppUserDefaults::sharedCorvexDefaults();
    shared.setScreenshotBookmarkData(Bookmark::create(path), u"key-1"_s);

    // The second launch runs on another thread's event loop, so that this one can answer its GetURL call.
    const auto launch = [](const QStringList &arguments) {
        ProcessResult result;
        QThread *thread = QThread::create([&] { result = run(CorvexExecutable, arguments); });
        thread->start();
        waitUntil([&] { return thread->isFinished(); }, std::chrono::milliseconds(60000));
        thread->wait();
        delete thread;
        return result;
    };
    // Screen 0 is no screen: nothing is posted for it, so the first notification is the next launch's.
    EXPECT_EQ(launch({u"-filePath"_s, path, u"-screenNum"_s, u"0"_s}).exitCode, 0);

    const ProcessResult handed =
        launch({u"-filePath"_s, path, u"-screenNum"_s, u"2"_s, u"-bookmarkData"_s, u"key-1"_s,
                u"-newFilePath"_s, u"/tmp/new name.png"_s, u"qzcv://checkForUpdate"_s});
    EXPECT_EQ(handed.exitCode, 0) << handed.err.toStdString();
    ASSERT_TRUE(waitUntil([&] { return posted.size() == 1 && mDelegate->windowControllers().size() == 1; }));
    const QVariantMap info = posted.first();
    EXPECT_EQ(info.value(CorvexFilePathKey).toString(), path);
    EXPECT_EQ(info.value(CorvexScreenNumberKey).toLongLong(), 2);
    EXPECT_EQ(info.value(CorvexNewFilePathKey).toString(), u"/tmp/new name.png"_s);
    EXPECT_TRUE(info.value(CorvexFileAttributesKey).toMap().contains(u"NSFileSize"_s));
    EXPECT_FALSE(info.value(CorvexBookmarkDataKey).toByteArray().isEmpty());
    EXPECT_EQ(recorder.triggered, QList<AppDelegate::Action>{AppDelegate::Action::CheckForUpdates});
    shared.synchronize();
    EXPECT_TRUE(shared.screenshotBookmarkDataForKey(u"key-1"_s).isNull()) << "the bookmark is used once";

    launch({u"-filePath"_s, path, u"-screenNum"_s, u"1"_s, u"-bookmarkData"_s, u"key-1"_s});
    ASSERT_TRUE(waitUntil([&] { return posted.size() == 2; }));
    EXPECT_FALSE(posted.last().contains(CorvexBookmarkDataKey)) << "the second use finds nothing";
    EXPECT_FALSE(posted.last().contains(CorvexNewFilePathKey));

    DistributedNotificationCenter::defaultCenter().removeObserver(observer);
    QDBusConnection::sessionBus().unregisterService(AppEventHandler::ServiceName);
}
