// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/DesktopScreenshotSettings.h"
#include "platform/DesktopConfigFiles_p.h"

#include "TestSupport.h"

#include <QDir>
#include <QTemporaryDir>
#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace {

using Tool = DesktopScreenshotSettings::Tool;

class DesktopScreenshotSettingsTest : public testing::Test
{
protected:
    DesktopScreenshotSettingsTest()
    {
        mEnv.home = mFolder.path() + u"/home"_s;
        mEnv.configHome = mEnv.home + u"/.config"_s;
    }

    void config(const QString &relative, const QByteArray &text)
    {
        corvex::test::writeFile(mEnv.configHome + QLatin1Char('/') + relative, text);
    }
    QString home(const QString &relative) const { return mEnv.home + QLatin1Char('/') + relative; }

    QTemporaryDir mFolder;
    DesktopScreenshotSettings::Environment mEnv;
};

TEST_F(DesktopScreenshotSettingsTest, GnomeUsesTheTranslatedPicturesAndScreenshotsFolders)
{
    mEnv.currentDesktop = u"ubuntu:GNOME"_s;
    config(u"user-dirs.dirs"_s, "# written by xdg-user-dirs-update\n"
                                "XDG_DESKTOP_DIR=\"$HOME/Schreibtisch\"\n"
                                "XDG_PICTURES_DIR=\"$HOME/Bilder\"\n");
    config(u"flameshot/flameshot.ini"_s, "[General]\nsavePath=/elsewhere\n");
    mEnv.translate = [](const char *message) {
        const QString text = QString::fromUtf8(message);
        if (text == QLatin1String("Screenshots"))
            return u"Bildschirmfotos"_s;
        if (text == QLatin1String("Screenshot From %s"))
            return u"Bildschirmfoto vom %s"_s;
        if (text == QLatin1String("Screenshot from %s"))
            return u"Bildschirmfoto von %s"_s;
        return text;
    };
    const auto settings = DesktopScreenshotSettings::detect(mEnv);
    EXPECT_EQ(settings.tool(), Tool::Gnome) << "the desktop wins over a tool's configuration file";
    EXPECT_EQ(settings.location(), home(u"Bilder/Bildschirmfotos"_s));
    EXPECT_EQ(settings.name(), u"Bildschirmfoto"_s);
    EXPECT_TRUE(settings.isDedicatedScreenshotFolder(home(u"Bilder/Bildschirmfotos/"_s)));
    EXPECT_FALSE(settings.isDedicatedScreenshotFolder(home(u"Bilder"_s)));

    // Untranslated: "Screenshot" covers "Screenshot From ..." and "Screenshot from ...".
    mEnv.translate = nullptr;
    const auto english = DesktopScreenshotSettings::detect(mEnv);
    EXPECT_EQ(english.location(), home(u"Bilder/Screenshots"_s));
    EXPECT_EQ(english.name(), u"Screenshot"_s);
}

TEST_F(DesktopScreenshotSettingsTest, EachToolsSaveSettingsAndDefaults)
{
    // The desktop named, the Pictures folder of user-dirs.dirs, a tool's configuration file and its text;
    // then what is detected. "~" stands for the home folder; an empty value is an unknown one.
    const struct
    {
        const char *label, *desktop, *pictures, *file, *text;
        Tool tool;
        const char *location, *type, *name, *dedicated;
    } cases[] = {
        {"GNOME without a Pictures folder saves in the home folder", "GNOME", "", "", "", Tool::Gnome,
         "~/Screenshots", "png", "Screenshot", "~/Screenshots"},
        {"Spectacle", "KDE", "", "spectaclerc",
         "[General]\nlaunchAction=TakeFullscreenScreenshot\n\n[ImageSave]\n"
         "imageSaveLocation=file:///shots/My%20Captures/\npreferredImageFormat=JPEG\n"
         "imageFilenameTemplate=Capture-<yyyy>-<MM>-<dd>\nimageFilenameTemplate[de]=Aufnahme-<yyyy>\n",
         Tool::Spectacle, "/shots/My Captures", "jpeg", "Capture", "/shots/My Captures"},
        // No desktop named: the configuration file that exists decides.
        {"older Spectacle keys; the Desktop holds more than screenshots", "", "Images", "spectaclerc",
         "[Save]\ndefaultSaveLocation[$e]=$HOME/Desktop\nsaveFilenameFormat=Screenshot_%Y%M%D_%H%m%S\n",
         Tool::Spectacle, "~/Desktop", "png", "Screenshot", ""},
        {"Spectacle's defaults", "", "Images", "spectaclerc", "[General]\nrememberLastRectangle=true\n",
         Tool::Spectacle, "~/Images/Screenshots", "png", "Screenshot", "~/Images/Screenshots"},
        {"Flameshot", "sway", "Pictures", "flameshot/flameshot.ini",
         "[General]\nsavePath=\"/data/screen "
         "shots\"\nsaveAsFileExtension=.JPG\nfilenamePattern=shot_%F_%H-%M\n",
         Tool::Flameshot, "/data/screen shots", "jpg", "shot", "/data/screen shots"},
        {"Flameshot's defaults: the Pictures folder, a name that starts with the date is no name", "sway",
         "Pictures", "flameshot/flameshot.ini", "[General]\nuiColor=#116688\n", Tool::Flameshot, "~/Pictures",
         "png", "", ""},
        {"no known tool", "XFCE", "Pictures", "", "", Tool::None, "", "", "", ""},
    };
    const auto expand = [&](const char *value) { return QString::fromUtf8(value).replace(u'~', mEnv.home); };
    for (const auto &c : cases) {
        SCOPED_TRACE(c.label);
        QDir(mEnv.home).removeRecursively();
        mEnv.currentDesktop = QString::fromUtf8(c.desktop);
        if (*c.pictures)
            config(u"user-dirs.dirs"_s, QByteArray("XDG_PICTURES_DIR=\"$HOME/") + c.pictures + "\"\n");
        if (*c.file)
            config(QString::fromUtf8(c.file), c.text);
        const auto settings = DesktopScreenshotSettings::detect(mEnv);
        EXPECT_EQ(settings.tool(), c.tool);
        for (const auto &[key, value] :
             {std::pair{"location", c.location}, std::pair{"type", c.type}, std::pair{"name", c.name}})
            EXPECT_EQ(settings.valueForKey(QLatin1String(key)).toString(), expand(value)) << key;
        EXPECT_EQ(settings.dedicatedFolder(), expand(c.dedicated));
        EXPECT_EQ(settings.isDedicatedScreenshotFolder(expand(c.location)), *c.dedicated != '\0');
    }
}

TEST_F(DesktopScreenshotSettingsTest, EscapesAreUndoneAsEachDialectWritesThem)
{
    using namespace DesktopConfigFiles;
    config(u"kde.ini"_s, "[General]\n"
                         "a=My\\sShots\\\\2026\\tx\\n\n"
                         "b[$e]=$HOME/Pictures\\x41\n"
                         "c[de]=Bildschirmfotos\n");
    const IniValues kde = readIni(mEnv.configHome + u"/kde.ini"_s, IniDialect::KConfig, mEnv.home);
    EXPECT_EQ(kde.value(u"General/a"_s), u"My Shots\\2026\tx\n"_s);
    EXPECT_EQ(kde.value(u"General/b"_s), mEnv.home + u"/Picturesx41"_s);
    EXPECT_FALSE(kde.contains(u"General/c"_s)) << "a translation is not the value";

    config(u"qt.ini"_s, "[General]\n"
                        "a=\"Caf\\xe9 \\\"shots\\\"\"\n"
                        "b=plain\\s\\x\n");
    const IniValues qt = readIni(mEnv.configHome + u"/qt.ini"_s, IniDialect::QSettings, mEnv.home);
    EXPECT_EQ(qt.value(u"General/a"_s), u"Caf\u00e9 \"shots\""_s);
    EXPECT_EQ(qt.value(u"General/b"_s), u"plainsx"_s);
}

} // namespace
