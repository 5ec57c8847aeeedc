// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "BasicPreferencePane.h"

BasicPreferencePane::BasicPreferencePane(const Description &description, QObject *parent)
    : QObject(parent), mDescription(description)
{
    setObjectName(description.name);
}

BasicPreferencePane::~BasicPreferencePane()
{
    // A view still shown by a window goes with the window.
    if (mView && !mView->parent())
        delete mView.data();
}

QWidget *BasicPreferencePane::paneView()
{
    if (!mView) {
        mView = makeView();
        if (mView)
            mView->setObjectName(mDescription.name + QStringLiteral("PaneView"));
    }
    return mView;
}

QIcon BasicPreferencePane::paneIcon() const
{
    return QIcon(mDescription.iconPath);
}
