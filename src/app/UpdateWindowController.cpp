// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/UpdateWindowController.h"

#include <QApplication>
#include <QDesktopServices>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QIcon>
#include <QLabel>
#include <QLocale>
#include <QProgressBar>
#include <QPushButton>
#include <QStackedWidget>
#include <QStyle>
#include <QTextBrowser>
#include <QVBoxLayout>

UpdateWindowController::UpdateWindowController(const SUAppcastItem &item, const QString &currentVersion,
                                               QWidget *parent)
    : QDialog(parent), mItem(item), mHeadlineLabel(new QLabel(this)), mInfoLabel(new QLabel(this)),
      mReleaseNotes(new QTextBrowser(this)), mBottom(new QStackedWidget(this))
{
    setObjectName(QStringLiteral("UpdateWindow"));
    setWindowTitle(tr("Software Update"));
    setAttribute(Qt::WA_DeleteOnClose);

    auto *icon = new QLabel(this);
    const int iconSize = style()->pixelMetric(QStyle::PM_MessageBoxIconSize, nullptr, this) * 2;
    const QIcon appIcon = QIcon::fromTheme(QStringLiteral("com.ostrel.Corvex"), QApplication::windowIcon());
    if (!appIcon.isNull())
        icon->setPixmap(appIcon.pixmap(iconSize, iconSize));
    icon->setFixedSize(iconSize, iconSize);
    icon->setAlignment(Qt::AlignTop | Qt::AlignHCenter);

    QFont headlineFont = mHeadlineLabel->font();
    headlineFont.setBold(true);
    headlineFont.setPointSizeF(headlineFont.pointSizeF() * 1.15);
    mHeadlineLabel->setFont(headlineFont);
    mHeadlineLabel->setText(tr("A new version of Corvex is available!"));
    mInfoLabel->setWordWrap(true);
    mInfoLabel->setText(tr("Corvex %1 is now available—you have %2. Would you like to download it now?")
                            .arg(item.displayVersionString(), currentVersion));

    auto *notesTitle = new QLabel(tr("Release Notes:"), this);
    QFont notesFont = notesTitle->font();
    notesFont.setBold(true);
    notesTitle->setFont(notesFont);
    // The notes are shown as the feed gives them; nothing is fetched from the network for them, and a link
    // opens in the browser.
    mReleaseNotes->setOpenLinks(false);
    connect(mReleaseNotes, &QTextBrowser::anchorClicked, this, [](const QUrl &url) {
        if (url.scheme() == QLatin1String("https") || url.scheme() == QLatin1String("http"))
            QDesktopServices::openUrl(url);
    });
    if (!item.itemDescription.isEmpty()) {
        mReleaseNotes->setHtml(item.itemDescription);
    } else if (item.releaseNotesURL.isValid()) {
        const QString link = item.releaseNotesURL.toString(QUrl::FullyEncoded).toHtmlEscaped();
        mReleaseNotes->setHtml(tr("<p>The release notes are on the web: <a href=\"%1\">%2</a></p>")
                                   .arg(link, item.releaseNotesURL.toDisplayString().toHtmlEscaped()));
    } else {
        mReleaseNotes->setPlainText(tr("No release notes were published with this version."));
    }
    mReleaseNotes->setMinimumSize(460, 220);

    mBottom->addWidget(makeOfferButtons());
    mBottom->addWidget(makeProgressPage());

    auto *layout = new QGridLayout(this);
    layout->setContentsMargins(20, 20, 20, 16);
    layout->setHorizontalSpacing(16);
    layout->addWidget(icon, 0, 0, 4, 1, Qt::AlignTop);
    layout->addWidget(mHeadlineLabel, 0, 1);
    layout->addWidget(mInfoLabel, 1, 1);
    layout->addWidget(notesTitle, 2, 1);
    layout->addWidget(mReleaseNotes, 3, 1);
    layout->addWidget(mBottom, 4, 1);
    layout->setRowStretch(3, 1);
    resize(620, 440);
}

QWidget *UpdateWindowController::makeOfferButtons()
{
    auto *page = new QWidget(this);
    auto *skip = new QPushButton(tr("Skip This Version"), page);
    auto *later = new QPushButton(tr("Remind Me Later"), page);
    mInstallButton = new QPushButton(tr("Install Update"), page);
    mInstallButton->setDefault(true);
    auto *row = new QHBoxLayout(page);
    row->setContentsMargins(0, 8, 0, 0);
    row->addWidget(skip);
    row->addStretch();
    row->addWidget(later);
    row->addWidget(mInstallButton);
    connect(skip, &QPushButton::clicked, this, [this] {
        Q_EMIT skipRequested();
        close();
    });
    connect(later, &QPushButton::clicked, this, [this] {
        Q_EMIT remindLaterRequested();
        close();
    });
    connect(mInstallButton, &QPushButton::clicked, this, [this] { Q_EMIT installRequested(); });
    return page;
}

QWidget *UpdateWindowController::makeProgressPage()
{
    auto *page = new QWidget(this);
    mStatusLabel = new QLabel(page);
    mProgressBar = new QProgressBar(page);
    mProgressBar->setTextVisible(false);
    mCancelButton = new QPushButton(tr("Cancel"), page);
    auto *column = new QVBoxLayout(page);
    column->setContentsMargins(0, 8, 0, 0);
    column->addWidget(mStatusLabel);
    auto *row = new QHBoxLayout;
    row->addWidget(mProgressBar, 1);
    row->addWidget(mCancelButton);
    column->addLayout(row);
    connect(mCancelButton, &QPushButton::clicked, this, [this] { Q_EMIT cancelRequested(); });
    return page;
}

void UpdateWindowController::showDownloadProgress(qint64 received, qint64 total)
{
    mBottom->setCurrentIndex(1);
    mCancelButton->setEnabled(true);
    const QLocale locale;
    if (total > 0) {
        // Progress in thousandths, so that archives past 2 GB still fit the bar's int range.
        mProgressBar->setRange(0, 1000);
        mProgressBar->setValue(int(received * 1000 / total));
        mStatusLabel->setText(tr("Downloading update… %1 of %2")
                                  .arg(locale.formattedDataSize(received), locale.formattedDataSize(total)));
    } else {
        mProgressBar->setRange(0, 0);
        mStatusLabel->setText(tr("Downloading update… %1").arg(locale.formattedDataSize(received)));
    }
}

void UpdateWindowController::showStep(const QString &text, bool last)
{
    mBottom->setCurrentIndex(1);
    mProgressBar->setRange(0, 0);
    mStatusLabel->setText(text);
    // Verifying, unpacking and replacing the bundle cannot be stopped half-way.
    mCancelButton->setEnabled(false);
    mClosable = last;
}

void UpdateWindowController::showOffer()
{
    mBottom->setCurrentIndex(0);
    mInstallButton->setFocus();
}

QString UpdateWindowController::headlineText() const
{
    return mHeadlineLabel->text() + QLatin1Char('\n') + mInfoLabel->text();
}

QString UpdateWindowController::releaseNotesText() const
{
    return mReleaseNotes->toPlainText();
}

QString UpdateWindowController::statusText() const
{
    return mBottom->currentIndex() == 1 ? mStatusLabel->text() : QString();
}

void UpdateWindowController::reject()
{
    // Escape or the close button: a running download is cancelled; closing the offer means "later".
    if (mBottom->currentIndex() == 1) {
        if (mCancelButton->isEnabled())
            Q_EMIT cancelRequested();
        // Once the update is installed, the application quitting closes the window.
        if (mCancelButton->isEnabled() || !mClosable)
            return;
        QDialog::reject();
        return;
    }
    Q_EMIT remindLaterRequested();
    QDialog::reject();
}
