// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "utilities/PFMoveApplicationAlert.h"

#include "widgets/QZAlert.h"

#include <QApplication>
#include <QCheckBox>
#include <QCoreApplication>
#include <QKeySequence>
#include <QPushButton>
#include <memory>

QZAlert *PFMoveApplicationAlert::makeAlert(const PFMoveApplicationAlertRequest &request)
{
    auto *alert = new QZAlert;
    alert->setWindowTitle(QStringLiteral("Corvex"));
    alert->setAlertStyle(QZAlert::InformationalAlertStyle);
    alert->setMessageText(request.title);
    alert->setInformativeText(request.informativeText);
    alert->addButtonWithTitle(QCoreApplication::translate("MoveApplication", "Move to Applications Folder"));
    QPushButton *doNotMove =
        alert->addButtonWithTitle(QCoreApplication::translate("MoveApplication", "Do Not Move"));
    alert->setEscapeButton(doNotMove);
    if (request.showsSuppressionButton) {
        auto *suppression =
            new QCheckBox(QCoreApplication::translate("MoveApplication", "Do not show this message again"));
        QFont small = suppression->font();
        small.setPointSizeF(small.pointSizeF() * 0.85);
        suppression->setFont(small);
        alert->setCheckBox(suppression);
    }
    return alert;
}

PFMoveApplicationAlertAnswer PFMoveApplicationAlert::run(const PFMoveApplicationAlertRequest &request)
{
    std::unique_ptr<QZAlert> alert(makeAlert(request));
    alert->show();
    alert->raise();
    alert->activateWindow();
    alert->exec();
    PFMoveApplicationAlertAnswer answer;
    answer.move = alert->resultCodeForButton(alert->clickedButton()) == QZAlert::NSAlertFirstButtonReturn;
    answer.suppressionChecked = alert->checkBox() && alert->checkBox()->isChecked();
    return answer;
}

void PFMoveApplicationAlert::runFailure(const QString &title)
{
    QZAlert alert;
    alert.setWindowTitle(QStringLiteral("Corvex"));
    alert.setAlertStyle(QZAlert::CriticalAlertStyle);
    alert.setMessageText(title);
    alert.addButtonWithTitle(QCoreApplication::translate("MoveApplication", "OK"));
    alert.exec();
}
