// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
//
// The reference for `corvex` start-up: a bare QCoreApplication that prints one line, as `corvex
// version-compare` does.
#include <QCoreApplication>
#include <cstdio>

int main(int argc, char **argv)
{
    QCoreApplication application(argc, argv);
    std::puts("-1");
    return 0;
}
