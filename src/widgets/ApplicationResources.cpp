// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "widgets/ApplicationResources.h"

#include <QApplication>
#include <QIcon>
#include <QLibraryInfo>
#include <QLocale>
#include <QTranslator>
#include <utility>

void installApplicationResources(QApplication &application, const QString &resources)
{
    for (const auto &[name, folder] :
         {std::pair<QString, QString>(QStringLiteral("corvex"), resources + QStringLiteral("/translations")),
          std::pair<QString, QString>(QStringLiteral("qtbase"),
                                      QLibraryInfo::path(QLibraryInfo::TranslationsPath))}) {
        auto *translator = new QTranslator(&application);
        if (translator->load(QLocale(), name, QStringLiteral("_"), folder))
            QApplication::installTranslator(translator);
    }
    // The bundle's own bitmaps, read when a window first needs them: no icon-theme search and no SVG plugin
    // on the way to the first window. The large sizes are left out: window managers show small ones.
    QIcon icon;
    for (const int size : {16, 22, 24, 32, 48, 64, 128})
        icon.addFile(resources + QStringLiteral("/icons/hicolor/%1x%1/apps/com.ostrel.Corvex.png").arg(size),
                     QSize(size, size));
    QApplication::setWindowIcon(icon);
}
