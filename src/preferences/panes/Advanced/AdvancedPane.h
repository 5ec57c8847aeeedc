// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "BasicPreferencePane.h"

class QComboBox;
class QLabel;
class QLineEdit;

// The Advanced pane: the automatic steps the agent applies to every new screenshot (rename by a pattern,
// convert, move, open with) and lenient time parsing.
class AdvancedPane : public BasicPreferencePane
{
    Q_OBJECT

public:
    explicit AdvancedPane(QObject *parent);

protected:
    QWidget *makeView() override;

private:
    QWidget *makeRenameRow(QWidget *view, class PreferenceBinder *binder);
    QWidget *makeConvertRow(QWidget *view, PreferenceBinder *binder);
    QWidget *makeMoveRow(QWidget *view, PreferenceBinder *binder);
    QWidget *makeOpenRow(QWidget *view, PreferenceBinder *binder);
};
