// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// Helpers for the renaming window's tests: screenshots on disk, an open window, answering its sheets.

#include "TestSupport.h"
#include "app/CorvexWindowController.h"
#include "app/RenamingWindowServices.h"
#include "core/ScreenshotInfo.h"
#include "core/UserDefaults.h"
#include "foundation/PreferenceKeys.h"
#include "widgets/QZAlert.h"

#include <QApplication>
#include <QCoreApplication>
#include <QDialog>
#include <QDir>
#include <QImage>
#include <QPainter>
#include <QPointer>
#include <QPushButton>
#include <QThreadPool>
#include <QTimer>
#include <functional>
#include <gtest/gtest.h>
#include <memory>

namespace corvex::test {

// Lets the window's background work run dry: every load on the thread pool ends and what it hands back to the
// main thread arrives (a few rounds, as a delivered result may start one more load).
inline void settleBackgroundWork()
{
    for (int round = 0; round < 4; ++round) {
        QThreadPool::globalInstance()->waitForDone();
        QCoreApplication::processEvents();
    }
}

// Writes a picture of the size into the format the path's extension names; returns the path.
inline QString writeImage(const QString &path, QSize size = QSize(200, 100), Qt::GlobalColor color = Qt::red)
{
    QDir().mkpath(QFileInfo(path).path());
    QImage image(size, QImage::Format_RGB32);
    image.fill(color);
    image.setDotsPerMeterX(2835); // 72 dpi, as screenshots are stored
    image.setDotsPerMeterY(2835);
    QPainter painter(&image);
    painter.fillRect(QRect(0, 0, size.width() / 2, size.height() / 2), Qt::blue);
    painter.end();
    image.save(path);
    return path;
}

// A folder below the test's home.
inline QString folder(const QString &name)
{
    const QString path = home() + u'/' + name;
    QDir().mkpath(path);
    return path;
}

// Printing that hands each picture to a test instead of the print dialog.
class RecordingPrinter : public RenamingWindowServices
{
public:
    std::function<void(QWidget *, const QImage &, const QPageLayout &)> onPrint;
    void print(QWidget *window, const QImage &image, const QPageLayout &layout) override
    {
        if (onPrint)
            onPrint(window, image, layout);
    }
};

// Opens the renaming window of the file and waits for its picture.
inline std::unique_ptr<CorvexWindowController> openWindow(const ScreenshotInfo &info,
                                                          RenamingWindowServices *services = nullptr)
{
    auto controller = std::make_unique<CorvexWindowController>(info, services);
    QWidget *window = controller->window();
    window->show();
    window->activateWindow();
    waitUntil([&] { return controller->isImageLoaded(); });
    return controller;
}

inline std::unique_ptr<CorvexWindowController> openWindow(const QString &path,
                                                          RenamingWindowServices *services = nullptr)
{
    return openWindow(ScreenshotInfo(path, 1), services);
}

// The sheet showing on the controller's window, once there is one.
inline QZAlert *waitForSheet(CorvexWindowController &controller)
{
    QZAlert *sheet = nullptr;
    waitUntil([&] { return (sheet = QZAlert::sheetOfWindow(controller.window())) != nullptr; });
    return sheet;
}

// Clicks the sheet's button with the title and lets the answer run.
inline void answerSheet(QZAlert *sheet, const QString &title)
{
    for (QPushButton *button : sheet->buttons()) {
        if (button->text() == title) {
            const QPointer<QZAlert> open(sheet);
            button->click();
            waitUntil([&] { return !open || !open->isVisible(); });
            QCoreApplication::processEvents(); // the answers queued by the sheet's end
            return;
        }
    }
    ADD_FAILURE() << "no button " << title.toStdString();
}

// The visible push button of the window with the text, or null.
inline QPushButton *buttonNamed(QWidget *window, const QString &text)
{
    for (QPushButton *button : window->findChildren<QPushButton *>())
        if (button->text() == text && button->isVisible())
            return button;
    return nullptr;
}

// Once an application-modal window is up, runs the step on it (retrying until one is). A dialog the step left
// up (a key it did not take) is ended as unanswered after a while instead of blocking the test for ever.
inline void whenModalIsUp(const std::function<void(QWidget *)> &step)
{
    QTimer::singleShot(30, [step] {
        QWidget *modal = QApplication::activeModalWidget();
        if (!modal || !modal->isVisible())
            return whenModalIsUp(step);
        step(modal);
        if (auto *dialog = qobject_cast<QDialog *>(modal))
            QTimer::singleShot(5000, dialog, [dialog] {
                if (dialog->isVisible())
                    dialog->done(0);
            });
    });
}

// Resets the preferences a test may have touched.
inline void clearWindowPreferences()
{
    UserDefaults &defaults = UserDefaults::standardUserDefaults();
    for (const QString &key : {kUseLastDirectoryAndExtensionValuesKey, kLastSaveDirectoryKey,
                               kLastFileFormatExtensionKey, kFavoriteFolderBookmarksKey, kHideExtensionKey})
        defaults.removeObjectForKey(key);
}

} // namespace corvex::test
