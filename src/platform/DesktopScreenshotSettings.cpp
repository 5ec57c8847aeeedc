// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/DesktopScreenshotSettings.h"

#include "platform/DesktopConfigFiles_p.h"
#include "platform/PreferenceFile_p.h"

#include <QDir>
#include <QFileInfo>
#include <QMutex>
#include <QSet>
#include <libintl.h>
#include <mutex>
#include <optional>

namespace {

using namespace DesktopConfigFiles;
using Environment = DesktopScreenshotSettings::Environment;

QString userDirsPath(const Environment &env)
{
    return env.configHome + QStringLiteral("/user-dirs.dirs");
}

QString spectaclePath(const Environment &env)
{
    return env.configHome + QStringLiteral("/spectaclerc");
}

QString flameshotPath(const Environment &env)
{
    return env.configHome + QStringLiteral("/flameshot/flameshot.ini");
}

QString translated(const Environment &env, const char *message)
{
    return env.translate ? env.translate(message) : QString::fromUtf8(message);
}

// The literal start of a file-name template: up to the first placeholder, without a trailing separator.
QString literalPrefix(const QString &pattern, QLatin1String placeholderStarts)
{
    qsizetype end = 0;
    while (end < pattern.size() && !QString(placeholderStarts).contains(pattern.at(end)))
        ++end;
    QString prefix = pattern.left(end);
    prefix = prefix.mid(prefix.lastIndexOf(QLatin1Char('/')) + 1); // a template may name subfolders
    while (!prefix.isEmpty() && QStringLiteral(" _-.").contains(prefix.back()))
        prefix.chop(1);
    return prefix;
}

QString extensionFromFormat(const QString &format)
{
    QString type = format.trimmed().toLower();
    if (type.startsWith(QLatin1Char('.')))
        type.remove(0, 1);
    return type;
}

// GNOME Shell names files "Screenshot From <date>" (older versions "Screenshot from <date>"), both
// translated.
QString gnomeName(const Environment &env)
{
    QStringList prefixes;
    for (const char *message : {"Screenshot From %s", "Screenshot from %s"}) {
        const QString text = translated(env, message);
        if (text != QLatin1String(message) && text.contains(QLatin1String("%s")))
            prefixes.append(text.left(text.indexOf(QLatin1String("%s"))));
    }
    if (prefixes.isEmpty())
        return QStringLiteral("Screenshot");
    QString common = prefixes.first();
    for (const QString &prefix : prefixes) {
        qsizetype n = 0;
        while (n < common.size() && n < prefix.size() && common.at(n) == prefix.at(n))
            ++n;
        // Keep whole words only.
        const bool wordEnds = n == common.size() && n == prefix.size();
        common = common.left(n);
        if (!wordEnds && !common.isEmpty() && !common.back().isSpace())
            common = common.left(qMax<qsizetype>(0, common.lastIndexOf(QLatin1Char(' '))));
    }
    common = common.trimmed();
    return common.isEmpty() ? QStringLiteral("Screenshot") : common;
}

// The first value found for any of the keys (in this order), in any group.
QString iniLookup(const IniValues &ini, std::initializer_list<const char *> keys)
{
    for (const char *key : keys) {
        const QString suffix = QLatin1Char('/') + QLatin1String(key);
        for (auto it = ini.cbegin(); it != ini.cend(); ++it) {
            if (it.key().endsWith(suffix) && !it.value().trimmed().isEmpty())
                return it.value();
        }
    }
    return {};
}

bool desktopIs(const Environment &env, std::initializer_list<const char *> names)
{
    const QStringList desktops = env.currentDesktop.split(QLatin1Char(':'), Qt::SkipEmptyParts);
    for (const QString &desktop : desktops) {
        for (const char *name : names) {
            if (desktop.trimmed().compare(QLatin1String(name), Qt::CaseInsensitive) == 0)
                return true;
        }
    }
    return false;
}

} // namespace

DesktopScreenshotSettings::Environment DesktopScreenshotSettings::Environment::fromProcess()
{
    Environment env;
    env.home = QDir::homePath();
    env.configHome = qEnvironmentVariable("XDG_CONFIG_HOME");
    if (env.configHome.isEmpty() || QDir::isRelativePath(env.configHome))
        env.configHome = env.home + QStringLiteral("/.config");
    env.currentDesktop = qEnvironmentVariable("XDG_CURRENT_DESKTOP");
    env.translate = [](const char *message) {
        static std::once_flag once;
        std::call_once(once, [] { bind_textdomain_codeset("gnome-shell", "UTF-8"); });
        return QString::fromUtf8(dgettext("gnome-shell", message));
    };
    return env;
}

DesktopScreenshotSettings DesktopScreenshotSettings::detect(const Environment &env)
{
    DesktopScreenshotSettings settings;
    if (desktopIs(env, {"KDE"}))
        settings.mTool = Tool::Spectacle;
    else if (desktopIs(env, {"GNOME", "GNOME-Classic", "GNOME-Flashback", "Unity", "ubuntu"}))
        settings.mTool = Tool::Gnome;
    else if (QFileInfo::exists(flameshotPath(env)))
        settings.mTool = Tool::Flameshot;
    else if (QFileInfo::exists(spectaclePath(env)))
        settings.mTool = Tool::Spectacle;
    else
        return settings;

    const QHash<QString, QString> userDirs = readUserDirs(userDirsPath(env), env.home);
    const QString home = QDir::cleanPath(env.home);
    switch (settings.mTool) {
    case Tool::Gnome: {
        // GNOME Shell falls back on the home folder when no Pictures folder is configured.
        const QString pictures = userDirs.value(QStringLiteral("XDG_PICTURES_DIR"), home);
        settings.mLocation = QDir::cleanPath(pictures + QLatin1Char('/') + translated(env, "Screenshots"));
        settings.mType = QStringLiteral("png");
        settings.mName = gnomeName(env);
        break;
    }
    case Tool::Spectacle: {
        const IniValues ini = readIni(spectaclePath(env), IniDialect::KConfig, env.home);
        const QString pictures =
            userDirs.value(QStringLiteral("XDG_PICTURES_DIR"), home + QStringLiteral("/Pictures"));
        settings.mLocation =
            folderFromSetting(iniLookup(ini, {"imageSaveLocation", "defaultSaveLocation"}), env.home);
        if (settings.mLocation.isEmpty())
            settings.mLocation = pictures + QStringLiteral("/Screenshots");
        settings.mType =
            extensionFromFormat(iniLookup(ini, {"preferredImageFormat", "defaultSaveImageFormat"}));
        if (settings.mType.isEmpty())
            settings.mType = QStringLiteral("png");
        QString pattern = iniLookup(ini, {"imageFilenameTemplate", "saveFilenameFormat"});
        if (pattern.isEmpty())
            pattern = QStringLiteral("Screenshot_<yyyy><MM><dd>_<hh><mm><ss>");
        settings.mName = literalPrefix(pattern, QLatin1String("%<"));
        break;
    }
    case Tool::Flameshot: {
        const IniValues ini = readIni(flameshotPath(env), IniDialect::QSettings, env.home);
        settings.mLocation = folderFromSetting(ini.value(QStringLiteral("General/savePath")), env.home);
        if (settings.mLocation.isEmpty())
            settings.mLocation =
                userDirs.value(QStringLiteral("XDG_PICTURES_DIR"), home + QStringLiteral("/Pictures"));
        settings.mType = extensionFromFormat(ini.value(QStringLiteral("General/saveAsFileExtension")));
        if (settings.mType.isEmpty())
            settings.mType = QStringLiteral("png");
        QString pattern = ini.value(QStringLiteral("General/filenamePattern"));
        if (pattern.trimmed().isEmpty())
            pattern = QStringLiteral("%F_%H-%M");
        settings.mName = literalPrefix(pattern, QLatin1String("%"));
        break;
    }
    case Tool::None:
        break;
    }

    QSet<QString> general{home, home + QStringLiteral("/Pictures"), home + QStringLiteral("/Desktop")};
    for (const QString &dir : userDirs)
        general.insert(dir);
    if (!settings.mLocation.isEmpty() && !general.contains(settings.mLocation))
        settings.mDedicatedFolder = settings.mLocation;
    return settings;
}

DesktopScreenshotSettings DesktopScreenshotSettings::current()
{
    struct Key
    {
        QString desktop;
        QString configHome;
        QString home;
        PreferenceFileSignature files[3];
        bool operator==(const Key &other) const = default;
    };
    static QMutex mutex;
    static std::optional<Key> cachedKey;
    static DesktopScreenshotSettings cached;

    const Environment env = Environment::fromProcess();
    const Key key{env.currentDesktop,
                  env.configHome,
                  env.home,
                  {PreferenceFile::signatureOfPath(userDirsPath(env)),
                   PreferenceFile::signatureOfPath(spectaclePath(env)),
                   PreferenceFile::signatureOfPath(flameshotPath(env))}};
    QMutexLocker locker(&mutex);
    if (!cachedKey || !(*cachedKey == key)) {
        cached = detect(env);
        cachedKey = key;
    }
    return cached;
}

QVariant DesktopScreenshotSettings::valueForKey(const QString &key) const
{
    const QString *value = nullptr;
    if (key == QLatin1String("location"))
        value = &mLocation;
    else if (key == QLatin1String("type"))
        value = &mType;
    else if (key == QLatin1String("name"))
        value = &mName;
    if (!value || value->isEmpty())
        return {};
    return QVariant(*value);
}

bool DesktopScreenshotSettings::isDedicatedScreenshotFolder(const QString &folder) const
{
    if (mDedicatedFolder.isEmpty() || folder.isEmpty())
        return false;
    const QString cleaned = QDir::cleanPath(QDir(folder).absolutePath());
    if (cleaned == mDedicatedFolder)
        return true;
    const QString canonical = QFileInfo(cleaned).canonicalFilePath();
    return !canonical.isEmpty() && canonical == QFileInfo(mDedicatedFolder).canonicalFilePath();
}
