// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "UpdatesPane.h"

#include "PreferenceBinder.h"
#include "core/UserDefaults.h"
#include "foundation/PreferenceKeys.h"

#include <QAction>
#include <QCheckBox>
#include <QDateTime>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLocale>
#include <QPushButton>

namespace {

// When the updater last looked for a new version.
const QString kLastCheckTimeKey = QStringLiteral("SULastCheckTime");

} // namespace

UpdatesPane::UpdatesPane(QObject *parent)
    : BasicPreferencePane({QStringLiteral("Updates"), tr("Updates"),
                           QStringLiteral(":/panes/Updates/icons/Updates.svg"),
                           tr("Checking for new versions of Corvex")},
                          parent)
{
}

QString UpdatesPane::lastCheckDescription()
{
    const QVariant value = UserDefaults::standardUserDefaults().objectForKey(kLastCheckTimeKey);
    const QDateTime when = value.typeId() == QMetaType::QDateTime ? value.toDateTime() : QDateTime();
    if (!when.isValid())
        return tr("Never");
    return QLocale().toString(when.toLocalTime(), QLocale::LongFormat);
}

QWidget *UpdatesPane::makeView()
{
    auto *view = new QWidget;
    auto *binder = new PreferenceBinder(view);

    auto *automatic = new QCheckBox(tr("&Check for updates automatically"), view);
    automatic->setObjectName(kCheckForUpdatesKey);
    automatic->setAccessibleName(tr("Check for updates automatically"));
    automatic->setToolTip(tr("The agent looks for a new version once a day."));
    binder->bindCheckBox(automatic, kCheckForUpdatesKey);
    // The user's choice here also answers the question asked at the second launch, in either direction.
    connect(automatic, &QCheckBox::clicked, view, [](bool checked) {
        UserDefaults::standardUserDefaults().setBool(checked, kSUEnableAutomaticChecksKey);
    });

    mCheckNow = new QPushButton(tr("Check &Now"), view);
    mCheckNow->setObjectName(QStringLiteral("checkNow"));
    mCheckNow->setAccessibleName(tr("Check for updates now"));
    mCheckNow->setEnabled(false);
    mCheckNow->setToolTip(tr("Corvex cannot check for updates from here."));
    connect(mCheckNow, &QPushButton::clicked, this, [this] {
        if (mAction && mAction->isEnabled())
            mAction->trigger();
    });

    auto *lastCheck = new QLabel(view);
    lastCheck->setObjectName(QStringLiteral("lastCheck"));
    lastCheck->setTextInteractionFlags(Qt::TextSelectableByMouse);
    binder->watch(kLastCheckTimeKey, [lastCheck] { lastCheck->setText(lastCheckDescription()); });

    auto *checkRow = new QHBoxLayout;
    checkRow->addWidget(mCheckNow);
    checkRow->addStretch();

    auto *form = new QFormLayout(view);
    form->setLabelAlignment(Qt::AlignRight | Qt::AlignTop);
    form->setFormAlignment(Qt::AlignLeft | Qt::AlignTop);
    form->setContentsMargins(20, 14, 20, 14);
    form->setVerticalSpacing(10);
    form->addRow(tr("Updates:"), automatic);
    form->addRow(QString(), checkRow);
    form->addRow(tr("Last checked:"), lastCheck);
    view->setMinimumWidth(460);
    return view;
}

void UpdatesPane::paneDidLoad()
{
    QWidget *view = paneView();
    QAction *action = view && view->window()
                          ? view->window()->findChild<QAction *>(QStringLiteral("checkForUpdatesAction"))
                          : nullptr;
    if (action == mAction)
        return;
    if (mAction)
        disconnect(mAction, nullptr, this, nullptr);
    mAction = action;
    if (mAction)
        connect(mAction, &QAction::changed, this, &UpdatesPane::followAction);
    followAction();
}

void UpdatesPane::followAction()
{
    if (!mCheckNow)
        return;
    const bool available = mAction && mAction->isEnabled();
    mCheckNow->setEnabled(available);
    mCheckNow->setToolTip(available ? tr("Looks for a new version of Corvex now.")
                                    : tr("Corvex cannot check for updates from here."));
}
