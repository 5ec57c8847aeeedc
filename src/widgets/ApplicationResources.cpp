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
    QApplication::setWindowIcon(QIcon::fromTheme(
        QStringLiteral("com.ostrel.Corvex"),
        QIcon(resources + QStringLiteral("/icons/hicolor/scalable/apps/com.ostrel.Corvex.svg"))));
}
