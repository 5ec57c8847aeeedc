// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "widgets/QZAlert.h"

#include "foundation/CorvexError.h"

#include <QCoreApplication>
#include <QPointer>
#include <QPushButton>

QZAlert::QZAlert(QWidget *parent) : QMessageBox(parent)
{
    setIcon(QMessageBox::Warning);
    setTextFormat(Qt::PlainText);
}

void QZAlert::setAlertStyle(AlertStyle style)
{
    mAlertStyle = style;
    switch (style) {
    case WarningAlertStyle:
        setIcon(QMessageBox::Warning);
        break;
    case InformationalAlertStyle:
        setIcon(QMessageBox::Information);
        break;
    case CriticalAlertStyle:
        setIcon(QMessageBox::Critical);
        break;
    }
}

QPushButton *QZAlert::addButtonWithTitle(const QString &title)
{
    const bool isCancel = title == QCoreApplication::translate("QZAlert", "Cancel") || title == u"Cancel";
    const ButtonRole role = mButtons.isEmpty() ? AcceptRole : (isCancel ? RejectRole : ActionRole);
    QPushButton *button = addButton(title, role);
    if (mButtons.isEmpty())
        setDefaultButton(button);
    if (isCancel)
        setEscapeButton(button);
    mButtons.append(button);
    return button;
}

qint64 QZAlert::resultCodeForButton(const QAbstractButton *button) const
{
    for (qsizetype i = 0; i < mButtons.size(); ++i) {
        if (mButtons.at(i) == button)
            return NSAlertFirstButtonReturn + i;
    }
    return NSModalResponseAbort;
}

void QZAlert::qzBeginSheetModalForWindow(QWidget *window, std::function<void(qint64)> completionHandler)
{
    if (mButtons.isEmpty())
        addButtonWithTitle(QCoreApplication::translate("QZAlert", "OK"));
    if (window && parentWidget() != window)
        setParent(window, windowFlags());
    setWindowModality(window ? Qt::WindowModal : Qt::ApplicationModal);
    auto handler = std::make_shared<std::function<void(qint64)>>(std::move(completionHandler));
    connect(this, &QDialog::finished, this, [this, handler](int) {
        if (mEnded)
            return;
        mEnded = true;
        const qint64 code = resultCodeForButton(clickedButton());
        hide();
        deleteLater();
        if (*handler)
            (*handler)(code);
    });
    open();
    if (window)
        raise();
}

void QZAlert::presentError(const CorvexError &error, QWidget *window, std::function<void(bool)> didPresent)
{
    auto *alert = new QZAlert(window);
    alert->setAlertStyle(CriticalAlertStyle);
    alert->setMessageText(error.localizedDescription());
    QString informative = error.localizedRecoverySuggestion();
    if (informative.isEmpty())
        informative = error.localizedFailureReason();
    if (informative != alert->messageText())
        alert->setInformativeText(informative);
    alert->addButtonWithTitle(QCoreApplication::translate("QZAlert", "OK"));
    alert->qzBeginSheetModalForWindow(window, [didPresent = std::move(didPresent)](qint64) {
        if (didPresent)
            didPresent(false);
    });
}

QZAlert *QZAlert::sheetOfWindow(QWidget *window)
{
    if (!window)
        return nullptr;
    const QList<QZAlert *> alerts = window->findChildren<QZAlert *>(Qt::FindDirectChildrenOnly);
    for (auto it = alerts.crbegin(); it != alerts.crend(); ++it) {
        if ((*it)->isVisible() && !(*it)->mEnded)
            return *it;
    }
    return nullptr;
}
