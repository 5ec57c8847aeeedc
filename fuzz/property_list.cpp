// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
//
// Property lists: the preference files (XML and binary) and the payload of every notification that any local
// process can post on the session bus. What parses must write again and read back the same.
#include "FuzzSupport.h"
#include "platform/PropertyList.h"

#include <cstdio>
#include <cstdlib>

CORVEX_FUZZ_INITIALIZE

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    QString error;
    const QVariant value = PropertyList::parse(fuzz::bytes(data, size), &error);
    if (!value.isValid() || !PropertyList::isPropertyListValue(value))
        return 0;
    // Written out, read back and written again: the same bytes (whatever NaN and other odd values do to
    // comparisons of the values themselves).
    for (const PropertyList::Format format : {PropertyList::Format::Binary, PropertyList::Format::Xml}) {
        const QByteArray written = PropertyList::serialize(value, format, &error);
        if (written.isEmpty())
            continue;
        const QByteArray again = PropertyList::serialize(PropertyList::parse(written), format, &error);
        if (again != written) {
            std::fprintf(stderr, "written:\n%s\nwritten again:\n%s\n", written.toHex(' ').constData(),
                         again.toHex(' ').constData());
            std::abort();
        }
    }
    return 0;
}
