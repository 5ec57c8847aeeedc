// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "ApplicationChooser.h"

#include "core/UserDefaults.h"
#include "foundation/PreferenceKeys.h"
#include "platform/DesktopApplications.h"

#include <QFileInfo>
#include <QSignalBlocker>
#include <QStandardItemModel>
#include <algorithm>
#include <gio/gdesktopappinfo.h>
#include <gio/gio.h>

namespace {

QIcon iconOf(GAppInfo *app)
{
    GIcon *icon = g_app_info_get_icon(app);
    if (!icon)
        return QIcon::fromTheme(QStringLiteral("application-x-executable"));
    if (G_IS_FILE_ICON(icon)) {
        GFile *file = g_file_icon_get_file(G_FILE_ICON(icon));
        char *path = g_file_get_path(file);
        const QIcon result(QString::fromUtf8(path));
        g_free(path);
        return result;
    }
    if (G_IS_THEMED_ICON(icon)) {
        const gchar *const *names = g_themed_icon_get_names(G_THEMED_ICON(icon));
        for (int i = 0; names && names[i]; ++i) {
            const QIcon themed = QIcon::fromTheme(QString::fromUtf8(names[i]));
            if (!themed.isNull())
                return themed;
        }
    }
    return QIcon::fromTheme(QStringLiteral("application-x-executable"));
}

QString stripped(const QString &identifier)
{
    return identifier.endsWith(QStringLiteral(".desktop")) ? identifier.chopped(8) : identifier;
}

QString nameOfDefault(const QString &mimeType)
{
    const QString id = DesktopApplications::defaultApplicationForMimeType(mimeType);
    if (id.isEmpty())
        return QString();
    GDesktopAppInfo *info = g_desktop_app_info_new(id.toUtf8().constData());
    if (!info)
        return QString();
    const QString name = QString::fromUtf8(g_app_info_get_display_name(G_APP_INFO(info)));
    g_object_unref(info);
    return name;
}

} // namespace

ApplicationChooser::ApplicationChooser(QWidget *parent) : QComboBox(parent)
{
    setObjectName(QStringLiteral("openWithApplication"));
    setAccessibleName(tr("Application that opens new screenshots"));
    setIconSize(QSize(16, 16));
    setSizeAdjustPolicy(QComboBox::AdjustToContents);

    const QString viewer = nameOfDefault(QStringLiteral("image/png"));
    addItem(QIcon::fromTheme(QStringLiteral("image-x-generic")),
            viewer.isEmpty() ? tr("Default image viewer") : tr("Default image viewer (%1)").arg(viewer),
            DesktopApplications::PreviewIdentifier);
    const QString editor = nameOfDefault(QStringLiteral("text/plain"));
    addItem(QIcon::fromTheme(QStringLiteral("text-x-generic")),
            editor.isEmpty() ? tr("Default text editor") : tr("Default text editor (%1)").arg(editor),
            DesktopApplications::TextEditIdentifier);
    const QList<Application> applications = imageApplications();
    if (!applications.isEmpty())
        insertSeparator(count());
    for (const Application &application : applications)
        addItem(application.icon, application.name, application.identifier);

    connect(this, &QComboBox::activated, this, &ApplicationChooser::chosen);
    connect(&UserDefaults::standardUserDefaults(), &UserDefaults::valueChanged, this,
            [this](const QString &key) {
                if (key == kOpenWithBundleIdentifierKey)
                    showStoredIdentifier();
            });
    showStoredIdentifier();
}

QList<ApplicationChooser::Application> ApplicationChooser::imageApplications()
{
    QList<Application> applications;
    GList *all = g_app_info_get_all_for_type("image/png");
    for (GList *node = all; node; node = node->next) {
        auto *app = G_APP_INFO(node->data);
        if (!g_app_info_should_show(app) || !g_app_info_get_id(app))
            continue;
        applications.append({QString::fromUtf8(g_app_info_get_id(app)),
                             QString::fromUtf8(g_app_info_get_display_name(app)), iconOf(app)});
    }
    g_list_free_full(all, g_object_unref);
    std::sort(applications.begin(), applications.end(), [](const Application &a, const Application &b) {
        return QString::localeAwareCompare(a.name, b.name) < 0;
    });
    return applications;
}

bool ApplicationChooser::sameIdentifier(const QString &a, const QString &b)
{
    return stripped(a) == stripped(b);
}

void ApplicationChooser::showStoredIdentifier()
{
    const QString stored = UserDefaults::standardUserDefaults().stringForKey(kOpenWithBundleIdentifierKey);
    const QSignalBlocker blocker(this);
    if (mMissingIndex >= 0) {
        removeItem(mMissingIndex);
        mMissingIndex = -1;
    }
    for (int i = 0; i < count(); ++i) {
        if (!itemData(i).toString().isEmpty() && sameIdentifier(itemData(i).toString(), stored)) {
            setCurrentIndex(i);
            return;
        }
    }
    if (stored.isEmpty()) {
        setCurrentIndex(0);
        return;
    }
    // An application that is gone stays the choice until the user makes another one.
    mMissingIndex = count();
    addItem(QIcon::fromTheme(QStringLiteral("dialog-warning")),
            tr("%1 (not installed)").arg(stripped(stored)), stored);
    if (auto *items = qobject_cast<QStandardItemModel *>(model()))
        items->item(mMissingIndex)->setToolTip(tr("No installed application has the id %1.").arg(stored));
    setCurrentIndex(mMissingIndex);
}

void ApplicationChooser::chosen(int index)
{
    const QString identifier = itemData(index).toString();
    if (identifier.isEmpty() || index == mMissingIndex)
        return;
    UserDefaults &defaults = UserDefaults::standardUserDefaults();
    if (defaults.stringForKey(kOpenWithBundleIdentifierKey) != identifier)
        defaults.setObject(identifier, kOpenWithBundleIdentifierKey);
}
