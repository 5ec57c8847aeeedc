// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "ScreenshotInfo.h"

#include <QImage>
#include <QList>
#include <QObject>
#include <QPageLayout>
#include <QPointer>
#include <QRect>
#include <QUrl>
#include <functional>

class CorvexError;
class FileFormat;
class ImageView;
class QAction;
class QComboBox;
class QKeyEvent;
class QLineEdit;
class QMenuBar;
class QPushButton;
class QWidget;

// The renaming window of one screenshot: the picture, a name field, the destination folder (the where popup
// with the screenshot's own folder, another folder and the favourite folders), the format, and the actions
// Rename, Move to Trash, Cancel and Print. The controller follows the file while the window is open (a rename
// or move behind the window's back is followed through the screenshot's bookmark) and owns its window.
class CorvexWindowController : public QObject
{
    Q_OBJECT

public:
    // Tags of the where popup's fixed items, and of the first favourite folder.
    static constexpr int ScreenshotFolderTag = 402;
    static constexpr int OtherFolderTag = 401;
    static constexpr int FirstFavoriteTag = 500;
    // The watcher mask: rename (0x20) and delete (0x01).
    static constexpr quint32 WatchMask = 0x21;

    // Retains the record and starts watching its file. The window is made on first use of window().
    explicit CorvexWindowController(const ScreenshotInfo &screenshotInfo, QObject *parent = nullptr);
    ~CorvexWindowController() override;

    // A copy of the record; its file path follows the file while the window is open.
    ScreenshotInfo screenshotInfo() const;
    static QString windowNibName() { return QStringLiteral("CorvexWindow"); }

    // The window, made and set up on first use.
    QWidget *window();
    bool isWindowLoaded() const { return mWindow != nullptr; }
    // The controller whose window this is, if any.
    static CorvexWindowController *controllerForWindow(const QWidget *window);

    // The formats of the format popup, in its order.
    static const QList<const FileFormat *> &fileFormats();
    // The selected format (absent while nothing is selected).
    const FileFormat *selectedFileFormat() const;

    // Enables Rename exactly when the chosen folder joined with the name differs from the file's path.
    void updateUI();
    // Called for every change of the name field's text.
    void controlTextDidChange();

    // Makes the path the destination folder and shows it as the where popup's first item.
    void setWhere(const QString &folderPath);
    QString whereFolderPath() const { return mWhereFolderPath; }
    // Appends the favourite folders to the where popup (tags 500 + i; Ctrl+1 to Ctrl+9 for the first nine).
    void addWhereFavorites();
    // Acts on the where popup item with the tag (the screenshot's folder, another folder, a favourite).
    void whereAction(int tag);
    // The folder shortcuts (Ctrl+Shift+C/H/D/A/O/U, Ctrl+D) and the favourites' Ctrl+digit: true when
    // handled.
    bool performKeyEquivalent(QKeyEvent *event);
    // The format popup's action: rewrites the name's extension to the chosen format's.
    void formatAction();

    // The window's frame for a picture of that size: grown so that the picture fits, never below the designed
    // size, and no larger than the screen allows. The zero rectangle without a window.
    QRect calculateWindowFrameWithImageSize(double width, double height);

    // Following the file.
    void startWatchingFile(const QString &path);
    void stopWatchingFile(const QString &path);
    void fileWatcherDelete(const QString &path);
    void fileWatcherRename(const QString &path);
    void resolveBookmarkAndUpdateUI();

    // The picture shown for a file that cannot be shown.
    static QImage fileNotFoundImageForFileType(const QString &fileExtension);
    // Whether the picture (or its substitute) is in the window.
    bool isImageLoaded() const { return mImageLoaded; }
    // The picture shown (the substitute for an unreadable file).
    QImage image() const;

    // Prints the picture through the print dialog, as a sheet; the file is not touched.
    void printDocument();
    // Stops watching and closes the window; the file stays as it is.
    void cancel();

    // Renaming and saving.
    // Renames (and converts) the file to the name and folder chosen, asking first where needed.
    void rename();
    // Whether the name may be used as it stands (after fixing its extension when excludingOthers is false, or
    // when it carries no known extension); shows the extension-mismatch alert and answers false when
    // excludingOthers is true and the name carries another format's extension.
    bool ensureExtensionMatchesCurrentFormatExcludingOthers(bool excludingOthers);
    void extensionMismatchAlertDidEnd(qint64 returnCode);
    void moveToTrash();
    void didPresentErrorWithRecovery(bool didRecover, const void *contextInfo);
    void saveLastDirectoryAndExtension(const QString &path);

    // The outlets.
    ImageView *imageView() const { return mImageView; }
    QLineEdit *nameTextField() const { return mNameTextField; }
    QComboBox *wherePopupButton() const { return mWherePopupButton; }
    QComboBox *formatPopupButton() const { return mFormatPopupButton; }
    QPushButton *moveToTrashButton() const { return mMoveToTrashButton; }
    QPushButton *cancelButton() const { return mCancelButton; }
    QPushButton *renameButton() const { return mRenameButton; }
    QList<QUrl> favoriteFolderURLs() const { return mFavoriteFolderURLs; }
    const QPageLayout &printInfo() const { return mPrintInfo; }
    // The window's menu commands: Rename, Move to Trash, Print, Close.
    QList<QAction *> windowActions() const { return mWindowActions; }

    // The folders of the folder shortcuts, first entry of each search (empty when there is none).
    static QString rootFolder();
    static QString homeFolder();
    static QString desktopFolder();
    static QString documentsFolder();
    static QString applicationsFolder();
    static QString utilitiesFolder();

    // Where the print dialog is run; tests replace it (the default shows the dialog as a sheet).
    using PrintRunner = std::function<void(QWidget *window, const QImage &image, const QPageLayout &layout)>;
    static void setPrintRunner(PrintRunner runner);

    // Makes the menu bar of each new renaming window (the application's menus); none when unset.
    using MenuBarFactory = std::function<QMenuBar *(CorvexWindowController *controller, QWidget *window)>;
    static void setMenuBarFactory(MenuBarFactory factory);

Q_SIGNALS:
    // The picture (or its substitute) has been put into the window.
    void imageLoaded();
    // The window has been closed by an action of this controller (Cancel, a finished rename, an error).
    void windowClosedByController();

private:
    void windowDidLoad();
    void buildWindow();
    void loadImage();
    void imageDidLoad(int status, const QImage &image, const QImage &display);
    void closeWindow();
    void selectBaseName();
    void presentError(const CorvexError &error);
    void showNameTakenAlert(const QString &name);
    void confirmReplace(const QString &name, const QString &destination);
    void renameLater();
    QString proposedFolderForCurrentFile() const;
    static void runPrintDialog(QWidget *window, const QImage &image, const QPageLayout &layout);

    ImageView *mImageView = nullptr;
    QLineEdit *mNameTextField = nullptr;
    QComboBox *mWherePopupButton = nullptr;
    QComboBox *mFormatPopupButton = nullptr;
    QPushButton *mMoveToTrashButton = nullptr;
    QPushButton *mCancelButton = nullptr;
    QPushButton *mRenameButton = nullptr;
    QString mWhereFolderPath;
    QList<QUrl> mFavoriteFolderURLs;
    QPageLayout mPrintInfo;
    ScreenshotInfo _screenshotInfo;

    QPointer<QWidget> mWindow;
    QList<QAction *> mWindowActions;
    QImage mImage;
    bool mImageLoaded = false;
    bool mWatching = false;
    QString mWatchedPath;
    quint64 mDeleteObserver = 0;
    quint64 mRenameObserver = 0;
};
