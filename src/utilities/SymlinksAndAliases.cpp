// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "utilities/SymlinksAndAliases.h"

#include "platform/HomeFolder.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QStringList>
#include <climits>
#include <sys/stat.h>
#include <unistd.h>

namespace {

// Links followed in a row before giving up, as the kernel does (its ELOOP limit).
constexpr int MaximumLinksInARow = 40;

QString joinComponents(const QStringList &components, bool absolute)
{
    const QString joined = components.join(QLatin1Char('/'));
    return absolute ? QLatin1Char('/') + joined : joined;
}

bool statusOf(const QString &path, struct stat *status)
{
    return lstat(QFile::encodeName(path).constData(), status) == 0;
}

} // namespace

QString stringByStandardizingPath(const QString &path)
{
    const QString expanded = expandTildeInPath(path);
    const bool absolute = expanded.startsWith(QLatin1Char('/'));
    QStringList components;
    for (const QString &component : expanded.split(QLatin1Char('/'), Qt::SkipEmptyParts)) {
        if (component == QLatin1String("."))
            continue;
        if (component != QLatin1String("..")) {
            components.append(component);
            continue;
        }
        if (!absolute) {
            components.append(component);
            continue;
        }
        if (components.isEmpty())
            continue; // "/.." is "/"
        const QString real = QFileInfo(joinComponents(components, true)).canonicalFilePath();
        if (real.isEmpty()) {
            components.removeLast();
        } else {
            components = real.split(QLatin1Char('/'), Qt::SkipEmptyParts);
            if (!components.isEmpty())
                components.removeLast();
        }
    }
    if (absolute)
        return joinComponents(components, true);
    return components.isEmpty() && !expanded.isEmpty() ? QStringLiteral(".")
                                                       : joinComponents(components, false);
}

std::optional<QString> mg_stringByConditionallyResolvingSymlink(const QString &path)
{
    const QByteArray nativePath = QFile::encodeName(path);
    QByteArray target(PATH_MAX, '\0');
    for (;;) {
        const ssize_t length = readlink(nativePath.constData(), target.data(), size_t(target.size()));
        if (length < 0)
            return std::nullopt;
        if (length < target.size()) {
            target.truncate(length);
            break;
        }
        target.resize(target.size() * 2);
    }
    const QString destination = QFile::decodeName(target);
    if (destination.startsWith(QLatin1Char('/')))
        return destination;
    const QString folder = path.left(path.lastIndexOf(QLatin1Char('/')) + 1);
    return stringByStandardizingPath(folder + destination);
}

std::optional<QString> mg_stringByConditionallyResolvingAlias(const QString &path)
{
    Q_UNUSED(path)
    return std::nullopt;
}

QString mg_stringByResolvingSymlink(const QString &path)
{
    return mg_stringByConditionallyResolvingSymlink(path).value_or(path);
}

QString mg_stringByResolvingAlias(const QString &path)
{
    return mg_stringByConditionallyResolvingAlias(path).value_or(path);
}

std::optional<QString> mg_stringByIterativelyResolvingSymlinkOrAlias(const QString &path)
{
    QString current = path;
    struct stat status
    {
    };
    if (!statusOf(current, &status))
        return std::nullopt;
    for (int links = 0;;) {
        if (S_ISLNK(status.st_mode)) {
            if (++links > MaximumLinksInARow)
                return std::nullopt;
            const std::optional<QString> target = mg_stringByConditionallyResolvingSymlink(current);
            if (!target)
                return std::nullopt;
            current = *target;
        } else if (S_ISDIR(status.st_mode)) {
            return current;
        } else {
            const std::optional<QString> target = mg_stringByConditionallyResolvingAlias(current);
            if (!target)
                return current;
            current = *target;
        }
        if (!statusOf(current, &status))
            return std::nullopt;
    }
}

std::optional<QString> mg_stringByResolvingSymlinksAndAliases(const QString &path)
{
    const QString standardized = stringByStandardizingPath(path);
    if (!standardized.startsWith(QLatin1Char('/')))
        return std::nullopt;
    QString prefix = QStringLiteral("/");
    for (const QString &component : standardized.split(QLatin1Char('/'), Qt::SkipEmptyParts)) {
        const QString next = prefix.endsWith(QLatin1Char('/'))
                                 ? QString(prefix + component)
                                 : QString(prefix + QLatin1Char('/') + component);
        const std::optional<QString> resolved = mg_stringByIterativelyResolvingSymlinkOrAlias(next);
        if (!resolved)
            return std::nullopt;
        prefix = *resolved;
    }
    return prefix;
}
