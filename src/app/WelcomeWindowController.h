// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QObject>
#include <QPointer>
#include <QString>
#include <memory>

class QDialog;
class QLabel;
class QTextBrowser;
class TransparentBox;
namespace Ui {
class WelcomeWindow;
}

// The welcome window: introduces Corvex with the document "Welcome.rtfd" of the application's resources (an
// HTML page and its pictures), shown on a translucent box under the title and tag line. Links open in the
// browser. A missing or unreadable document shows "error reading rtfd".
//
// Two ways to use it: showWelcome() shows the one welcome window and releases it when it closes; or a
// holder makes a controller, calls showWindow(), and releases it on windowWillClose().
class WelcomeWindowController : public QObject
{
    Q_OBJECT

public:
    // The window is made on first use from the interface file; the document is read from `documentPath`
    // (a folder holding index.html), by default the one in the application's resources.
    explicit WelcomeWindowController(QObject *parent = nullptr);
    WelcomeWindowController(const QString &documentPath, QObject *parent = nullptr);
    ~WelcomeWindowController() override;

    // "WelcomeWindow".
    static QString windowNibName() { return QStringLiteral("WelcomeWindow"); }

    // "<resources>/Welcome.rtfd".
    static QString welcomeDocumentPath();

    // Shows the welcome window, centred, in front and active. When one is open it is brought forward;
    // otherwise a new controller is made that releases itself when its window closes. Returns it.
    static WelcomeWindowController *showWelcome();

    // The window (made and set up on first use), and the window if it has been made.
    QDialog *window();
    QDialog *windowIfLoaded() const { return mWindow; }

    // Centres the window on the screen, shows it, brings it to the front and makes it active.
    void showWindow();

    // Whether the controller deletes itself (later) once its window has closed.
    void setReleasedWhenClosed(bool released) { mReleasedWhenClosed = released; }

    // The document folder this controller reads, and whether reading it succeeded.
    const QString &documentPath() const { return mDocumentPath; }
    bool documentLoaded() const { return mDocumentLoaded; }

    // The parts of the window (null before it is made).
    QLabel *tagLine() const { return mTagLine; }
    QTextBrowser *welcomeTextView() const { return mWelcomeTextView; }
    TransparentBox *box() const;

Q_SIGNALS:
    // The window is closing (its controller may be released).
    void windowWillClose();

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void awakeFromNib();
    bool readDocument();
    void centerWindow();
    void windowDidClose();

    QString mDocumentPath;
    std::unique_ptr<Ui::WelcomeWindow> mUi;
    QPointer<QDialog> mWindow;
    QLabel *mTagLine = nullptr;
    QTextBrowser *mWelcomeTextView = nullptr;
    bool mDocumentLoaded = false;
    bool mReleasedWhenClosed = false;
    bool mClosing = false;
};
