// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
//
// Kept apart from the rest of the module support: only the modules that call these link Qt Gui and the
// core's image reading for them.
#include "cli/CommandModule.h"

#include "core/ImageIOSource.h"

#include <QFile>
#include <QFileInfo>
#include <QGuiApplication>

namespace cli {

std::unique_ptr<QCoreApplication> makeGuiApplication(int &argc, char **argv, Platform platform)
{
    // Each platform of the list is tried in turn; the offscreen one needs no display.
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) {
        QByteArray platforms = "offscreen";
        if (platform == Platform::SessionDisplay && !qEnvironmentVariableIsEmpty("DISPLAY"))
            platforms.prepend("xcb;");
        if (platform == Platform::SessionDisplay && !qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY"))
            platforms.prepend("wayland;");
        qputenv("QT_QPA_PLATFORM", platforms);
    }
    return std::make_unique<QGuiApplication>(argc, argv);
}

std::unique_ptr<QCoreApplication> makeApplicationForImages(int &argc, char **argv)
{
    const QLatin1String pdf("pdf");
    for (int i = 2; i < argc; ++i) {
        const QString argument = QFile::decodeName(argv[i]);
        if (argument.compare(pdf, Qt::CaseInsensitive) == 0 ||
            QFileInfo(argument).suffix().compare(pdf, Qt::CaseInsensitive) == 0 ||
            ImageIOSource::kindOfFile(argument) == ImageIOSource::Kind::PDF)
            return makeGuiApplication(argc, argv);
    }
    return std::make_unique<QCoreApplication>(argc, argv);
}

} // namespace cli
