// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "AdvancedPane.h"

#include "ApplicationChooser.h"
#include "PreferenceBinder.h"
#include "RenamePatternEditor.h"
#include "core/FileFormat.h"
#include "core/UserDefaults.h"
#include "foundation/PreferenceKeys.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSignalBlocker>
#include <QVBoxLayout>

namespace {

QCheckBox *checkBox(const QString &text, const QString &key, PreferenceBinder *binder, QWidget *parent)
{
    auto *box = new QCheckBox(text, parent);
    box->setObjectName(key);
    box->setAccessibleName(QString(text).remove(QLatin1Char('&')));
    binder->bindCheckBox(box, key);
    return box;
}

QWidget *container(QWidget *parent, QLayout *layout)
{
    auto *widget = new QWidget(parent);
    layout->setContentsMargins(0, 0, 0, 0);
    widget->setLayout(layout);
    return widget;
}

UserDefaults &defaults()
{
    return UserDefaults::standardUserDefaults();
}

} // namespace

AdvancedPane::AdvancedPane(QObject *parent)
    : BasicPreferencePane({QStringLiteral("Advanced"), tr("Advanced"),
                           QStringLiteral(":/panes/Advanced/icons/Advanced.svg"),
                           tr("Automatic steps for every new screenshot")},
                          parent)
{
}

QWidget *AdvancedPane::makeView()
{
    auto *view = new QWidget;
    auto *binder = new PreferenceBinder(view);

    auto *intro =
        new QLabel(tr("The agent applies these steps to every new screenshot, in this order."), view);
    intro->setWordWrap(true);
    QCheckBox *lenient = checkBox(tr("Accept &lenient dates and times in screenshot names"),
                                  kUseLenientTimeParserKey, binder, view);
    lenient->setToolTip(tr("Recognises screenshots whose names hold dates and times in unusual forms."));

    auto *form = new QFormLayout(view);
    form->setLabelAlignment(Qt::AlignRight | Qt::AlignTop);
    form->setFormAlignment(Qt::AlignLeft | Qt::AlignTop);
    form->setFieldGrowthPolicy(QFormLayout::ExpandingFieldsGrow);
    form->setContentsMargins(20, 14, 20, 14);
    form->setVerticalSpacing(10);
    form->addRow(intro);
    form->addRow(tr("Rename:"), makeRenameRow(view, binder));
    form->addRow(tr("Convert:"), makeConvertRow(view, binder));
    form->addRow(tr("Move:"), makeMoveRow(view, binder));
    form->addRow(tr("Open:"), makeOpenRow(view, binder));
    form->addRow(tr("Names:"), lenient);
    view->setMinimumWidth(600);
    return view;
}

QWidget *AdvancedPane::makeRenameRow(QWidget *view, PreferenceBinder *binder)
{
    QCheckBox *enabled =
        checkBox(tr("&Rename new screenshots by this pattern:"), kAutoRenameKey, binder, view);
    auto *editor = new RenamePatternEditor(view);
    binder->enableWhile(editor, kAutoRenameKey);

    auto *counter = new QLabel(view);
    counter->setObjectName(QStringLiteral("counterValue"));
    binder->watch(kAutoRenameCountKey, [counter] {
        counter->setText(tr("The counter stands at %1.").arg(defaults().integerForKey(kAutoRenameCountKey)));
    });
    auto *reset = new QPushButton(tr("Reset &Counter"), view);
    reset->setObjectName(QStringLiteral("resetCounter"));
    reset->setAccessibleName(tr("Reset the counter"));
    reset->setToolTip(tr("The next counter token starts again at 1."));
    connect(reset, &QPushButton::clicked, view, [] { defaults().setInteger(0, kAutoRenameCountKey); });

    auto *counterRow = new QHBoxLayout;
    counterRow->addWidget(counter);
    counterRow->addWidget(reset);
    counterRow->addStretch();
    auto *column = new QVBoxLayout;
    column->addWidget(enabled);
    column->addWidget(editor);
    column->addLayout(counterRow);
    return container(view, column);
}

QWidget *AdvancedPane::makeConvertRow(QWidget *view, PreferenceBinder *binder)
{
    QCheckBox *enabled = checkBox(tr("Con&vert new screenshots to"), kAutoReformatKey, binder, view);
    auto *formats = new QComboBox(view);
    formats->setObjectName(QStringLiteral("autoReformatFormat"));
    formats->setAccessibleName(tr("Format of converted screenshots"));
    for (const FileFormat *format : FileFormat::allFileFormats())
        formats->addItem(format->description(), format->preferredExtension());
    const int knownFormats = formats->count();
    binder->enableWhile(formats, kAutoReformatKey);
    binder->watch(kAutoReformatExtensionKey, [formats, knownFormats] {
        const QSignalBlocker blocker(formats);
        while (formats->count() > knownFormats)
            formats->removeItem(knownFormats);
        const QString stored = defaults().stringForKey(kAutoReformatExtensionKey);
        const qsizetype index = qzIndexOfObjectForExtension(FileFormat::allFileFormats(), stored);
        if (index != NSNotFound) {
            formats->setCurrentIndex(int(index));
        } else {
            formats->addItem(tr("Unknown format (%1)").arg(stored), stored);
            formats->setCurrentIndex(knownFormats);
        }
    });
    connect(formats, &QComboBox::activated, view, [formats, knownFormats](int index) {
        if (index < knownFormats)
            defaults().setObject(formats->itemData(index).toString(), kAutoReformatExtensionKey);
    });
    auto *row = new QHBoxLayout;
    row->addWidget(enabled);
    row->addWidget(formats);
    row->addStretch();
    return container(view, row);
}

QWidget *AdvancedPane::makeMoveRow(QWidget *view, PreferenceBinder *binder)
{
    QCheckBox *enabled = checkBox(tr("&Move new screenshots to this folder:"), kAutoMoveKey, binder, view);
    auto *folder = new QLineEdit(view);
    folder->setObjectName(QStringLiteral("autoMoveFolderPath"));
    folder->setAccessibleName(tr("Folder for new screenshots"));
    folder->setReadOnly(true);
    folder->setPlaceholderText(tr("No folder chosen"));
    auto *choose = new QPushButton(tr("C&hoose…"), view);
    choose->setAccessibleName(tr("Choose the folder for new screenshots"));
    auto *missing = new QLabel(view);
    missing->setObjectName(QStringLiteral("autoMoveFolderMissing"));
    missing->setText(tr("This folder cannot be found."));
    missing->setStyleSheet(QStringLiteral("color: #c01c28;"));
    binder->enableWhile(folder, kAutoMoveKey);
    binder->enableWhile(choose, kAutoMoveKey);
    binder->watch(kAutoMoveFolderKey, [folder, missing] {
        const QString path = defaults().stringForKey(kAutoMoveFolderKey);
        folder->setText(QDir::toNativeSeparators(path));
        folder->setToolTip(path);
        missing->setVisible(!path.isEmpty() && !QFileInfo(path).isDir());
    });
    connect(choose, &QPushButton::clicked, view, [view] {
        const QString current = defaults().stringForKey(kAutoMoveFolderKey);
        const QString chosen =
            QFileDialog::getExistingDirectory(view->window(), tr("Folder for New Screenshots"),
                                              QFileInfo(current).isDir() ? current : QDir::homePath());
        if (!chosen.isEmpty())
            defaults().setObject(QDir::cleanPath(chosen), kAutoMoveFolderKey);
    });

    auto *row = new QHBoxLayout;
    row->addWidget(folder, 1);
    row->addWidget(choose);
    auto *column = new QVBoxLayout;
    column->addWidget(enabled);
    column->addLayout(row);
    column->addWidget(missing);
    return container(view, column);
}

QWidget *AdvancedPane::makeOpenRow(QWidget *view, PreferenceBinder *binder)
{
    QCheckBox *enabled = checkBox(tr("&Open new screenshots with"), kOpenWithKey, binder, view);
    auto *chooser = new ApplicationChooser(view);
    binder->enableWhile(chooser, kOpenWithKey);
    auto *row = new QHBoxLayout;
    row->addWidget(enabled);
    row->addWidget(chooser);
    row->addStretch();
    return container(view, row);
}
