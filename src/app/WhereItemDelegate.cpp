// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/WhereItemDelegate.h"

#include <QKeySequence>
#include <QPainter>
#include <QStyle>

bool WhereItemDelegate::isSeparator(const QModelIndex &index)
{
    return index.data(Qt::AccessibleDescriptionRole).toString() == u"separator";
}

void WhereItemDelegate::paint(QPainter *painter, const QStyleOptionViewItem &option,
                              const QModelIndex &index) const
{
    if (isSeparator(index)) {
        painter->save();
        painter->setPen(option.palette.color(QPalette::Mid));
        const int y = option.rect.center().y();
        painter->drawLine(option.rect.left() + 4, y, option.rect.right() - 4, y);
        painter->restore();
        return;
    }
    QStyleOptionViewItem indented = option;
    const int indentation = index.data(IndentationRole).toInt();
    indented.rect.adjust(indentation * IndentationStep, 0, 0, 0);
    QStyledItemDelegate::paint(painter, indented, index);
    const QKeySequence keys = index.data(KeyEquivalentRole).value<QKeySequence>();
    if (keys.isEmpty())
        return;
    painter->save();
    const bool selected = option.state & QStyle::State_Selected;
    painter->setPen(option.palette.color(selected ? QPalette::HighlightedText : QPalette::PlaceholderText));
    painter->drawText(option.rect.adjusted(0, 0, -8, 0), Qt::AlignRight | Qt::AlignVCenter,
                      keys.toString(QKeySequence::NativeText));
    painter->restore();
}

QSize WhereItemDelegate::sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const
{
    if (isSeparator(index))
        return QSize(0, RowPadding * 2 + 1);
    QSize size = QStyledItemDelegate::sizeHint(option, index);
    size.setHeight(qMax(size.height(), option.fontMetrics.height()) + 2 * RowPadding);
    size.rwidth() += index.data(IndentationRole).toInt() * IndentationStep;
    const QKeySequence keys = index.data(KeyEquivalentRole).value<QKeySequence>();
    if (!keys.isEmpty())
        size.rwidth() += option.fontMetrics.horizontalAdvance(keys.toString(QKeySequence::NativeText)) + 24;
    return size;
}
