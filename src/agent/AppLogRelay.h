// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QObject>
#include <QVariantMap>
#include <memory>
#include <mutex>
#include <string>
#include <unordered_set>

class DDLogMessage;

// Receives the application's log messages ("CorvexAppLog") and passes each to this process's loggers, with
// the application's own time, level, flag, context and source position, so that they land in the shared log
// file between the agent's own lines.
class AppLogRelay : public QObject
{
    Q_OBJECT

public:
    explicit AppLogRelay(QObject *parent = nullptr);
    ~AppLogRelay() override;

    // Starts observing "CorvexAppLog".
    void start();
    void stop();

    // The message a "CorvexAppLog" user info describes; nothing when it carries no "msg" string.
    std::shared_ptr<const DDLogMessage> messageFromDictionary(const QVariantMap &userInfo);

private:
    // A C string for the text that lives as long as this relay (messages keep pointers to their file and
    // function names). The application has a fixed set of them, so the set stays small.
    const char *internedString(const QString &text);

    int mObserver = 0;
    std::mutex mMutex;
    std::unordered_set<std::string> mStrings;
};
