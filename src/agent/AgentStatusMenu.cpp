// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "agent/AgentStatusMenu.h"
#include "agent/UpdateScheduler.h"
#include "platform/Bundle.h"

#include "logging/Log.h"

#include <QAction>
#include <QCursor>
#include <QFileInfo>
#include <QMenu>
#include <QPainter>
#include <QPainterPath>
#include <QPixmap>
#include <QSystemTrayIcon>

namespace {

// A camera body with a lens: the outline of a screenshot tool, readable at tray sizes.
QPixmap drawIcon(int size, const QColor &color)
{
    QPixmap pixmap(size, size);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    painter.setRenderHint(QPainter::Antialiasing);
    const qreal unit = size / 16.0;
    QPainterPath body;
    body.addRoundedRect(QRectF(1 * unit, 4 * unit, 14 * unit, 10 * unit), 2 * unit, 2 * unit);
    QPainterPath hump;
    hump.addRoundedRect(QRectF(5 * unit, 2 * unit, 6 * unit, 3 * unit), 1 * unit, 1 * unit);
    QPainterPath lens;
    lens.addEllipse(QPointF(8 * unit, 9 * unit), 3.2 * unit, 3.2 * unit);
    QPainterPath pupil;
    pupil.addEllipse(QPointF(8 * unit, 9 * unit), 1.6 * unit, 1.6 * unit);
    painter.fillPath((body.united(hump)).subtracted(lens).united(pupil), color);
    return pixmap;
}

} // namespace

AgentStatusMenu::AgentStatusMenu(QObject *parent) : QObject(parent) {}

AgentStatusMenu::~AgentStatusMenu()
{
    delete mTrayIcon;
    delete mMenu;
}

QIcon AgentStatusMenu::makeIcon(bool grayscale)
{
    const QColor color = grayscale ? QColor(0x80, 0x80, 0x80) : QColor(0x2b, 0x5c, 0x9a);
    // The installed symbolic icon, else the one in the application's bundle, painted in the colour; drawn
    // here only when neither is there.
    QIcon symbolic = QIcon::fromTheme(QStringLiteral("com.ostrel.Corvex-symbolic"));
    if (symbolic.isNull()) {
        const QString file = UpdateScheduler::applicationBundle().resourcePath() +
                             QStringLiteral("/icons/hicolor/symbolic/apps/com.ostrel.Corvex-symbolic.svg");
        if (QFileInfo(file).isFile())
            symbolic = QIcon(file);
    }
    QIcon icon;
    for (const int size : {16, 22, 24, 32, 48, 64}) {
        QPixmap pixmap = symbolic.isNull() ? QPixmap() : symbolic.pixmap(size, size);
        if (pixmap.isNull()) {
            icon.addPixmap(drawIcon(size, color));
            continue;
        }
        QPainter painter(&pixmap);
        painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
        painter.fillRect(pixmap.rect(), color);
        painter.end();
        icon.addPixmap(pixmap);
    }
    return icon;
}

QMenu *AgentStatusMenu::menu()
{
    if (mMenu)
        return mMenu;
    mMenu = new QMenu;
    connect(mMenu->addAction(tr("Corvex Preferences…")), &QAction::triggered, this,
            &AgentStatusMenu::preferencesRequested);
    connect(mMenu->addAction(tr("Show Log")), &QAction::triggered, this,
            &AgentStatusMenu::logWindowRequested);
    mPauseAction = mMenu->addAction(tr("Pause Automatic Steps"));
    mPauseAction->setCheckable(true);
    mPauseAction->setChecked(mPaused);
    connect(mPauseAction, &QAction::toggled, this, [this](bool paused) {
        mPaused = paused;
        Q_EMIT pauseToggled(paused);
    });
    mMenu->addSeparator();
    connect(mMenu->addAction(tr("Quit Corvex Agent")), &QAction::triggered, this,
            &AgentStatusMenu::quitRequested);
    return mMenu;
}

bool AgentStatusMenu::setVisible(bool visible)
{
    if (!visible) {
        if (mTrayIcon)
            mTrayIcon->hide();
        return false;
    }
    if (!QSystemTrayIcon::isSystemTrayAvailable()) {
        if (!mNoTrayLogged)
            DDLogInfo(QStringLiteral("This desktop has no system tray: the menu icon is not shown"));
        mNoTrayLogged = true;
        return false;
    }
    if (!mTrayIcon) {
        mTrayIcon = new QSystemTrayIcon(makeIcon(mGrayscale));
        mTrayIcon->setToolTip(QStringLiteral("Corvex"));
        mTrayIcon->setContextMenu(menu());
        connect(mTrayIcon, &QSystemTrayIcon::activated, this, &AgentStatusMenu::trayIconActivated);
    }
    mTrayIcon->show();
    return mTrayIcon->isVisible();
}

void AgentStatusMenu::trayIconActivated(QSystemTrayIcon::ActivationReason reason)
{
    // A left click opens the menu too, as panels of GNOME and KDE do; the right click is the tray's own.
    if (reason == QSystemTrayIcon::Trigger && !menu()->isVisible())
        menu()->popup(QCursor::pos());
}

bool AgentStatusMenu::isVisible() const
{
    return mTrayIcon && mTrayIcon->isVisible();
}

void AgentStatusMenu::setGrayscale(bool grayscale)
{
    if (grayscale == mGrayscale)
        return;
    mGrayscale = grayscale;
    if (mTrayIcon)
        mTrayIcon->setIcon(makeIcon(grayscale));
}

void AgentStatusMenu::setPaused(bool paused)
{
    mPaused = paused;
    if (mPauseAction)
        mPauseAction->setChecked(paused);
}
