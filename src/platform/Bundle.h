// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <QVariant>
#include <QVariantMap>

// An application bundle: a folder named "X.app" holding "Contents/Info.plist". Its Info.plist names the
// bundle's identifier, versions and executable; "Contents/MacOS" holds the executable, "Contents/Resources"
// the resources. A Bundle is a value: it reads the Info.plist once, when it is made.
class Bundle
{
public:
    // An invalid bundle.
    Bundle() = default;

    // The bundle at the path; invalid when the path is not a bundle folder or its Info.plist cannot be read
    // as a dictionary.
    explicit Bundle(const QString &bundlePath);

    // The innermost bundle the path lies in (the path itself counts when it is a bundle folder); invalid when
    // there is none. Symbolic links in the path are not resolved.
    static Bundle bundleContainingPath(const QString &path);

    // The bundle of the running program (from its executable's location); invalid when it runs outside a
    // bundle.
    static Bundle mainBundle();

    // True for a folder whose name ends in ".app" and that holds "Contents/Info.plist".
    static bool isBundleFolder(const QString &path);

    // The innermost bundle folder the path lies in, or a null string.
    static QString bundlePathContainingPath(const QString &path);

    bool isValid() const { return !mBundlePath.isEmpty(); }

    // The absolute, clean path of the bundle folder.
    QString bundlePath() const { return mBundlePath; }

    // The whole Info.plist dictionary, and one value of it (invalid when absent).
    QVariantMap infoDictionary() const { return mInfoDictionary; }
    QVariant objectForInfoDictionaryKey(const QString &key) const { return mInfoDictionary.value(key); }

    // "CFBundleIdentifier", "CFBundleVersion", "CFBundleShortVersionString", "CFBundleName": a null string
    // when absent or not a string.
    QString bundleIdentifier() const;
    QString bundleVersion() const;
    QString shortVersionString() const;
    QString bundleName() const;

    // "Contents/MacOS/<CFBundleExecutable>", the executable named after the bundle when the key is missing.
    QString executablePath() const;

    // "Contents/Resources".
    QString resourcePath() const;

private:
    QString stringValue(const char *key) const;

    QString mBundlePath;
    QVariantMap mInfoDictionary;
};
