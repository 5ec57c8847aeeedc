// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later

// The renaming window: its construction, its set-up, the where popup and the folder keys, and its size.

#include "app/CorvexWindowController.h"

#include "app/FileFollowing.h"
#include "app/FileNameStringFormatter.h"
#include "app/FolderShortcuts.h"
#include "app/ImageLoader.h"
#include "app/ImageView.h"
#include "app/PathNames.h"
#include "app/PictureLoading.h"
#include "app/RenamingWindowActions.h"
#include "app/RenamingWindowServices.h"
#include "app/ResizingControlsView.h"
#include "app/WhereMenu.h"
#include "app/WhereProxyView.h"
#include "app/WindowPlacement.h"
#include "core/FileFormat.h"
#include "core/UserDefaults.h"
#include "foundation/PreferenceKeys.h"
#include "logging/Log.h"

#include <QAction>
#include <QBackingStore>
#include <QComboBox>
#include <QCoreApplication>
#include <QFileDialog>
#include <QFileInfo>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLineEdit>
#include <QLocale>
#include <QMenuBar>
#include <QPageSize>
#include <QPushButton>
#include <QVBoxLayout>
#include <sys/mman.h>
#include <unistd.h>

namespace {

// The picture's place in the window as designed: the window never gets smaller than this.
constexpr int DesignedImageWidth = 480;
constexpr int DesignedImageHeight = 300;
// The border around the picture (half of the 16 points the frame rule adds).
constexpr int ImageMargin = 8;
// The window's dynamic property that names its controller.
constexpr char ControllerProperty[] = "corvexWindowController";

// Page set-up for printing: margins 18 left and right, 30 top and bottom (points), portrait.
QPageLayout defaultPrintInfo()
{
    const bool letter = QLocale::system().measurementSystem() == QLocale::ImperialUSSystem;
    return QPageLayout(QPageSize(letter ? QPageSize::Letter : QPageSize::A4), QPageLayout::Portrait,
                       QMarginsF(18, 30, 18, 30), QPageLayout::Point);
}

// Readies a window that is being shown for its first paint, so that the paint holds the main thread up
// briefly. Showing a window posts a repaint of each of its widgets, and the window system's first expose of
// the window can be handled before them: the window would then be painted whole twice, the second time after
// waiting for the display server to take in the first. The posted layouts and repaints are handled at once
// instead, so that they are part of the first paint. And the window's backing store is new memory: painting
// it whole faults its pages in one by one, which costs tens of milliseconds for a large window on some
// machines. The store is given the window's size now and the kernel brings its pages in with one call.
class FirstPaintPreparation final : public QObject
{
public:
    explicit FirstPaintPreparation(QWidget *window) : QObject(window), mWindow(window)
    {
        window->installEventFilter(this);
    }

protected:
    bool eventFilter(QObject *watched, QEvent *event) override
    {
        if (event->type() == QEvent::ShowToParent && watched == mWindow) {
            QCoreApplication::sendPostedEvents(nullptr, QEvent::LayoutRequest);
            QCoreApplication::sendPostedEvents(nullptr, QEvent::UpdateLater);
            populateBackingStore();
        }
        return false;
    }

private:
    void populateBackingStore()
    {
#ifdef MADV_POPULATE_WRITE
        QBackingStore *store = mWindow->backingStore();
        if (!store)
            return;
        if (store->size() != mWindow->size())
            store->resize(mWindow->size());
        // With a scale factor the store's image is made at the beginning of a paint (here, of nothing).
        store->beginPaint(QRegion());
        const QPaintDevice *device = store->paintDevice();
        if (device && device->devType() == QInternal::Image) {
            const auto *image = static_cast<const QImage *>(device);
            const auto pageSize = quintptr(sysconf(_SC_PAGESIZE));
            const auto start = quintptr(image->constBits()) & ~(pageSize - 1);
            const auto end = quintptr(image->constBits()) + quintptr(image->sizeInBytes());
            // Only a hint: a kernel that cannot do it leaves the pages to be faulted in as they are painted.
            madvise(reinterpret_cast<void *>(start), end - start, MADV_POPULATE_WRITE);
        }
        store->endPaint();
#endif
    }

    QWidget *mWindow;
};

} // namespace

CorvexWindowController::CorvexWindowController(const ScreenshotInfo &screenshotInfo,
                                               RenamingWindowServices *services, QObject *parent)
    : QObject(parent), _screenshotInfo(screenshotInfo),
      mServices(services ? services : &RenamingWindowServices::defaultServices())
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
    mFileFollowing = new FileFollowing(this);
    connect(mFileFollowing, &FileFollowing::fileDeleted, this, &CorvexWindowController::fileWatcherDelete);
    connect(mFileFollowing, &FileFollowing::fileRenamed, this, &CorvexWindowController::fileWatcherRename);
    startWatchingFile(_screenshotInfo.filePath());
}

CorvexWindowController::~CorvexWindowController()
{
    delete mWindow.data();
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
    return qobject_cast<CorvexWindowController *>(window->property(ControllerProperty).value<QObject *>());
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
    window->setProperty(ControllerProperty, QVariant::fromValue<QObject *>(this));
    new FirstPaintPreparation(window);

    mImageView = new ImageView(window);
    mImageView->setObjectName(QStringLiteral("mImageView"));
    mImageView->setDesignedSize(QSize(DesignedImageWidth, DesignedImageHeight));
    mNameTextField = new QLineEdit(window);
    mNameTextField->setObjectName(QStringLiteral("mNameTextField"));
    auto *wherePopupButton = new WherePopupButton(window);
    mWherePopupButton = wherePopupButton;
    mWherePopupButton->setObjectName(QStringLiteral("mWherePopupButton"));
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
    mWindowActions = RenamingWindowActions::create(this, window);
    if (QMenuBar *bar = mServices->makeMenuBar(this, window))
        layout->setMenuBar(bar);

    mWhereMenu = new WhereMenu(wherePopupButton, this);
    for (const FileFormat *format : fileFormats())
        mFormatPopupButton->addItem(format->description());
    mPictureLoading = new PictureLoading(
        mImageView, [this] { return _screenshotInfo.filePath(); }, this);
    connect(mPictureLoading, &PictureLoading::loaded, this, &CorvexWindowController::imageLoaded);

    connect(mNameTextField, &QLineEdit::textChanged, this, &CorvexWindowController::controlTextDidChange);
    connect(mNameTextField, &QLineEdit::returnPressed, this, [this] {
        if (mRenameButton->isEnabled())
            mRenameButton->click();
    });
    connect(mWhereMenu, &WhereMenu::tagActivated, this, &CorvexWindowController::whereAction);
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
    mWindow->setWindowTitle(PathNames::displayFileName(currentPath, _screenshotInfo.fileAttributes()));
    QString proposedName = QFileInfo(proposedPath).fileName();

    mFavoriteFolderURLs = WhereMenu::readFavoriteFolderURLs();
    addWhereFavorites();

    QString proposedFolder = QFileInfo(proposedPath).path();
    QString proposedExtension = QFileInfo(proposedName).suffix();
    UserDefaults &defaults = UserDefaults::standardUserDefaults();
    if (defaults.boolForKey(kUseLastDirectoryAndExtensionValuesKey)) {
        const QString lastDirectory = defaults.stringForKey(kLastSaveDirectoryKey);
        if (!lastDirectory.isEmpty() && QFileInfo(lastDirectory).isDir())
            proposedFolder = lastDirectory;
        const QString lastExtension = defaults.stringForKey(kLastFileFormatExtensionKey);
        if (!lastExtension.isEmpty() && FileFormat::allKnownExtensions().contains(lastExtension.toLower())) {
            proposedName = PathNames::replacingExtension(proposedName, lastExtension);
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
    // Several renaming windows do not stack exactly: each new one is cascaded from the last.
    WindowPlacement::cascadeWindow(mWindow, WindowPlacement::screenForNumber(_screenshotInfo.screenNumber()));
    // The copy to show is made for the place the picture takes in the view: the view's room, or less for a
    // picture whose size is smaller, which is shown at that size. A copy larger than that place would be
    // scaled again on the main thread when it is first painted.
    const QSize room = mWindow->size() - (mWindow->sizeHint() - mImageView->sizeHint());
    const QSizeF place = imageSize.scaled(QSizeF(room), Qt::KeepAspectRatio).boundedTo(imageSize);
    mPictureLoading->load((place * mWindow->devicePixelRatioF()).toSize());
    updateUI();
}

void CorvexWindowController::selectBaseName()
{
    const QString name = mNameTextField->text();
    mNameTextField->setSelection(0, int(PathNames::baseNameLength(name)));
}

void CorvexWindowController::updateUI()
{
    if (!mRenameButton)
        return;
    const QString destination = PathNames::joinedPath(mWhereFolderPath, mNameTextField->text());
    mRenameButton->setEnabled(destination != _screenshotInfo.filePath());
}

void CorvexWindowController::setWhere(const QString &folderPath)
{
    mWhereFolderPath = folderPath;
    if (mWhereMenu)
        mWhereMenu->showFolder(folderPath);
}

void CorvexWindowController::addWhereFavorites()
{
    mWhereMenu->appendFavorites(mFavoriteFolderURLs);
}

void CorvexWindowController::whereAction(int tag)
{
    if (tag == WhereMenu::ScreenshotFolderTag) {
        setWhere(QFileInfo(_screenshotInfo.filePath()).path());
    } else if (tag == WhereMenu::OtherFolderTag) {
        chooseOtherFolder();
    } else if (tag == WhereMenu::AddToFavoritesTag) {
        addShownFolderToFavorites();
    } else if (tag == WhereMenu::EditFavoritesTag) {
        Q_EMIT favoritesEditingRequested();
    } else if (tag >= WhereMenu::FirstFavoriteTag) {
        const qsizetype index = tag - WhereMenu::FirstFavoriteTag;
        if (index < mFavoriteFolderURLs.size())
            setWhere(mFavoriteFolderURLs.at(index).toLocalFile());
    }
    mWherePopupButton->setCurrentIndex(0);
    updateUI();
}

void CorvexWindowController::chooseOtherFolder()
{
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
}

void CorvexWindowController::addShownFolderToFavorites()
{
    if (!QFileInfo(mWhereFolderPath).isDir() || !WhereMenu::addFavoriteFolder(mWhereFolderPath))
        return;
    const QUrl url = QUrl::fromLocalFile(mWhereFolderPath);
    mWhereMenu->appendFavorites({url}, mFavoriteFolderURLs.size());
    mFavoriteFolderURLs.append(url);
}

bool CorvexWindowController::performKeyEquivalent(QKeyEvent *event)
{
    if (RenamingWindowActions::isPopupOpen())
        return false;
    if (QKeySequence(event->keyCombination()) == WhereMenu::addToFavoritesShortcut()) {
        whereAction(WhereMenu::AddToFavoritesTag);
        return true;
    }
    const Qt::KeyboardModifiers modifiers = KeyEquivalentView::deviceIndependentModifiers(event);
    const int key = event->key();
    if (modifiers == Qt::ControlModifier && key >= Qt::Key_1 && key <= Qt::Key_9) {
        // The favourites' own key equivalents, as their popup items show them.
        const int index = key - Qt::Key_1;
        if (index >= mFavoriteFolderURLs.size())
            return false;
        whereAction(WhereMenu::FirstFavoriteTag + index);
        return true;
    }
    QString folder;
    if (!FolderShortcuts::folderForKey(event, &folder) || folder.isEmpty())
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
    return WindowPlacement::constrainFrameRect(
        frame, WindowPlacement::screenForNumber(_screenshotInfo.screenNumber()),
        WindowPlacement::decorationMargins(mWindow));
}
