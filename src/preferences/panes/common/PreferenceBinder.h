// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QHash>
#include <QList>
#include <QObject>
#include <QString>
#include <functional>

class QCheckBox;
class QWidget;

// Binds controls to keys of the standard preferences, both ways: a control writes its key as soon as the user
// changes it, and shows the key's value again whenever it changes (in this process or another one).
class PreferenceBinder : public QObject
{
    Q_OBJECT

public:
    explicit PreferenceBinder(QObject *parent);

    // The check box shows the boolean key and writes it when toggled.
    void bindCheckBox(QCheckBox *checkBox, const QString &key);
    // The widget is enabled exactly while the boolean key is true.
    void enableWhile(QWidget *widget, const QString &key);
    // Calls the function now and after every change of the key.
    void watch(const QString &key, const std::function<void()> &changed);

private:
    void valueChanged(const QString &key);

    QHash<QString, QList<std::function<void()>>> mObservers;
};
