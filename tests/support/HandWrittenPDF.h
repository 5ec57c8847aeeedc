// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QList>

namespace corvex::test {

// A PDF file of the objects, numbered from 1 (the first is the catalog), with its cross-reference table.
inline QByteArray handWrittenPDF(const QList<QByteArray> &objects)
{
    QByteArray pdf = "%PDF-1.4\n";
    QList<qsizetype> offsets;
    for (qsizetype i = 0; i < objects.size(); ++i) {
        offsets.append(pdf.size());
        pdf += QByteArray::number(i + 1) + " 0 obj " + objects[i] + " endobj\n";
    }
    const qsizetype xref = pdf.size();
    pdf += "xref\n0 " + QByteArray::number(objects.size() + 1) + "\n0000000000 65535 f \n";
    for (const qsizetype offset : offsets)
        pdf += QByteArray::number(offset).rightJustified(10, '0') + " 00000 n \n";
    pdf += "trailer <</Size " + QByteArray::number(objects.size() + 1) + " /Root 1 0 R>>\nstartxref\n" +
           QByteArray::number(xref) + "\n%%EOF\n";
    return pdf;
}

} // namespace corvex::test
