// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/DesktopApplications.h"

#include "TestSupport.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace {

using corvex::test::home;
using corvex::test::writeFile;

// Two installed applications, the desktop's defaults for plain text and for PNG pictures.
void installDefaults()
{
    const QString applications = home() + u"/.local/share/applications/"_s;
    for (const char *id : {"org.example.Editor", "org.example.Viewer"})
        writeFile(applications + QString::fromLatin1(id) + u".desktop"_s,
                  QByteArray("[Desktop Entry]\nType=Application\nName=") + id + "\nExec=true %f\n");
    writeFile(home() + u"/.config/mimeapps.list"_s,
              "[Default Applications]\ntext/plain=org.example.Editor.desktop\n"
              "image/png=org.example.Viewer.desktop\n");
}

TEST(DesktopApplicationsTest, TheDefaultEditorAndViewerStandForThePlatformIdentifiers)
{
    installDefaults();
    const struct
    {
        const char *identifier;
        QString expected;
    } cases[] = {
        {"org.example.Editor", DesktopApplications::TextEditIdentifier},
        {"org.example.Editor.desktop", DesktopApplications::TextEditIdentifier},
        {"org.example.Viewer", DesktopApplications::PreviewIdentifier},
        {"org.example.Viewer.desktop", DesktopApplications::PreviewIdentifier},
        {"org.example.Other", u"org.example.Other"_s},
        {"com.apple.TextEdit", DesktopApplications::TextEditIdentifier},
        {"", QString()},
    };
    for (const auto &row : cases)
        EXPECT_EQ(DesktopApplications::platformIdentifier(QString::fromLatin1(row.identifier)), row.expected)
            << row.identifier;
}

} // namespace
