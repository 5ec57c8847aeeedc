// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "GeneralPane.h"

#include "FavoriteFoldersEditor.h"
#include "PreferenceBinder.h"
#include "core/AppUserDefaults.h"
#include "foundation/PreferenceKeys.h"
#include "platform/DesktopScreenshotSettings.h"

#include <QCheckBox>
#include <QDir>
#include <QFormLayout>
#include <QLabel>
#include <QListWidget>
#include <QVBoxLayout>

namespace {

QString toolName(DesktopScreenshotSettings::Tool tool)
{
    switch (tool) {
    case DesktopScreenshotSettings::Tool::Gnome:
        return QStringLiteral("GNOME Screenshot");
    case DesktopScreenshotSettings::Tool::Spectacle:
        return QStringLiteral("Spectacle");
    case DesktopScreenshotSettings::Tool::Flameshot:
        return QStringLiteral("Flameshot");
    case DesktopScreenshotSettings::Tool::None:
        break;
    }
    return QString();
}

QString tildePath(const QString &path)
{
    const QString home = QDir::homePath();
    if (path == home || path.startsWith(home + QLatin1Char('/')))
        return QStringLiteral("~") + path.mid(home.size());
    return path;
}

QCheckBox *checkBox(const QString &text, const QString &key, PreferenceBinder *binder, QWidget *parent)
{
    auto *box = new QCheckBox(text, parent);
    box->setObjectName(key);
    box->setAccessibleName(QString(text).remove(QLatin1Char('&')));
    binder->bindCheckBox(box, key);
    return box;
}

QVBoxLayout *column(std::initializer_list<QWidget *> widgets)
{
    auto *layout = new QVBoxLayout;
    layout->setSpacing(4);
    for (QWidget *widget : widgets)
        layout->addWidget(widget);
    return layout;
}

} // namespace

GeneralPane::GeneralPane(QObject *parent)
    : BasicPreferencePane({QStringLiteral("General"), tr("General"),
                           QStringLiteral(":/panes/General/icons/General.svg"),
                           tr("The renaming window, start-up, the tray icon and favourite folders")},
                          parent)
{
}

QString GeneralPane::screenshotServiceDescription()
{
    AppUserDefaults &service = AppUserDefaults::sharedScreencaptureDefaults();
    const DesktopScreenshotSettings desktop = DesktopScreenshotSettings::current();
    QString location = service.stringForKey(kScreencaptureLocationKey);
    QString type = service.stringForKey(kScreencaptureTypeKey);
    QStringList sources;
    if (!location.isEmpty() || !type.isEmpty())
        sources.append(tr("the screen capture settings"));
    if ((location.isEmpty() && !desktop.location().isEmpty()) ||
        (type.isEmpty() && !desktop.type().isEmpty())) {
        if (desktop.tool() != DesktopScreenshotSettings::Tool::None)
            sources.append(toolName(desktop.tool()));
    }
    if (location.isEmpty())
        location = desktop.location();
    if (type.isEmpty())
        type = desktop.type();

    QString text = location.isEmpty() ? tr("An unknown folder") : tildePath(location);
    text +=
        QLatin1Char(' ') + (type.isEmpty() ? tr("in an unknown format") : tr("as %1").arg(type.toUpper()));
    if (!sources.isEmpty())
        text += QLatin1Char(' ') + tr("(settings of %1)").arg(sources.join(tr(" and ")));
    return text;
}

QWidget *GeneralPane::makeView()
{
    auto *view = new QWidget;
    auto *binder = new PreferenceBinder(view);

    QCheckBox *showWindow =
        checkBox(tr("&Show the renaming window for new screenshots"), kShowCorvexWindowKey, binder, view);
    QCheckBox *lastFolder = checkBox(tr("Start in the &last used folder and format"),
                                     kUseLastDirectoryAndExtensionValuesKey, binder, view);
    QCheckBox *hideExtension = checkBox(tr("&Hide file name extensions"), kHideExtensionKey, binder, view);
    QCheckBox *quitAfterLast = checkBox(tr("&Quit Corvex when the last renaming window closes"),
                                        kQuitAppAfterLastWindowClosedKey, binder, view);
    QCheckBox *startAtLogIn = checkBox(tr("Start Corvex when you l&og in"), kStartAtLogInKey, binder, view);
    QCheckBox *keepAgent = checkBox(tr("&Keep the agent running when Corvex quits"),
                                    kAllowAgentToRunInBackgroundKey, binder, view);
    keepAgent->setToolTip(tr("The agent applies the automatic steps to new screenshots; without it, nothing "
                             "happens to a screenshot while Corvex is not running."));
    QCheckBox *showIcon = checkBox(tr("Show the Corvex icon in the &tray"), kShowMenuIconKey, binder, view);
    QCheckBox *grayIcon = checkBox(tr("Draw the icon in &grey"), kGrayscaleMenuIconKey, binder, view);
    binder->enableWhile(grayIcon, kShowMenuIconKey);

    mScreenshotService = new QLabel(screenshotServiceDescription(), view);
    mScreenshotService->setObjectName(QStringLiteral("screenshotService"));
    mScreenshotService->setTextInteractionFlags(Qt::TextSelectableByMouse);
    mScreenshotService->setWordWrap(true);
    // The whole width of the column, so that it wraps only what does not fit there.
    mScreenshotService->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Preferred);
    mScreenshotService->setAlignment(Qt::AlignLeft | Qt::AlignTop);

    mFavorites = new FavoriteFoldersEditor(view);
    auto *favoritesHint =
        new QLabel(tr("Ctrl+1 to Ctrl+9 choose these folders in the renaming window."), view);
    favoritesHint->setEnabled(false);
    auto *favoritesLabel = new QLabel(tr("&Favourite folders:"), view);
    favoritesLabel->setBuddy(mFavorites->listWidget());

    auto *indented = new QHBoxLayout;
    indented->setContentsMargins(20, 0, 0, 0);
    indented->addWidget(grayIcon);

    auto *form = new QFormLayout(view);
    form->setLabelAlignment(Qt::AlignRight | Qt::AlignTop);
    form->setFormAlignment(Qt::AlignLeft | Qt::AlignTop);
    form->setFieldGrowthPolicy(QFormLayout::ExpandingFieldsGrow);
    form->setRowWrapPolicy(QFormLayout::DontWrapRows);
    form->setContentsMargins(20, 14, 20, 14);
    form->setVerticalSpacing(10);
    form->addRow(tr("New screenshots:"), column({showWindow}));
    form->addRow(tr("Renaming window:"), column({lastFolder, hideExtension, quitAfterLast}));
    form->addRow(tr("Start-up:"), column({startAtLogIn, keepAgent}));
    auto *tray = column({showIcon});
    tray->addLayout(indented);
    form->addRow(tr("Tray:"), tray);
    form->addRow(tr("Desktop saves:"), mScreenshotService);
    auto *favorites = column({mFavorites, favoritesHint});
    form->addRow(favoritesLabel, favorites);

    view->setMinimumWidth(560);
    // As low as the controls allow, so that the pane fits on a small or magnified screen; the favourites list
    // scrolls.
    view->resize(view->sizeHint().width(), view->minimumSizeHint().height());
    return view;
}

void GeneralPane::paneDidLoad()
{
    if (mScreenshotService)
        mScreenshotService->setText(screenshotServiceDescription());
    if (mFavorites)
        mFavorites->reload();
}
