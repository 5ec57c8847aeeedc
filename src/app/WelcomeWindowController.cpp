// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/WelcomeWindowController.h"

#include "app/TransparentBox.h"
#include "core/FeedbackReport.h"
#include "ui_WelcomeWindow.h"

#include <QAbstractScrollArea>
#include <QApplication>
#include <QCloseEvent>
#include <QCursor>
#include <QDialog>
#include <QFile>
#include <QLayout>
#include <QPointer>
#include <QScreen>
#include <QTextBrowser>
#include <QTextDocument>

namespace {

// The open welcome window's self-releasing controller, if any.
QPointer<WelcomeWindowController> sharedWelcome;

constexpr int kTagLinePointSize = 16;
constexpr int kTitlePointSize = 22;
constexpr qreal kDocumentInset = 20;

} // namespace

WelcomeWindowController::WelcomeWindowController(QObject *parent)
    : WelcomeWindowController(welcomeDocumentPath(), parent)
{
}

WelcomeWindowController::WelcomeWindowController(const QString &documentPath, QObject *parent)
    : QObject(parent), mDocumentPath(documentPath)
{
}

WelcomeWindowController::~WelcomeWindowController()
{
    delete mWindow;
}

QString WelcomeWindowController::welcomeDocumentPath()
{
    return FeedbackReport::applicationBundle().resourcePath() + QStringLiteral("/Welcome.rtfd");
}

WelcomeWindowController *WelcomeWindowController::showWelcome()
{
    if (!sharedWelcome) {
        sharedWelcome = new WelcomeWindowController();
        sharedWelcome->setReleasedWhenClosed(true);
    }
    sharedWelcome->showWindow();
    return sharedWelcome;
}

QDialog *WelcomeWindowController::window()
{
    if (mWindow)
        return mWindow;
    mWindow = new QDialog(nullptr, Qt::Window | Qt::WindowTitleHint | Qt::WindowCloseButtonHint);
    mWindow->setObjectName(windowNibName());
    mUi = std::make_unique<Ui::WelcomeWindow>();
    mUi->setupUi(mWindow);
    mTagLine = mUi->mTagLine;
    mWelcomeTextView = mUi->mWelcomeTextView;
    connect(mUi->mButtons, &QDialogButtonBox::rejected, mWindow, &QDialog::close);
    mWindow->installEventFilter(this);
    // Escape and the Close button end the dialog without a close event; the title bar's button sends one.
    connect(mWindow, &QDialog::finished, this, &WelcomeWindowController::windowDidClose);
    awakeFromNib();
    return mWindow;
}

TransparentBox *WelcomeWindowController::box() const
{
    return mUi ? mUi->mBox : nullptr;
}

void WelcomeWindowController::awakeFromNib()
{
    QFont tagFont = QApplication::font();
    tagFont.setBold(true);
    tagFont.setPointSize(kTagLinePointSize);
    mTagLine->setFont(tagFont);
    QFont titleFont = QApplication::font();
    titleFont.setPointSize(kTitlePointSize);
    mUi->mTitle->setFont(titleFont);

    const QIcon icon = QApplication::windowIcon();
    if (icon.isNull())
        mUi->mIconView->hide();
    else
        mUi->mIconView->setPixmap(icon.pixmap(QSize(64, 64), mWindow->devicePixelRatioF()));

    mWelcomeTextView->document()->setDocumentMargin(kDocumentInset);
    if (!readDocument())
        mWelcomeTextView->setPlainText(QStringLiteral("error reading rtfd"));

    // No backgrounds: neither the text view's nor that of the scroll view it lies in, so the document floats
    // on the box below it.
    QPalette palette = mWelcomeTextView->palette();
    palette.setColor(QPalette::Base, Qt::transparent);
    mWelcomeTextView->setPalette(palette);
    mWelcomeTextView->setAutoFillBackground(false);
    for (QWidget *view = mWelcomeTextView; view; view = view->parentWidget()) {
        if (auto *scrollView = qobject_cast<QAbstractScrollArea *>(view)) {
            scrollView->viewport()->setAutoFillBackground(false);
            scrollView->setAutoFillBackground(false);
            break;
        }
    }
    mWindow->setFocusProxy(mWelcomeTextView);
}

bool WelcomeWindowController::readDocument()
{
    mDocumentLoaded = false;
    QFile page(mDocumentPath + QStringLiteral("/index.html"));
    if (!page.open(QIODevice::ReadOnly))
        return false;
    const QByteArray html = page.readAll();
    if (page.error() != QFileDevice::NoError || html.trimmed().isEmpty())
        return false;
    // The pictures are found next to the page.
    mWelcomeTextView->setSearchPaths({mDocumentPath});
    mWelcomeTextView->document()->setBaseUrl(QUrl::fromLocalFile(mDocumentPath + QLatin1Char('/')));
    mWelcomeTextView->setHtml(QString::fromUtf8(html));
    mDocumentLoaded = true;
    return true;
}

void WelcomeWindowController::centerWindow()
{
    QScreen *screen = QGuiApplication::screenAt(QCursor::pos());
    if (!screen)
        screen = QGuiApplication::primaryScreen();
    if (!screen)
        return;
    // The layout settles the window's size before it is placed.
    if (mWindow->layout())
        mWindow->layout()->activate();
    const QRect available = screen->availableGeometry();
    QSize size = mWindow->size().boundedTo(available.size() - QSize(40, 60));
    mWindow->resize(size.expandedTo(mWindow->minimumSize()));
    QRect frame = mWindow->frameGeometry();
    frame.moveCenter(available.center());
    mWindow->move(frame.topLeft());
}

void WelcomeWindowController::showWindow()
{
    QDialog *dialog = window();
    const bool placing = !dialog->isVisible();
    if (placing)
        centerWindow();
    mClosing = false;
    dialog->show();
    // Shown, the window has its frame: centred again with it.
    if (placing)
        centerWindow();
    dialog->raise();
    dialog->activateWindow();
}

bool WelcomeWindowController::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == mWindow && event->type() == QEvent::Close)
        windowDidClose();
    return QObject::eventFilter(watched, event);
}

void WelcomeWindowController::windowDidClose()
{
    if (mClosing)
        return;
    mClosing = true;
    Q_EMIT windowWillClose();
    if (mReleasedWhenClosed)
        deleteLater();
}
