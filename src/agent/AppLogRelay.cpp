// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "agent/AppLogRelay.h"

#include "foundation/Notifications.h"
#include "logging/DDLog.h"
#include "logging/DDLogMessage.h"
#include "platform/DistributedNotificationCenter.h"

#include <QDateTime>

namespace {

qint32 intValue(const QVariantMap &userInfo, const char *key, qint32 fallback)
{
    const QVariant value = userInfo.value(QLatin1String(key));
    bool ok = false;
    const qint32 number = value.toInt(&ok);
    return ok ? number : fallback;
}

} // namespace

AppLogRelay::AppLogRelay(QObject *parent) : QObject(parent) {}

AppLogRelay::~AppLogRelay()
{
    stop();
}

void AppLogRelay::start()
{
    if (mObserver)
        return;
    mObserver = DistributedNotificationCenter::defaultCenter().addObserver(
        CorvexAppLogNotification, this, [this](const QString &, const QVariantMap &userInfo) {
            if (const std::shared_ptr<const DDLogMessage> message = messageFromDictionary(userInfo))
                DDLog::queueLogMessage(message, false);
        });
}

void AppLogRelay::stop()
{
    if (!mObserver)
        return;
    DistributedNotificationCenter::defaultCenter().removeObserver(mObserver);
    mObserver = 0;
}

const char *AppLogRelay::internedString(const QString &text)
{
    std::lock_guard locker(mMutex);
    // Elements of an unordered_set never move: the pointer stays valid while the set lives.
    return mStrings.insert(text.toStdString()).first->c_str();
}

std::shared_ptr<const DDLogMessage> AppLogRelay::messageFromDictionary(const QVariantMap &userInfo)
{
    const QVariant text = userInfo.value(QStringLiteral("msg"));
    if (text.typeId() != QMetaType::QString)
        return nullptr;
    QDateTime timestamp = userInfo.value(QStringLiteral("timestamp")).toDateTime();
    if (!timestamp.isValid())
        timestamp = QDateTime::currentDateTime();
    const QVariant file = userInfo.value(QStringLiteral("file"));
    const QVariant function = userInfo.value(QStringLiteral("function"));
    const char *fileName = file.typeId() == QMetaType::QString ? internedString(file.toString()) : nullptr;
    const char *functionName =
        function.typeId() == QMetaType::QString ? internedString(function.toString()) : nullptr;
    return std::make_shared<const DDLogMessage>(
        text.toString(), intValue(userInfo, "level", 7), intValue(userInfo, "flag", 4),
        intValue(userInfo, "context", 1), fileName, functionName, intValue(userInfo, "lineNumber", 0),
        timestamp.toLocalTime(), 0u);
}
