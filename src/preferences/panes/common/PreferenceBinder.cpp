// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "PreferenceBinder.h"

#include "core/UserDefaults.h"

#include <QCheckBox>
#include <QPointer>
#include <QSignalBlocker>

PreferenceBinder::PreferenceBinder(QObject *parent) : QObject(parent)
{
    connect(&UserDefaults::standardUserDefaults(), &UserDefaults::valueChanged, this,
            &PreferenceBinder::valueChanged);
}

void PreferenceBinder::bindCheckBox(QCheckBox *checkBox, const QString &key)
{
    QPointer<QCheckBox> box(checkBox);
    watch(key, [box, key] {
        if (!box)
            return;
        const QSignalBlocker blocker(box);
        box->setChecked(UserDefaults::standardUserDefaults().boolForKey(key));
    });
    connect(checkBox, &QCheckBox::toggled, this, [key](bool checked) {
        UserDefaults &defaults = UserDefaults::standardUserDefaults();
        if (defaults.boolForKey(key) != checked || !defaults.objectForKey(key).isValid())
            defaults.setBool(checked, key);
    });
}

void PreferenceBinder::enableWhile(QWidget *widget, const QString &key)
{
    QPointer<QWidget> target(widget);
    watch(key, [target, key] {
        if (target)
            target->setEnabled(UserDefaults::standardUserDefaults().boolForKey(key));
    });
}

void PreferenceBinder::watch(const QString &key, const std::function<void()> &changed)
{
    mObservers[key].append(changed);
    changed();
}

void PreferenceBinder::valueChanged(const QString &key)
{
    const auto observers = mObservers.value(key);
    for (const auto &observer : observers)
        observer();
}
