// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "FuzzSupport.h"

#include "foundation/Diagnostics.h"

#include <QDir>
#include <QFile>
#include <QGuiApplication>
#include <QTemporaryDir>
#include <cstdlib>

namespace {

QTemporaryDir *gHome = nullptr;
QGuiApplication *gApplication = nullptr;

void ignore(Diagnostics::Level, bool, const char *, const char *, int, const QString &) {}

} // namespace

namespace fuzz {

void initialize(int *argc, char ***argv)
{
    gHome = new QTemporaryDir(QDir::tempPath() + QStringLiteral("/corvex-fuzz-XXXXXX"));
    const QByteArray home = QFile::encodeName(gHome->path());
    setenv("HOME", home.constData(), 1);
    setenv("XDG_CONFIG_HOME", QByteArray(home + "/.config").constData(), 1);
    setenv("XDG_DATA_HOME", QByteArray(home + "/.local/share").constData(), 1);
    setenv("XDG_CACHE_HOME", QByteArray(home + "/.cache").constData(), 1);
    setenv("XDG_RUNTIME_DIR", QByteArray(home + "/runtime").constData(), 1);
    setenv("QT_QPA_PLATFORM", "offscreen", 1);
    unsetenv("DBUS_SESSION_BUS_ADDRESS");
    QDir().mkpath(gHome->path() + QStringLiteral("/runtime"));
    QFile::setPermissions(gHome->path() + QStringLiteral("/runtime"),
                          QFileDevice::ReadOwner | QFileDevice::WriteOwner | QFileDevice::ExeOwner);
    QDir().mkpath(folder());
    gApplication = new QGuiApplication(*argc, *argv);
    Diagnostics::setReceiver(&ignore);
}

QString folder()
{
    return gHome->path() + QStringLiteral("/input");
}

QString writeInput(const QString &name, const uint8_t *data, size_t size)
{
    const QString path = folder() + QLatin1Char('/') + name;
    QFile file(path);
    if (file.open(QIODevice::WriteOnly | QIODevice::Truncate))
        file.write(reinterpret_cast<const char *>(data), qint64(size));
    return path;
}

} // namespace fuzz
