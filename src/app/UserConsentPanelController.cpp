// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/UserConsentPanelController.h"

#include "core/UserDefaults.h"

#include <QCheckBox>
#include <QDialog>
#include <QDialogButtonBox>
#include <QGuiApplication>
#include <QLabel>
#include <QPushButton>
#include <QScreen>
#include <QVBoxLayout>

UserConsentPanelController::UserConsentPanelController(QObject *parent) : QObject(parent) {}

UserConsentPanelController::~UserConsentPanelController()
{
    delete mWindow;
}

QDialog *UserConsentPanelController::window()
{
    if (mWindow)
        return mWindow;
    mWindow = new QDialog(nullptr, Qt::Dialog | Qt::WindowTitleHint | Qt::CustomizeWindowHint);
    mWindow->setObjectName(windowNibName());
    mWindow->setWindowTitle(tr("Corvex"));
    auto *title = new QLabel(tr("<b>Start Corvex when you log in?</b>"), mWindow);
    auto *text =
        new QLabel(tr("Corvex notices new screenshots with a small helper that runs in the background. "
                      "It can start by itself each time you log in, so that no screenshot is missed. "
                      "You can change this later in the preferences."),
                   mWindow);
    text->setWordWrap(true);
    mStartAtLogInCheckBox = new QCheckBox(tr("Start Corvex at log in"), mWindow);
    UserDefaults &defaults = UserDefaults::standardUserDefaults();
    mStartAtLogInCheckBox->setChecked(defaults.boolForKey(QStringLiteral("startAtLogIn")));
    connect(mStartAtLogInCheckBox, &QCheckBox::toggled, this, [](bool checked) {
        UserDefaults::standardUserDefaults().setBool(checked, QStringLiteral("startAtLogIn"));
    });
    auto *buttons = new QDialogButtonBox(QDialogButtonBox::Ok, mWindow);
    connect(buttons, &QDialogButtonBox::accepted, this, &UserConsentPanelController::okAction);
    auto *layout = new QVBoxLayout(mWindow);
    layout->addWidget(title);
    layout->addWidget(text);
    layout->addWidget(mStartAtLogInCheckBox);
    layout->addWidget(buttons);
    mWindow->setFixedWidth(420);
    return mWindow;
}

QCheckBox *UserConsentPanelController::startAtLogInCheckBox()
{
    window();
    return mStartAtLogInCheckBox;
}

int UserConsentPanelController::runModal()
{
    QDialog *panel = window();
    panel->adjustSize();
    if (QScreen *screen = QGuiApplication::primaryScreen()) {
        QRect frame = panel->frameGeometry();
        frame.moveCenter(screen->availableGeometry().center());
        panel->move(frame.topLeft());
    }
    panel->setWindowModality(Qt::ApplicationModal);
    const int code = panel->exec();
    panel->hide();
    return code;
}

void UserConsentPanelController::okAction()
{
    if (mWindow)
        mWindow->done(1);
}
