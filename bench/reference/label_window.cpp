// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
//
// The reference for the application's cold launch: a minimal Qt Widgets program that opens a PNG in a label,
// scaled to fit two thirds of the screen, and shows it.
#include <QApplication>
#include <QImageReader>
#include <QLabel>
#include <QPixmap>
#include <QScreen>

int main(int argc, char **argv)
{
    QApplication application(argc, argv);
    QImageReader reader(QApplication::arguments().value(1));
    const QSize room = QApplication::primaryScreen()->availableSize() * 2 / 3;
    reader.setScaledSize(reader.size().scaled(room, Qt::KeepAspectRatio));
    QLabel label;
    label.setPixmap(QPixmap::fromImage(reader.read()));
    label.setWindowTitle(QStringLiteral("reference"));
    label.show();
    return application.exec();
}
