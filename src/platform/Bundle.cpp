// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/Bundle.h"

#include "platform/PropertyList.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>

namespace {

QString infoPlistPath(const QString &bundlePath)
{
    return bundlePath + QStringLiteral("/Contents/Info.plist");
}

} // namespace

Bundle::Bundle(const QString &bundlePath)
{
    if (!isBundleFolder(bundlePath))
        return;
    const QVariant info = PropertyList::readFile(infoPlistPath(bundlePath));
    if (info.typeId() != QMetaType::QVariantMap)
        return;
    mInfoDictionary = info.toMap();
    mBundlePath = QDir::cleanPath(QFileInfo(bundlePath).absoluteFilePath());
}

Bundle Bundle::bundleContainingPath(const QString &path)
{
    const QString bundlePath = bundlePathContainingPath(path);
    return bundlePath.isNull() ? Bundle() : Bundle(bundlePath);
}

Bundle Bundle::mainBundle()
{
    const QString executable = QCoreApplication::applicationFilePath();
    return executable.isEmpty() ? Bundle() : bundleContainingPath(executable);
}

bool Bundle::isBundleFolder(const QString &path)
{
    if (!path.endsWith(QLatin1String(".app")) && !path.endsWith(QLatin1String(".app/")))
        return false;
    const QFileInfo folder(path);
    return folder.isDir() && QFileInfo(infoPlistPath(path)).isFile();
}

QString Bundle::bundlePathContainingPath(const QString &path)
{
    if (path.isEmpty())
        return QString();
    QString current = QDir::cleanPath(QFileInfo(path).absoluteFilePath());
    while (true) {
        if (current.endsWith(QLatin1String(".app")) && isBundleFolder(current))
            return current;
        const qsizetype slash = current.lastIndexOf(QLatin1Char('/'));
        if (slash <= 0)
            return QString();
        current.truncate(slash);
    }
}

QString Bundle::stringValue(const char *key) const
{
    const QVariant value = mInfoDictionary.value(QString::fromLatin1(key));
    return value.typeId() == QMetaType::QString ? value.toString() : QString();
}

QString Bundle::bundleIdentifier() const
{
    return stringValue("CFBundleIdentifier");
}

QString Bundle::bundleVersion() const
{
    return stringValue("CFBundleVersion");
}

QString Bundle::shortVersionString() const
{
    return stringValue("CFBundleShortVersionString");
}

QString Bundle::bundleName() const
{
    return stringValue("CFBundleName");
}

QString Bundle::executablePath() const
{
    if (!isValid())
        return QString();
    QString name = stringValue("CFBundleExecutable");
    if (name.isEmpty())
        name = QFileInfo(mBundlePath).completeBaseName();
    return mBundlePath + QStringLiteral("/Contents/MacOS/") + name;
}

QString Bundle::resourcePath() const
{
    return isValid() ? mBundlePath + QStringLiteral("/Contents/Resources") : QString();
}
