// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "preferences/PreferencePaneBundle.h"

#include "platform/PropertyList.h"
#include "preferences/SS_PreferencePaneProtocol.h"
#include "preferences/SS_PreferencePaneProvider.h"

#include <QDir>
#include <QFileInfo>
#include <QHash>
#include <QMetaType>
#include <QMutex>
#include <QPluginLoader>

namespace {

// Principal class name → the canonical path of the bundle that provided it.
QHash<QString, QString> &knownClasses()
{
    static QHash<QString, QString> classes;
    return classes;
}

QMutex &knownClassesMutex()
{
    static QMutex mutex;
    return mutex;
}

QVariantMap infoDictionary(const QString &bundlePath)
{
    const QString plistPath = QDir(bundlePath).filePath(QStringLiteral("Contents/Info.plist"));
    const QVariant info = PropertyList::readFile(plistPath);
    return info.typeId() == QMetaType::QVariantMap ? info.toMap() : QVariantMap();
}

QString canonicalBundlePath(const QString &bundlePath)
{
    const QString canonical = QFileInfo(bundlePath).canonicalFilePath();
    return canonical.isEmpty() ? QDir::cleanPath(QFileInfo(bundlePath).absoluteFilePath()) : canonical;
}

} // namespace

QString PreferencePaneBundle::pluginPath(const QString &bundlePath)
{
    const QVariantMap info = infoDictionary(bundlePath);
    if (info.isEmpty())
        return QString();
    QString executable = info.value(QStringLiteral("CFBundleExecutable")).toString();
    if (executable.isEmpty())
        executable = QStringLiteral("lib") + QFileInfo(bundlePath).completeBaseName() + QStringLiteral(".so");
    return QDir(bundlePath).filePath(QStringLiteral("Contents/") + executable);
}

bool PreferencePaneBundle::isKnownClass(const QString &className, const QString &bundlePath)
{
    if (QMetaType::fromName(className.toUtf8()).isValid() ||
        QMetaType::fromName((className + QLatin1Char('*')).toUtf8()).isValid())
        return true;
    QMutexLocker locker(&knownClassesMutex());
    const auto found = knownClasses().constFind(className);
    return found != knownClasses().constEnd() && found.value() != canonicalBundlePath(bundlePath);
}

bool PreferencePaneBundle::activatePane(const QString &path, QList<QObject *> *panes,
                                        const MessageHandler &message)
{
    const QVariantMap info = infoDictionary(path);
    const QString plugin = pluginPath(path);
    if (info.isEmpty() || !QFileInfo(plugin).isFile()) {
        message(QStringLiteral("Could not initialize bundle: %1").arg(path));
        return false;
    }

    const QString className = info.value(QStringLiteral("NSPrincipalClass")).toString();
    if (className.isEmpty()) {
        message(QStringLiteral("Could not obtain name of Principal Class for bundle: %1").arg(path));
        return false;
    }
    if (isKnownClass(className, path)) {
        message(
            QStringLiteral("Did not load bundle: %1 because its Principal Class was already used in another "
                           "Preference pane.")
                .arg(path));
        return false;
    }

    const QString refusal =
        QStringLiteral("Did not load bundle: %1 because its Principal Class is either not an "
                       "NSObject subclass, or does not conform to the PreferencePane Protocol.")
            .arg(path);
    QPluginLoader loader(plugin);
    // Every symbol is resolved now, so that a bundle built against another program fails here, not later.
    loader.setLoadHints(QLibrary::ResolveAllSymbolsHint);
    QObject *root = loader.instance();
    if (!root) {
        message(refusal);
        message(loader.errorString());
        return false;
    }
    auto *provider = qobject_cast<SS_PreferencePaneProvider *>(root);
    if (!provider || QString::fromUtf8(root->metaObject()->className()) != className) {
        message(refusal);
        return false;
    }
    {
        QMutexLocker locker(&knownClassesMutex());
        knownClasses().insert(className, canonicalBundlePath(path));
    }

    for (QObject *pane : provider->preferencePanes()) {
        if (pane && qobject_cast<SS_PreferencePaneProtocol *>(pane))
            panes->append(pane);
        else
            message(QStringLiteral("Did not load a pane of bundle: %1 because it does not conform to the "
                                   "PreferencePane Protocol.")
                        .arg(path));
    }
    return true;
}
