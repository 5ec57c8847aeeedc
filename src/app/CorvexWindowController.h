// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/ScreenshotInfo.h"

#include <QImage>
#include <QList>
#include <QObject>
#include <QPageLayout>
#include <QPointer>
#include <QRect>
#include <QUrl>

class CorvexError;
class FileFollowing;
class FileFormat;
class ImageView;
class PictureLoading;
class QAction;
class QComboBox;
class QKeyEvent;
class QLineEdit;
class QPushButton;
class QWidget;
class RenamingWindowServices;
class WhereMenu;

// The renaming window of one screenshot: the picture, a name field, the destination folder (the where popup
// with the screenshot's own folder, another folder and the favourite folders), the format, and the actions
// Rename, Move to Trash, Cancel and Print. The controller follows the file while the window is open (a rename
// or move behind the window's back is followed through the screenshot's bookmark) and owns its window.
class CorvexWindowController : public QObject
{
    Q_OBJECT

public:
    // Retains the record and starts watching its file. The window is made on first use of window(). The
    // services (menus, printing) default to none and the print dialog; they must outlive the controller.
    explicit CorvexWindowController(const ScreenshotInfo &screenshotInfo,
                                    RenamingWindowServices *services = nullptr, QObject *parent = nullptr);
    ~CorvexWindowController() override;

    // A copy of the record; its file path follows the file while the window is open.
    ScreenshotInfo screenshotInfo() const { return _screenshotInfo; }
    static QString windowNibName() { return QStringLiteral("CorvexWindow"); }

    // The window, made and set up on first use.
    QWidget *window();
    // The controller whose window this is, if any.
    static CorvexWindowController *controllerForWindow(const QWidget *window);

    // The formats of the format popup, in its order.
    static const QList<const FileFormat *> &fileFormats();
    // The selected format (absent while nothing is selected).
    const FileFormat *selectedFileFormat() const;

    // Enables Rename exactly when the chosen folder joined with the name differs from the file's path.
    void updateUI();
    // Called for every change of the name field's text.
    void controlTextDidChange() { updateUI(); }

    // Makes the path the destination folder and shows it as the where popup's first item.
    void setWhere(const QString &folderPath);
    QString whereFolderPath() const { return mWhereFolderPath; }
    // Appends the favourite folders to the where popup (tags 500 + i; Ctrl+1 to Ctrl+9 for the first nine).
    void addWhereFavorites();
    // Acts on the where popup item with the tag (the screenshot's folder, another folder, adding or editing
    // the favourites, a favourite).
    void whereAction(int tag);
    // The folder shortcuts, the favourites' Ctrl+digit and Add to Favourites: true when handled.
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
    bool isImageLoaded() const;
    // The picture shown (the substitute for an unreadable file).
    QImage image() const;

    // Prints the picture through the window's printing service; the file is not touched.
    void printDocument();
    // Stops watching and closes the window; the file stays as it is.
    void cancel();

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
    // The window's menu commands: Rename, Move to Trash, Print, Cancel, Close.
    QList<QAction *> windowActions() const { return mWindowActions; }

Q_SIGNALS:
    // The picture (or its substitute) has been put into the window.
    void imageLoaded();
    // The window has been closed by an action of this controller (Cancel, a finished rename, an error).
    void windowClosedByController();
    // The user asked to edit the favourite folders (the where popup's "Edit Favourites…").
    void favoritesEditingRequested();

private:
    void buildWindow();
    void windowDidLoad();
    void closeWindow();
    void selectBaseName();
    void presentError(const CorvexError &error);
    void confirmReplace(const QString &name, const QString &destination);
    void renameLater();
    void chooseOtherFolder();
    void addShownFolderToFavorites();
    void openRenamedFile(const QString &path);

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

    RenamingWindowServices *mServices;
    QPointer<QWidget> mWindow;
    QList<QAction *> mWindowActions;
    WhereMenu *mWhereMenu = nullptr;
    FileFollowing *mFileFollowing = nullptr;
    PictureLoading *mPictureLoading = nullptr;
};
