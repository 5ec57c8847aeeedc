// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

class CorvexWindowController;
class QImage;
class QMenuBar;
class QPageLayout;
class QWidget;

// What a renaming window gets from outside: the application's menu bar and the way a picture is printed.
// The application delegate provides the menus; tests provide their own printing.
class RenamingWindowServices
{
public:
    virtual ~RenamingWindowServices() = default;

    // The menu bar of a new renaming window (owned by the window); none by default.
    virtual QMenuBar *makeMenuBar(CorvexWindowController *controller, QWidget *window);
    // Prints the picture with the page set-up; by default through the print dialog, as a sheet on the
    // window.
    virtual void print(QWidget *window, const QImage &image, const QPageLayout &layout);

    // The services used when a window is given none: no menus, the print dialog.
    static RenamingWindowServices &defaultServices();
};
