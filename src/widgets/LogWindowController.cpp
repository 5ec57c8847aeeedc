// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "widgets/LogWindowController.h"

#include "core/UserDefaults.h"
#include "foundation/Notifications.h"
#include "foundation/PreferenceKeys.h"
#include "platform/DistributedNotificationCenter.h"

#include <QCloseEvent>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QFileSystemWatcher>
#include <QFontDatabase>
#include <QFutureWatcher>
#include <QPlainTextEdit>
#include <QScrollBar>
#include <QStandardPaths>
#include <QStringDecoder>
#include <QTextCursor>
#include <QVBoxLayout>
#include <QtConcurrent>
#include <algorithm>

namespace {

constexpr int minimumFontSize = 8;
constexpr int maximumFontSize = 64;
constexpr int fallbackFontSize = 9;
constexpr int atBottomTolerance = 50; // points

QString decodeWholeFile(const QByteArray &bytes, bool *ok)
{
    *ok = true;
    // A byte-order mark names the encoding; otherwise UTF-8 when it decodes, else Latin-1, which always does.
    if (const std::optional<QStringConverter::Encoding> encoding = QStringConverter::encodingForData(bytes)) {
        QStringDecoder decoder(*encoding);
        const QString text = decoder.decode(bytes);
        if (!decoder.hasError())
            return text;
    }
    QStringDecoder utf8(QStringConverter::Utf8, QStringConverter::Flag::Stateless);
    const QString text = utf8.decode(bytes);
    if (!utf8.hasError())
        return text;
    return QString::fromLatin1(bytes);
}

} // namespace

LogWindowController::LogWindowController(QObject *parent) : QObject(parent) {}

LogWindowController::~LogWindowController()
{
    if (mArchiveObserver)
        DistributedNotificationCenter::defaultCenter().removeObserver(mArchiveObserver);
    closeLogFile();
    delete mWindow.data();
}

QString LogWindowController::logFilePath()
{
    QString base = QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation);
    if (base.isEmpty())
        base = QDir::tempPath();
    return base + QStringLiteral("/Corvex/Logs/Corvex log.txt");
}

QWidget *LogWindowController::window()
{
    if (!mWindow) {
        auto *window = new QWidget;
        window->setObjectName(windowNibName());
        window->setWindowTitle(tr("Corvex Log"));
        window->resize(760, 480);
        auto *layout = new QVBoxLayout(window);
        layout->setContentsMargins(0, 0, 0, 0);
        mTextView = new QPlainTextEdit(window);
        mTextView->setReadOnly(true);
        mTextView->setUndoRedoEnabled(false);
        mTextView->setLineWrapMode(QPlainTextEdit::WidgetWidth);
        mTextView->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
        layout->addWidget(mTextView);
        window->installEventFilter(this);
        mWindow = window;
        windowDidLoad();
    }
    return mWindow;
}

void LogWindowController::showWindow()
{
    QWidget *shown = window();
    shown->show();
    shown->raise();
    shown->activateWindow();
}

bool LogWindowController::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == mWindow && event->type() == QEvent::Close)
        Q_EMIT windowWillClose();
    return QObject::eventFilter(watched, event);
}

void LogWindowController::windowDidLoad()
{
    mWatcher = new QFileSystemWatcher(this);
    connect(mWatcher, &QFileSystemWatcher::fileChanged, this, [this] { handleDataAvailable(); });
    connect(mWatcher, &QFileSystemWatcher::directoryChanged, this, [this] {
        if (!mLogFile && QFileInfo::exists(logFilePath()))
            openAndReadLogFile();
    });
    mArchiveObserver = DistributedNotificationCenter::defaultCenter().addObserver(
        CorvexDidArchiveLogFileNotification, this,
        [this](const QString &, const QVariantMap &) { handleDidArchiveLogFile(); });
    UserDefaults &defaults = UserDefaults::standardUserDefaults();
    mTextView->setFont(
        logFont(defaults.stringForKey(kLogFontNameKey), defaults.integerForKey(kLogFontSizeKey)));
    openAndReadLogFile();
}

bool LogWindowController::fontExists(const QString &family, int pointSize)
{
    if (family.isEmpty())
        return false;
    const QStringList families = QFontDatabase::families();
    const auto found = std::find_if(families.begin(), families.end(), [&family](const QString &candidate) {
        return candidate.compare(family, Qt::CaseInsensitive) == 0;
    });
    if (found == families.end())
        return false;
    return QFontDatabase::isSmoothlyScalable(*found) || QFontDatabase::pointSizes(*found).contains(pointSize);
}

QFont LogWindowController::logFont(const QString &fontName, qint64 fontSize)
{
    const int size = int(std::clamp<qint64>(fontSize, minimumFontSize, maximumFontSize));
    if (fontExists(fontName, size))
        return QFont(fontName, size);
    for (const QString &fallback : {QStringLiteral("Monaco"), QStringLiteral("DejaVu Sans Mono")}) {
        if (fontExists(fallback, fallbackFontSize))
            return QFont(fallback, fallbackFontSize);
    }
    QFont font = QFontDatabase::systemFont(QFontDatabase::FixedFont);
    font.setPointSize(fallbackFontSize);
    return font;
}

void LogWindowController::closeLogFile()
{
    mRead.waitForFinished();
    delete mLogFile;
    mLogFile = nullptr;
}

void LogWindowController::watchLogFile()
{
    if (!mWatcher)
        return;
    const QString path = logFilePath();
    const QString folder = QFileInfo(path).absolutePath();
    // The folder is watched so that a log file that appears later is found; it is made when missing (the
    // agent writes there).
    if (!mWatcher->directories().contains(folder) && (QFileInfo(folder).isDir() || QDir().mkpath(folder)))
        mWatcher->addPath(folder);
    if (!mWatcher->files().isEmpty())
        mWatcher->removePaths(mWatcher->files());
    if (mLogFile)
        mWatcher->addPath(path);
}

void LogWindowController::openAndReadLogFile()
{
    if (mReading) {
        mReopenAfterRead = true; // once the read on its way has ended
        return;
    }
    closeLogFile();
    auto *file = new QFile(logFilePath());
    if (file->open(QIODevice::ReadOnly))
        mLogFile = file;
    else
        delete file;
    watchLogFile();
    if (mLogFile)
        readToEndOfFileInBackground();
}

void LogWindowController::readToEndOfFileInBackground()
{
    if (!mLogFile)
        return;
    if (mReading) {
        mReadAgain = true;
        return;
    }
    // The file is read on a worker thread and only there while a read is on its way; what it gives is
    // appended on the main thread through a queued call.
    mReading = true;
    QFile *file = mLogFile;
    mRead = QtConcurrent::run([file] { return file->readAll(); });
    auto *watcher = new QFutureWatcher<QByteArray>(this);
    connect(watcher, &QFutureWatcher<QByteArray>::finished, this, [this, watcher] {
        const QByteArray data = watcher->result();
        watcher->deleteLater();
        mReading = false;
        handleReadToEndOfFileCompletion(data);
        if (std::exchange(mReopenAfterRead, false)) {
            mReadAgain = false;
            openAndReadLogFile();
        } else if (std::exchange(mReadAgain, false)) {
            readToEndOfFileInBackground();
        }
    });
    watcher->setFuture(mRead);
}

void LogWindowController::handleReadToEndOfFileCompletion(const QByteArray &data)
{
    if (!data.isEmpty())
        appendLogFileData(data);
    // Waiting for more: the watcher reports growth; make sure it still watches the file.
    if (mWatcher && mLogFile && !mWatcher->files().contains(logFilePath()) &&
        QFileInfo::exists(logFilePath()))
        mWatcher->addPath(logFilePath());
}

void LogWindowController::handleDataAvailable()
{
    if (!mLogFile) {
        if (QFileInfo::exists(logFilePath()))
            openAndReadLogFile();
        return;
    }
    readToEndOfFileInBackground();
}

void LogWindowController::handleDidArchiveLogFile()
{
    // The old file may still hold lines not shown yet: they come first, then the new file from its start.
    if (mLogFile) {
        readToEndOfFileInBackground();
        mReopenAfterRead = true;
        return;
    }
    openAndReadLogFile();
}

bool LogWindowController::isScrolledAtBottom() const
{
    if (!mTextView)
        return true;
    const QScrollBar *bar = mTextView->verticalScrollBar();
    // The view scrolls by lines: the distance below the visible part is the hidden lines' height.
    const int lineHeight = std::max(1, mTextView->fontMetrics().lineSpacing());
    return qint64(bar->maximum() - bar->value()) * lineHeight <= atBottomTolerance;
}

void LogWindowController::scrollToBottom()
{
    if (!mTextView)
        return;
    QScrollBar *bar = mTextView->verticalScrollBar();
    bar->setValue(bar->maximum());
}

void LogWindowController::appendLogFileData(const QByteArray &data)
{
    if (!mTextView)
        return;
    QStringDecoder decoder(QStringConverter::Utf8, QStringConverter::Flag::Stateless);
    const QString text = decoder.decode(data);
    if (!decoder.hasError()) {
        const bool wasAtBottom = isScrolledAtBottom();
        QTextCursor cursor(mTextView->document());
        cursor.movePosition(QTextCursor::End);
        cursor.insertText(text);
        if (wasAtBottom)
            scrollToBottom();
        return;
    }
    // A read that ended inside a character, or a file that is not UTF-8: show the whole file read anew.
    QByteArray whole;
    if (!mReading && mLogFile && mLogFile->seek(0)) {
        whole = mLogFile->readAll();
    } else {
        QFile file(logFilePath());
        if (!file.open(QIODevice::ReadOnly))
            return;
        whole = file.readAll();
    }
    bool ok = false;
    const QString all = decodeWholeFile(whole, &ok);
    if (ok)
        mTextView->setPlainText(all);
    scrollToBottom();
}
