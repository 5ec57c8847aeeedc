// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "foundation/CorvexError.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <QUrl>
#include <cerrno>

CorvexError::CorvexError(QString domain, long code, QVariantMap userInfo)
    : mDomain(std::move(domain)), mCode(code), mUserInfo(std::move(userInfo))
{
}

CorvexError CorvexError::fromErrno(int errnoValue, const QString &path, bool writing)
{
    long code = writing ? FileWriteUnknownError : FileReadUnknownError;
    switch (errnoValue) {
    case ENOENT:
    case ENOTDIR:
        code = writing ? FileNoSuchFileError : FileReadNoSuchFileError;
        break;
    case EACCES:
    case EPERM:
        code = writing ? FileWriteNoPermissionError : FileReadNoPermissionError;
        break;
    case EEXIST:
    case ENOTEMPTY:
        code = FileWriteFileExistsError;
        break;
    case ENOSPC:
    case EDQUOT:
        code = FileWriteOutOfSpaceError;
        break;
    case EROFS:
        code = FileWriteVolumeReadOnlyError;
        break;
    case ENAMETOOLONG:
        code = writing ? FileWriteInvalidFileNameError : FileReadInvalidFileNameError;
        break;
    case EFBIG:
        code = FileReadTooLargeError;
        break;
    default:
        break;
    }
    QVariantMap info;
    info.insert(FilePathErrorKey, path);
    info.insert(UnderlyingPOSIXErrorKey, qint64(errnoValue));
    return CorvexError(CocoaErrorDomain, code, info);
}

void CorvexError::setUserInfoValue(const QString &key, const QVariant &value)
{
    if (value.isValid())
        mUserInfo.insert(key, value);
    else
        mUserInfo.remove(key);
}

QString CorvexError::filePath() const
{
    const QVariant url = mUserInfo.value(URLErrorKey);
    if (url.canConvert<QUrl>() && url.toUrl().isLocalFile())
        return url.toUrl().toLocalFile();
    if (url.metaType().id() == QMetaType::QString)
        return QUrl(url.toString()).toLocalFile();
    return mUserInfo.value(FilePathErrorKey).toString();
}

QString CorvexError::localizedFailureReason() const
{
    return mUserInfo.value(LocalizedFailureReasonErrorKey).toString();
}

QString CorvexError::localizedRecoverySuggestion() const
{
    return mUserInfo.value(LocalizedRecoverySuggestionErrorKey).toString();
}

QString CorvexError::localizedDescription() const
{
    const QString given = mUserInfo.value(LocalizedDescriptionKey).toString();
    if (!given.isEmpty())
        return given;
    const QString reason = localizedFailureReason();
    if (!reason.isEmpty())
        return QCoreApplication::translate("CorvexError", "The operation couldn’t be completed. %1")
            .arg(reason);
    if (mDomain == CocoaErrorDomain) {
        const QString path = filePath();
        const QString name = path.isEmpty() ? QString() : QFileInfo(path).fileName();
        switch (mCode) {
        case FileNoSuchFileError:
        case FileReadNoSuchFileError:
            return name.isEmpty()
                       ? QCoreApplication::translate("CorvexError", "The file doesn’t exist.")
                       : QCoreApplication::translate(
                             "CorvexError", "The file “%1” couldn’t be opened because there is no such file.")
                             .arg(name);
        case FileReadNoPermissionError:
            return QCoreApplication::translate(
                       "CorvexError",
                       "The file “%1” couldn’t be opened because you don’t have permission to view it.")
                .arg(name);
        case FileWriteNoPermissionError:
            return QCoreApplication::translate(
                       "CorvexError",
                       "You don’t have permission to save the file “%1” in the folder where it is.")
                .arg(name);
        case FileWriteFileExistsError:
            return QCoreApplication::translate(
                       "CorvexError",
                       "The file “%1” couldn’t be saved because a file with the same name already exists.")
                .arg(name);
        case FileWriteOutOfSpaceError:
            return QCoreApplication::translate(
                       "CorvexError", "The file “%1” couldn’t be saved because there isn’t enough space.")
                .arg(name);
        case FileWriteVolumeReadOnlyError:
            return QCoreApplication::translate(
                       "CorvexError", "The file “%1” couldn’t be saved because the volume is read only.")
                .arg(name);
        default:
            break;
        }
    }
    return QCoreApplication::translate("CorvexError", "The operation couldn’t be completed. (%1 error %2.)")
        .arg(mDomain)
        .arg(mCode);
}

bool CorvexError::operator==(const CorvexError &other) const
{
    return mDomain == other.mDomain && mCode == other.mCode && mUserInfo == other.mUserInfo;
}
