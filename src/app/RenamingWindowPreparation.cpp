// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/RenamingWindowPreparation.h"

#include "app/CorvexWindowController.h"
#include "app/PathNames.h"
#include "app/WhereItemDelegate.h"
#include "app/WhereMenu.h"
#include "core/FileFormat.h"
#include "watching/UKKQueue.h"

#include <QAccessible>
#include <QApplication>
#include <QDir>
#include <QFileInfo>
#include <QFontDatabase>
#include <QFontMetrics>
#include <QFormLayout>
#include <QIcon>
#include <QImageReader>
#include <QLineEdit>
#include <QPointer>
#include <QPushButton>
#include <QSet>
#include <QSettings>
#include <QTimer>
#include <QtConcurrent>
#include <memory>
#include <vector>

namespace {

// The icon themes' index files, read and kept open until the main thread has read them too: QSettings
// shares a file's parsed contents between the objects that have it open, and forgets them when the last
// one closes it.
using OpenIndexFiles = std::vector<std::unique_ptr<QSettings>>;

// The index files of the theme and of the themes it inherits from, and of the fallback theme and "hicolor",
// which every theme falls back to; each is the first one found along the search paths.
std::shared_ptr<OpenIndexFiles> readIconThemeIndexFiles(const QStringList &themes,
                                                        const QStringList &searchPaths)
{
    auto files = std::make_shared<OpenIndexFiles>();
    QStringList pending = themes;
    QSet<QString> seen;
    QThread *const mainThread = QCoreApplication::instance()->thread();
    while (!pending.isEmpty()) {
        const QString theme = pending.takeFirst();
        if (theme.isEmpty() || seen.contains(theme))
            continue;
        seen.insert(theme);
        for (const QString &folder : searchPaths) {
            const QString index = folder + u'/' + theme + QStringLiteral("/index.theme");
            if (!QFileInfo::exists(index))
                continue;
            auto settings = std::make_unique<QSettings>(index, QSettings::IniFormat);
            settings->allKeys();
            pending += settings->value(QStringLiteral("Icon Theme/Inherits")).toStringList();
            // Closed on the main thread, which owns it from here on.
            settings->moveToThread(mainThread);
            files->push_back(std::move(settings));
            break;
        }
    }
    return files;
}

// A folder of each kind that windows show: the home folder and any other folder. The icon provider looks
// each kind up once.
QStringList foldersOfEachKind()
{
    return {QDir::homePath(), QDir::tempPath()};
}

// A form of the renaming window's kinds of controls and texts, laid out and painted off screen and thrown
// away: the style's first polish and pixmaps, the text shaping and the glyphs of the usual letters are then
// ready.
void layOutAndPaintSampleForm()
{
    QWidget form;
    auto *layout = new QFormLayout(&form);
    auto *name = new QLineEdit(QStringLiteral("Screenshot 2026-01-01 at 12.00.00.png"), &form);
    auto *where = new WherePopupButton(&form);
    where->setIconSize(QSize(16, 16));
    where->setItemDelegate(new WhereItemDelegate(where));
    where->addItem(PathNames::folderIcon(QDir::homePath()), PathNames::displayNameAtPath(QDir::homePath()));
    auto *format = new QComboBox(&form);
    format->addItem(FileFormat::allFileFormats().constFirst()->description());
    layout->addRow(CorvexWindowController::tr("Name:"), name);
    layout->addRow(CorvexWindowController::tr("Where:"), where);
    layout->addRow(CorvexWindowController::tr("Format:"), format);
    auto *button = new QPushButton(CorvexWindowController::tr("Move to Trash"), &form);
    button->setDefault(true);
    layout->addRow(button);
    form.adjustSize();
    QImage image(form.size() * form.devicePixelRatioF(), QImage::Format_ARGB32_Premultiplied);
    image.setDevicePixelRatio(form.devicePixelRatioF());
    form.render(&image);
}

// The calls waiting for the preparation; running from start() until it is done.
struct Waiting
{
    bool running = false;
    QList<std::pair<QPointer<QObject>, std::function<void()>>> calls;
};

Waiting &waiting()
{
    static Waiting state;
    return state;
}

// Ends the wait: each waiting call in an event of its own, in the order they came.
void finishWaiting()
{
    Waiting &state = waiting();
    if (!state.running)
        return;
    state.running = false;
    for (auto &[context, call] : std::exchange(state.calls, {})) {
        if (context)
            QMetaObject::invokeMethod(context, std::move(call), Qt::QueuedConnection);
    }
}

// A preparation that takes longer than this (a font cache being rebuilt, say) is no longer waited for.
constexpr int LongestWaitMilliseconds = 250;

} // namespace

void RenamingWindowPreparation::start()
{
    static bool started = false;
    if (started || !qobject_cast<QApplication *>(QCoreApplication::instance()))
        return;
    started = true;
    waiting().running = true;

    // The icon loader itself is the main thread's: only the names and folders are taken from it here.
    const QStringList themes{QIcon::themeName(), QIcon::fallbackThemeName(), QStringLiteral("hicolor")};
    const QStringList searchPaths = QIcon::themeSearchPaths();
    QFuture<std::shared_ptr<OpenIndexFiles>> work = QtConcurrent::run([themes, searchPaths] {
        std::shared_ptr<OpenIndexFiles> files = readIconThemeIndexFiles(themes, searchPaths);
        // The image format plugins (the icons' files are read through them), and the font database with the
        // application font's matches and fallbacks, which are kept for the whole process.
        QImageReader::supportedImageFormats();
        QFontDatabase::families();
        QFontMetrics(QGuiApplication::font()).height();
        return files;
    });

    // The accessibility bridge is made on the main thread, by the first widget that tells it anything.
    QTimer::singleShot(0, qApp, [] { QAccessible::isActive(); });
    work.then(qApp, [](std::shared_ptr<OpenIndexFiles> files) {
        // The main thread's own font engine for the application font, and the icon theme: the folder icons
        // are looked up through the files read above, then they are closed. And the file watcher's thread.
        QFontMetrics(QApplication::font()).height();
        for (const QString &folder : foldersOfEachKind())
            PathNames::folderIcon(folder);
        UKKQueue::sharedFileWatcher();
        files.reset();
        // The style's and the text layout's first work, in an event of its own.
        QTimer::singleShot(0, qApp, [] {
            layOutAndPaintSampleForm();
            finishWaiting();
        });
    });
    QTimer::singleShot(LongestWaitMilliseconds, qApp, finishWaiting);
}

bool RenamingWindowPreparation::callWhenDone(QObject *context, std::function<void()> call)
{
    Waiting &state = waiting();
    if (!state.running)
        return false;
    state.calls.append({context, std::move(call)});
    return true;
}
