// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// Helpers for the renaming window's tests: screenshots on disk, an open window, answering its sheets.

#include "CorvexWindowController.h"
#include "QZAlert.h"
#include "ScreenshotInfo.h"
#include "TestSupport.h"
#include "UserDefaults.h"

#include <QDir>
#include <QImage>
#include <QPainter>
#include <QPushButton>
#include <gtest/gtest.h>
#include <memory>

namespace corvex::test {

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

// Opens the renaming window of the file and waits for its picture.
inline std::unique_ptr<CorvexWindowController> openWindow(const ScreenshotInfo &info)
{
    auto controller = std::make_unique<CorvexWindowController>(info);
    QWidget *window = controller->window();
    window->show();
    window->activateWindow();
    waitUntil([&] { return controller->isImageLoaded(); });
    return controller;
}

inline std::unique_ptr<CorvexWindowController> openWindow(const QString &path)
{
    return openWindow(ScreenshotInfo(path, 1));
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
            button->click();
            spin(std::chrono::milliseconds(50));
            return;
        }
    }
    ADD_FAILURE() << "no button " << title.toStdString();
}

// Resets the preferences a test may have touched.
inline void clearWindowPreferences()
{
    UserDefaults &defaults = UserDefaults::standardUserDefaults();
    for (const char *key : {"useLastDirectoryAndExtensionValues", "lastSaveDirectory",
                            "lastFileFormatExtension", "favoriteFolderBookmarks", "hideExtension"})
        defaults.removeObjectForKey(QString::fromLatin1(key));
}

} // namespace corvex::test
