// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "preferences/SS_PreferencePaneProtocol.h"

#include <QLabel>
#include <QObject>
#include <QPointer>

// A pane of the test bundles: a label of a fixed size; it counts paneDidLoad and paneWillUnload calls in the
// view's properties "didLoad" and "willUnload".
class TestPane : public QObject, public SS_PreferencePaneProtocol
{
    Q_OBJECT
    Q_INTERFACES(SS_PreferencePaneProtocol)

public:
    TestPane(const QString &name, QSize size, bool resizesVertically, QObject *parent)
        : QObject(parent), mName(name), mSize(size), mResizesVertically(resizesVertically)
    {
    }
    ~TestPane() override
    {
        if (mView && !mView->parent())
            delete mView.data();
    }

    QWidget *paneView() override
    {
        if (!mView) {
            mView = new QLabel(mName);
            mView->setObjectName(mName);
            mView->resize(mSize);
            mView->setProperty("didLoad", 0);
            mView->setProperty("willUnload", 0);
        }
        return mView;
    }
    QString paneName() const override { return mName; }
    QString displayLabel() const override { return mName + QStringLiteral(" Label"); }
    QIcon paneIcon() const override { return QIcon(); }
    QString paneToolTip() const override { return mName + QStringLiteral(" tip"); }
    bool allowsHorizontalResizing() const override { return false; }
    bool allowsVerticalResizing() const override { return mResizesVertically; }
    bool respondsToPaneWillUnload() const override { return true; }
    void paneWillUnload() override { bump("willUnload"); }
    bool respondsToPaneDidLoad() const override { return true; }
    void paneDidLoad() override { bump("didLoad"); }

private:
    void bump(const char *property)
    {
        if (mView)
            mView->setProperty(property, mView->property(property).toInt() + 1);
    }

    QString mName;
    QSize mSize;
    bool mResizesVertically;
    QPointer<QWidget> mView;
};
