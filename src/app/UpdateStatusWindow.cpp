// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/UpdateStatusWindow.h"
#include "app/WindowPlacement.h"

#include <QApplication>
#include <QGridLayout>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QIcon>
#include <QLabel>
#include <QLayout>
#include <QProgressBar>
#include <QPushButton>
#include <QStyle>

UpdateStatusWindow::UpdateStatusWindow(QWidget *parent)
    : QDialog(parent), mIconLabel(new QLabel(this)), mTitleLabel(new QLabel(this)),
      mMessageLabel(new QLabel(this)), mProgressBar(new QProgressBar(this)), mButton(new QPushButton(this))
{
    setWindowTitle(tr("Software Update"));
    setObjectName(QStringLiteral("UpdateStatusWindow"));
    const int iconSize = style()->pixelMetric(QStyle::PM_MessageBoxIconSize, nullptr, this) * 3 / 2;
    const QIcon icon = QIcon::fromTheme(QStringLiteral("com.ostrel.Corvex"), QApplication::windowIcon());
    if (!icon.isNull())
        mIconLabel->setPixmap(icon.pixmap(iconSize, iconSize));
    mIconLabel->setFixedSize(iconSize, iconSize);
    mIconLabel->setAlignment(Qt::AlignTop | Qt::AlignHCenter);

    QFont titleFont = mTitleLabel->font();
    titleFont.setBold(true);
    mTitleLabel->setFont(titleFont);
    mMessageLabel->setWordWrap(true);
    mMessageLabel->setTextInteractionFlags(Qt::TextSelectableByMouse);
    mMessageLabel->setMinimumWidth(320);
    mProgressBar->setTextVisible(false);
    mButton->setDefault(true);
    mButton->setAutoDefault(true);

    auto *layout = new QGridLayout(this);
    layout->setContentsMargins(20, 20, 20, 16);
    layout->setHorizontalSpacing(16);
    layout->addWidget(mIconLabel, 0, 0, 3, 1);
    layout->addWidget(mTitleLabel, 0, 1);
    layout->addWidget(mMessageLabel, 1, 1);
    layout->addWidget(mProgressBar, 2, 1);
    auto *buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->addWidget(mButton);
    layout->addLayout(buttons, 3, 1);
    layout->setSizeConstraint(QLayout::SetFixedSize);

    connect(mButton, &QPushButton::clicked, this, [this] { reject(); });
}

void UpdateStatusWindow::showChecking()
{
    setState(tr("Checking for updates…"), QString(), true, tr("Cancel"));
}

void UpdateStatusWindow::showUpToDate(const QString &displayVersion)
{
    setState(tr("You're up to date!"),
             tr("Corvex %1 is currently the newest version available.").arg(displayVersion), false, tr("OK"));
}

void UpdateStatusWindow::showError(const QString &message)
{
    setState(tr("Update Error!"), message, false, tr("OK"));
}

void UpdateStatusWindow::reject()
{
    if (mBusy) {
        mBusy = false;
        Q_EMIT cancelRequested();
    }
    QDialog::reject();
}

QString UpdateStatusWindow::titleText() const
{
    return mTitleLabel->text();
}

QString UpdateStatusWindow::messageText() const
{
    return mMessageLabel->text();
}

void UpdateStatusWindow::setState(const QString &title, const QString &message, bool busy,
                                  const QString &buttonText)
{
    // A longer text makes the window grow (showing a label does at once): it grows around its centre, where
    // the user is looking.
    const QPoint centre = geometry().center();
    mBusy = busy;
    mTitleLabel->setText(title);
    mMessageLabel->setText(message);
    mMessageLabel->setVisible(!message.isEmpty());
    mProgressBar->setVisible(busy);
    mProgressBar->setRange(0, busy ? 0 : 1);
    mButton->setText(buttonText);
    if (!isVisible()) {
        adjustSize();
        WindowPlacement::centerOnScreen(this, QGuiApplication::primaryScreen());
    } else {
        layout()->activate();
        adjustSize();
        QRect frame = geometry();
        frame.moveCenter(centre);
        setGeometry(frame);
    }
    show();
    raise();
    activateWindow();
    mButton->setFocus();
}
