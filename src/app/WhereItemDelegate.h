// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QStyledItemDelegate>

// Draws the where popup's rows: the folder items with their indentation and, on the right, their key
// equivalent; separators as a thin line. Rows get room around their text at every scale.
class WhereItemDelegate : public QStyledItemDelegate
{
    Q_OBJECT

public:
    // Item data of the where popup.
    static constexpr int TagRole = Qt::UserRole + 1;
    static constexpr int IndentationRole = Qt::UserRole + 2;
    static constexpr int KeyEquivalentRole = Qt::UserRole + 3;
    // Space above and below a row's text, and the step of one indentation level.
    static constexpr int RowPadding = 4;
    static constexpr int IndentationStep = 16;

    using QStyledItemDelegate::QStyledItemDelegate;

    void paint(QPainter *painter, const QStyleOptionViewItem &option,
               const QModelIndex &index) const override;
    QSize sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const override;

    // Whether the row is one of QComboBox's separators.
    static bool isSeparator(const QModelIndex &index);
};
