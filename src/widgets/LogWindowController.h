// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QFont>
#include <QFuture>
#include <QObject>
#include <QPointer>
#include <QString>
#include <QWidget>

class QFile;
class QFileSystemWatcher;
class QPlainTextEdit;

// The log window: shows the shared log file "Corvex log.txt" that the agent keeps and follows it as it grows
// (the file is watched, never polled). When the agent reports that it has archived the file
// ("CorvexDidArchiveLogFile") the window opens the new file from its start and appends it below the text
// already shown. New lines scroll the view only when it was at the bottom (within 50 points).
//
// Font: "logFontName" at "logFontSize" points (clamped to 8–64) from the standard preferences; when no such
// font exists, Monaco at 9 points, and where Monaco is not installed either, DejaVu Sans Mono (else the
// system's fixed-width font) at 9 points.
class LogWindowController : public QObject
{
    Q_OBJECT

public:
    explicit LogWindowController(QObject *parent = nullptr);
    ~LogWindowController() override;

    // "LogWindow".
    QString windowNibName() const { return QStringLiteral("LogWindow"); }

    // $XDG_DATA_HOME/Corvex/Logs/Corvex log.txt (the temporary folder stands in without a data folder).
    static QString logFilePath();

    // The window, made and set up (font, observers, file) on first use.
    QWidget *window();
    // The window if it has been made, else null.
    QWidget *windowIfLoaded() const { return mWindow; }
    // Shows the window and brings it to the front.
    void showWindow();

    // Opens the log file afresh (releasing the current one) and reads it to its end in the background; the
    // text arrives through the event loop.
    void openAndReadLogFile();
    // Appends what a read to the end gave, then waits for more data.
    void handleReadToEndOfFileCompletion(const QByteArray &data);
    // More data may be there: reads to the end in the background.
    void handleDataAvailable();
    // The agent archived the log file: reads what is left of the old one, then opens the new one.
    void handleDidArchiveLogFile();

    // Whether the view shows the end of the text, give or take 50 points.
    bool isScrolledAtBottom() const;
    void scrollToBottom();
    // Appends the bytes as UTF-8; when they do not decode, shows the whole file read anew instead.
    void appendLogFileData(const QByteArray &data);

    // The font for a font name and size by the rules above.
    static QFont logFont(const QString &fontName, qint64 fontSize);
    // Whether a font of that family exists in that size.
    static bool fontExists(const QString &family, int pointSize);

    // The text view (null before the window is made).
    QPlainTextEdit *textView() const { return mTextView; }

    // Accepted and ignored.
    void windowDidBecomeMain() {}
    void windowDidResignMain() {}

Q_SIGNALS:
    // The window is closing (its controller may be released).
    void windowWillClose();

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void windowDidLoad();
    void watchLogFile();
    void closeLogFile();
    void readToEndOfFileInBackground();

    QPointer<QWidget> mWindow;
    QPlainTextEdit *mTextView = nullptr;
    QFile *mLogFile = nullptr;
    QFileSystemWatcher *mWatcher = nullptr;
    int mArchiveObserver = 0;
    // The read on its way (at most one), and what is to follow it.
    QFuture<QByteArray> mRead;
    bool mReading = false;
    bool mReadAgain = false;
    bool mReopenAfterRead = false;
};
