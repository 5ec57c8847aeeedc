// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <QVariantMap>

// The error object every failing operation reports with: a domain, a code and a dictionary of user
// information. Failures are returned, never thrown.
class CorvexError
{
public:
    // Domains.
    static inline const QString CocoaErrorDomain = QStringLiteral("NSCocoaErrorDomain");
    static inline const QString POSIXErrorDomain = QStringLiteral("NSPOSIXErrorDomain");
    static inline const QString CorvexErrorDomain = QStringLiteral("Corvex");

    // User-information keys.
    static inline const QString LocalizedDescriptionKey = QStringLiteral("NSLocalizedDescription");
    static inline const QString LocalizedFailureReasonErrorKey = QStringLiteral("NSLocalizedFailureReason");
    static inline const QString LocalizedRecoverySuggestionErrorKey =
        QStringLiteral("NSLocalizedRecoverySuggestion");
    static inline const QString URLErrorKey = QStringLiteral("NSURL");
    static inline const QString FilePathErrorKey = QStringLiteral("NSFilePath");
    static inline const QString UnderlyingPOSIXErrorKey = QStringLiteral("NSPOSIXErrorCode");

    // File-error codes of the Cocoa domain.
    enum CocoaCode {
        FileNoSuchFileError = 4,
        FileLockingError = 255,
        FileReadUnknownError = 256,
        FileReadNoPermissionError = 257,
        FileReadInvalidFileNameError = 258,
        FileReadCorruptFileError = 259,
        FileReadNoSuchFileError = 260,
        FileReadTooLargeError = 263,
        FileWriteUnknownError = 512,
        FileWriteNoPermissionError = 513,
        FileWriteInvalidFileNameError = 514,
        FileWriteFileExistsError = 516,
        FileWriteOutOfSpaceError = 640,
        FileWriteVolumeReadOnlyError = 642,
    };

    CorvexError() = default;
    CorvexError(QString domain, long code, QVariantMap userInfo = {});

    // A Cocoa-domain file error for a failed system call on the path, from its errno value.
    static CorvexError fromErrno(int errnoValue, const QString &path, bool writing);

    const QString &domain() const { return mDomain; }
    long code() const { return mCode; }
    const QVariantMap &userInfo() const { return mUserInfo; }
    void setUserInfoValue(const QString &key, const QVariant &value);

    // The sentence shown to the user: the description given in the user information, else one made from the
    // failure reason, the file-error code or the domain and code.
    QString localizedDescription() const;
    QString localizedFailureReason() const;
    QString localizedRecoverySuggestion() const;

    // The file the error is about: the URL's path, else the file path of the user information.
    QString filePath() const;

    bool operator==(const CorvexError &other) const;

private:
    QString mDomain;
    long mCode = 0;
    QVariantMap mUserInfo;
};
