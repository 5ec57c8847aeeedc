// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
//
// The floor of `corvex` start-up for a command that works on images: a bare QCoreApplication that makes one
// QImage, and so loads Qt Gui and its libraries, and prints its width.
#include <QCoreApplication>
#include <QImage>
#include <cstdio>

int main(int argc, char **argv)
{
    QCoreApplication application(argc, argv);
    const QImage image(64, 48, QImage::Format_RGB32);
    std::printf("%d\n", image.width());
    return 0;
}
