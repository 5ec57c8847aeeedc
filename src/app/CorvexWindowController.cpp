// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "CorvexWindowController.h"

#include "CorvexWindowController_p.h"
#include "FileFormat.h"
#include "FileNameStringFormatter.h"
#include "ImageLoader.h"
#include "ImageView.h"
#include "Log.h"
#include "ResizingControlsView.h"
#include "UserDefaults.h"
#include "WhereProxyView.h"

#include <QAction>
#include <QComboBox>
#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QFormLayout>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMenuBar>
#include <QPushButton>
#include <QScreen>
#include <QStandardItemModel>
#include <QVBoxLayout>

using namespace CorvexWindow;

namespace {

CorvexWindowController::MenuBarFactory &menuBarFactory()
{
    static CorvexWindowController::MenuBarFactory factory;
    return factory;
}

} // namespace

CorvexWindowController::CorvexWindowController(const ScreenshotInfo &screenshotInfo, QObject *parent)
    : QObject(parent), _screenshotInfo(screenshotInfo)
{
    // A record without a bookmark (a screenshot named by hand) gets one now, so that the window can follow
    // the file when it is renamed or moved behind its back.
    if (!_screenshotInfo.bookmarkData() && QFileInfo::exists(_screenshotInfo.filePath())) {
        ScreenshotInfo withBookmark(_screenshotInfo.filePath(), _screenshotInfo.screenNumber());
        withBookmark.setTargetFilePath(_screenshotInfo.targetFilePath());
        if (withBookmark.bookmarkData())
            _screenshotInfo = withBookmark;
    }
    mPrintInfo = defaultPrintInfo();
    observeWatcher(this, mDeleteObserver, mRenameObserver);
    startWatchingFile(_screenshotInfo.filePath());
}

void CorvexWindowController::setMenuBarFactory(MenuBarFactory factory)
{
    menuBarFactory() = std::move(factory);
}

CorvexWindowController::~CorvexWindowController()
{
    stopWatchingFile(mWatchedPath);
    unobserveWatcher(mDeleteObserver, mRenameObserver);
    delete mWindow.data();
}

ScreenshotInfo CorvexWindowController::screenshotInfo() const
{
    return _screenshotInfo;
}

QWidget *CorvexWindowController::window()
{
    if (!mWindow) {
        buildWindow();
        windowDidLoad();
    }
    return mWindow;
}

CorvexWindowController *CorvexWindowController::controllerForWindow(const QWidget *window)
{
    if (!window)
        return nullptr;
    const auto *link = window->findChild<CorvexWindowControllerLink *>(QString(), Qt::FindDirectChildrenOnly);
    return link ? link->controller() : nullptr;
}

const QList<const FileFormat *> &CorvexWindowController::fileFormats()
{
    return FileFormat::allFileFormats();
}

const FileFormat *CorvexWindowController::selectedFileFormat() const
{
    const int index = mFormatPopupButton ? mFormatPopupButton->currentIndex() : -1;
    return index >= 0 && index < fileFormats().size() ? fileFormats().at(index) : nullptr;
}

void CorvexWindowController::buildWindow()
{
    auto *window = new QWidget(nullptr, Qt::Window);
    mWindow = window;
    window->setObjectName(windowNibName());
    window->setAttribute(Qt::WA_DeleteOnClose, false);
    new CorvexWindowControllerLink(this, window);

    mImageView = new ImageView(window);
    mImageView->setObjectName(QStringLiteral("mImageView"));
    mImageView->setDesignedSize(QSize(DesignedImageWidth, DesignedImageHeight));
    mNameTextField = new QLineEdit(window);
    mNameTextField->setObjectName(QStringLiteral("mNameTextField"));
    mWherePopupButton = new QComboBox(window);
    mWherePopupButton->setObjectName(QStringLiteral("mWherePopupButton"));
    mWherePopupButton->setIconSize(QSize(16, 16));
    mWherePopupButton->setItemDelegate(new WhereItemDelegate(mWherePopupButton));
    mFormatPopupButton = new QComboBox(window);
    mFormatPopupButton->setObjectName(QStringLiteral("mFormatPopupButton"));

    auto *controlsArea = new QWidget(window);
    auto *controls = new ResizingControlsView(controlsArea);
    auto *form = new QFormLayout;
    form->setFieldGrowthPolicy(QFormLayout::AllNonFixedFieldsGrow);
    form->addRow(tr("Name:"), mNameTextField);
    form->addRow(tr("Where:"), mWherePopupButton);
    form->addRow(tr("Format:"), mFormatPopupButton);
    mMoveToTrashButton = new QPushButton(tr("Move to Trash"), controls);
    mMoveToTrashButton->setObjectName(QStringLiteral("mMoveToTrashButton"));
    mCancelButton = new QPushButton(tr("Cancel"), controls);
    mCancelButton->setObjectName(QStringLiteral("mCancelButton"));
    mRenameButton = new QPushButton(tr("Rename"), controls);
    mRenameButton->setObjectName(QStringLiteral("mRenameButton"));
    mRenameButton->setDefault(true);
    auto *buttons = new QHBoxLayout;
    buttons->addWidget(mMoveToTrashButton);
    buttons->addStretch(1);
    buttons->addWidget(mCancelButton);
    buttons->addWidget(mRenameButton);
    auto *controlsLayout = new QVBoxLayout(controls);
    controlsLayout->setContentsMargins(12, 8, 12, 12);
    controlsLayout->addLayout(form);
    controlsLayout->addLayout(buttons);
    controls->adjustSize();
    controls->setGeometry(0, 0, DesignedImageWidth + 2 * ImageMargin, controls->sizeHint().height());
    controlsArea->setFixedHeight(controls->height());

    auto *layout = new QVBoxLayout(window);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    auto *imageBox = new QVBoxLayout;
    imageBox->setContentsMargins(ImageMargin, ImageMargin, ImageMargin, 0);
    imageBox->addWidget(mImageView);
    layout->addLayout(imageBox, 1);
    layout->addWidget(controlsArea);
    window->setMinimumWidth(DesignedImageWidth + 2 * ImageMargin);
    mWindowActions = makeWindowActions(this, window);
    if (menuBarFactory())
        layout->setMenuBar(menuBarFactory()(this, window));

    // The where popup's fixed items: the chosen folder (rewritten by setWhere), the screenshot's own folder,
    // another folder. The favourites follow.
    mWherePopupButton->addItem(QString());
    mWherePopupButton->insertSeparator(1);
    mWherePopupButton->addItem(tr("Screenshot’s Folder"), QVariant());
    mWherePopupButton->setItemData(2, ScreenshotFolderTag, TagRole);
    mWherePopupButton->addItem(tr("Other…"));
    mWherePopupButton->setItemData(3, OtherFolderTag, TagRole);
    for (const FileFormat *format : fileFormats())
        mFormatPopupButton->addItem(format->description());

    connect(mNameTextField, &QLineEdit::textChanged, this, &CorvexWindowController::controlTextDidChange);
    connect(mNameTextField, &QLineEdit::returnPressed, this, [this] {
        if (mRenameButton->isEnabled())
            mRenameButton->click();
    });
    connect(mWherePopupButton, &QComboBox::activated, this,
            [this](int index) { whereAction(mWherePopupButton->itemData(index, TagRole).toInt()); });
    connect(mFormatPopupButton, &QComboBox::activated, this, &CorvexWindowController::formatAction);
    connect(mRenameButton, &QPushButton::clicked, this, &CorvexWindowController::rename);
    connect(mCancelButton, &QPushButton::clicked, this, &CorvexWindowController::cancel);
    connect(mMoveToTrashButton, &QPushButton::clicked, this, &CorvexWindowController::moveToTrash);
}

void CorvexWindowController::windowDidLoad()
{
    const QString currentPath = _screenshotInfo.filePath();
    DDLogInfo(QStringLiteral("Showing renaming window for %1").arg(currentPath));

    new WhereProxyView([this](QKeyEvent *event) { return performKeyEquivalent(event); }, mWindow);

    mNameTextField->setValidator(new FileNameStringFormatter(mNameTextField));
    mNameTextField->setFocus();

    const std::optional<QString> target = _screenshotInfo.targetFilePath();
    const QString proposedPath = target && !target->isEmpty() ? *target : currentPath;
    mWindow->setWindowTitle(displayFileName(currentPath, _screenshotInfo.fileAttributes()));
    QString proposedName = QFileInfo(proposedPath).fileName();

    mFavoriteFolderURLs = readFavoriteFolderURLs();
    addWhereFavorites();

    QString proposedFolder = QFileInfo(proposedPath).path();
    QString proposedExtension = QFileInfo(proposedName).suffix();
    UserDefaults &defaults = UserDefaults::standardUserDefaults();
    if (defaults.boolForKey(QStringLiteral("useLastDirectoryAndExtensionValues"))) {
        const QString lastDirectory = defaults.stringForKey(QStringLiteral("lastSaveDirectory"));
        if (!lastDirectory.isEmpty() && QFileInfo(lastDirectory).isDir())
            proposedFolder = lastDirectory;
        const QString lastExtension = defaults.stringForKey(QStringLiteral("lastFileFormatExtension"));
        if (!lastExtension.isEmpty() && FileFormat::allKnownExtensions().contains(lastExtension.toLower())) {
            proposedName = replacingExtension(proposedName, lastExtension);
            proposedExtension = lastExtension;
        }
    }

    mNameTextField->setText(proposedName);
    selectBaseName();
    setWhere(proposedFolder);
    const qsizetype formatIndex = qzIndexOfObjectForExtension(fileFormats(), proposedExtension);
    mFormatPopupButton->setCurrentIndex(formatIndex == NSNotFound ? -1 : int(formatIndex));
    mRenameButton->setEnabled(false);

    // The window takes its final size from the picture's declared size at once; the picture itself is decoded
    // away from the main thread and shown when it is ready.
    QSizeF imageSize = ImageLoader::imageSizeOfFile(currentPath);
    if (imageSize.isEmpty())
        imageSize = QSizeF(128, 128);
    const QRect frame = calculateWindowFrameWithImageSize(imageSize.width(), imageSize.height());
    mWindow->resize(frame.size());
    centerOnScreen(mWindow, screenForNumber(_screenshotInfo.screenNumber()));
    loadImage();
    updateUI();
}

void CorvexWindowController::selectBaseName()
{
    const QString name = mNameTextField->text();
    mNameTextField->setSelection(0, int(baseNameLength(name)));
}

void CorvexWindowController::updateUI()
{
    if (!mRenameButton)
        return;
    const QString destination = joinedPath(mWhereFolderPath, mNameTextField->text());
    mRenameButton->setEnabled(destination != _screenshotInfo.filePath());
}

void CorvexWindowController::controlTextDidChange()
{
    updateUI();
}

void CorvexWindowController::setWhere(const QString &folderPath)
{
    mWhereFolderPath = folderPath;
    if (!mWherePopupButton)
        return;
    if (mWherePopupButton->count() == 0)
        mWherePopupButton->addItem(QString());
    mWherePopupButton->setItemText(0, displayNameAtPath(folderPath));
    mWherePopupButton->setItemIcon(0, folderIcon(folderPath));
    mWherePopupButton->setItemData(0, folderPath, Qt::ToolTipRole);
    mWherePopupButton->setCurrentIndex(0);
}

void CorvexWindowController::addWhereFavorites()
{
    if (!mFavoriteFolderURLs.isEmpty()) {
        mWherePopupButton->insertSeparator(mWherePopupButton->count());
        mWherePopupButton->addItem(tr("Favorites"));
        auto *model = qobject_cast<QStandardItemModel *>(mWherePopupButton->model());
        if (QStandardItem *heading = model ? model->item(mWherePopupButton->count() - 1) : nullptr)
            heading->setEnabled(false);
    }
    for (qsizetype i = 0; i < mFavoriteFolderURLs.size(); ++i) {
        const QString path = mFavoriteFolderURLs.at(i).toLocalFile();
        mWherePopupButton->addItem(folderIcon(path), displayNameAtPath(path));
        const int index = mWherePopupButton->count() - 1;
        mWherePopupButton->setItemData(index, FirstFavoriteTag + int(i), TagRole);
        mWherePopupButton->setItemData(index, 1, IndentationRole);
        mWherePopupButton->setItemData(index, path, Qt::ToolTipRole);
        if (i < 9)
            mWherePopupButton->setItemData(index, QKeySequence(Qt::CTRL | Qt::Key(Qt::Key_1 + i)),
                                           KeyEquivalentRole);
    }
}

void CorvexWindowController::whereAction(int tag)
{
    if (tag == ScreenshotFolderTag) {
        setWhere(QFileInfo(_screenshotInfo.filePath()).path());
        mWherePopupButton->setCurrentIndex(0);
        updateUI();
    } else if (tag == OtherFolderTag) {
        auto *panel = new QFileDialog(mWindow);
        panel->setFileMode(QFileDialog::Directory);
        panel->setOption(QFileDialog::ShowDirsOnly, true);
        panel->setDirectory(mWhereFolderPath);
        panel->setAcceptMode(QFileDialog::AcceptOpen);
        panel->setAttribute(Qt::WA_DeleteOnClose);
        connect(panel, &QFileDialog::finished, this, [this, panel](int result) {
            const QList<QUrl> urls = panel->selectedUrls();
            if (result == QDialog::Accepted && urls.size() == 1 && urls.first().isLocalFile())
                setWhere(QFileInfo(urls.first().toLocalFile()).canonicalFilePath());
            mWherePopupButton->setCurrentIndex(0);
            updateUI();
        });
        panel->open();
        updateUI();
    } else if (tag >= FirstFavoriteTag) {
        const qsizetype index = tag - FirstFavoriteTag;
        if (index < mFavoriteFolderURLs.size())
            setWhere(mFavoriteFolderURLs.at(index).toLocalFile());
        mWherePopupButton->setCurrentIndex(0);
        updateUI();
    } else {
        mWherePopupButton->setCurrentIndex(0);
        updateUI();
    }
}

bool CorvexWindowController::performKeyEquivalent(QKeyEvent *event)
{
    const Qt::KeyboardModifiers modifiers = WhereProxyView::deviceIndependentModifiers(event);
    const int key = event->key();
    QString folder;
    if (modifiers == (Qt::ControlModifier | Qt::ShiftModifier)) {
        switch (key) {
        case Qt::Key_C:
            folder = rootFolder();
            break;
        case Qt::Key_H:
            folder = homeFolder();
            break;
        case Qt::Key_D:
            folder = desktopFolder();
            break;
        case Qt::Key_A:
            folder = applicationsFolder();
            break;
        case Qt::Key_O:
            folder = documentsFolder();
            break;
        case Qt::Key_U:
            folder = utilitiesFolder();
            break;
        default:
            return false;
        }
    } else if (modifiers == Qt::ControlModifier && key == Qt::Key_D) {
        folder = desktopFolder();
    } else if (modifiers == Qt::ControlModifier && key >= Qt::Key_1 && key <= Qt::Key_9) {
        // The favourites' own key equivalents, as their popup items show them.
        const int index = key - Qt::Key_1;
        if (index >= mFavoriteFolderURLs.size())
            return false;
        whereAction(FirstFavoriteTag + index);
        return true;
    } else {
        return false;
    }
    if (folder.isEmpty())
        return false;
    setWhere(folder);
    return true;
}

QRect CorvexWindowController::calculateWindowFrameWithImageSize(double width, double height)
{
    if (!mWindow)
        return QRect();
    mWindow->ensurePolished();
    // Everything but the picture keeps its size: the window is the picture's view plus a fixed border.
    const QSize chrome = mWindow->sizeHint() - mImageView->sizeHint();
    QRect frame = mWindow->geometry();
    if (!mWindow->testAttribute(Qt::WA_Resized))
        frame.setSize(mWindow->sizeHint());
    const QSize imageViewSize = mWindow->isVisible() ? mImageView->size() : frame.size() - chrome;
    const double dw = width + 2 * ImageMargin - imageViewSize.width();
    const double dh = height + 2 * ImageMargin - imageViewSize.height();
    if (dw > 0)
        frame.setWidth(frame.width() + int(dw));
    if (dh > 0)
        frame.setHeight(frame.height() + int(dh));
    return constrainFrameRect(frame, screenForNumber(_screenshotInfo.screenNumber()),
                              decorationMargins(mWindow));
}
