// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/RenamingWindowServices.h"

#include <QDialog>
#include <QImage>
#include <QPageLayout>
#include <QPainter>
#include <QPrintDialog>
#include <QPrinter>
#include <QWidget>
#include <memory>

QMenuBar *RenamingWindowServices::makeMenuBar(CorvexWindowController *, QWidget *)
{
    return nullptr;
}

void RenamingWindowServices::print(QWidget *window, const QImage &image, const QPageLayout &layout)
{
    auto printer = std::make_shared<QPrinter>(QPrinter::HighResolution);
    printer->setPageLayout(layout);
    printer->setDocName(window->windowTitle());
    auto *dialog = new QPrintDialog(printer.get(), window);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    QObject::connect(dialog, &QDialog::finished, window, [printer, image](int result) {
        if (result != QDialog::Accepted)
            return;
        // One page: the picture scaled down to fit inside the margins, at the top left.
        QPainter painter(printer.get());
        const QRect page = printer->pageLayout().paintRectPixels(printer->resolution());
        const QRect pageArea(QPoint(0, 0), page.size());
        const QSizeF points = QSizeF(image.size()) * (printer->resolution() / 72.0);
        const QSize shown =
            points.scaled(QSizeF(pageArea.size()), Qt::KeepAspectRatio).boundedTo(points).toSize();
        painter.setRenderHint(QPainter::SmoothPixmapTransform);
        painter.drawImage(QRect(pageArea.topLeft(), shown), image);
    });
    dialog->open();
}

RenamingWindowServices &RenamingWindowServices::defaultServices()
{
    static RenamingWindowServices services;
    return services;
}
