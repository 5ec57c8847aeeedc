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
    // Written out and read back: the same value. Compared in the XML form, which writes every value the same
    // way each time (the binary writer's layout may differ from run to run) and shows NaN as itself.
    const QByteArray xml = PropertyList::serialize(value, PropertyList::Format::Xml, &error);
    for (const PropertyList::Format format : {PropertyList::Format::Binary, PropertyList::Format::Xml}) {
        const QByteArray written = PropertyList::serialize(value, format, &error);
        if (written.isEmpty())
            continue;
        const QByteArray again =
            PropertyList::serialize(PropertyList::parse(written), PropertyList::Format::Xml, &error);
        if (again != xml) {
            std::fprintf(stderr, "before:\n%s\nafter:\n%s\n", xml.constData(), again.constData());
            std::abort();
        }
    }
    return 0;
}
