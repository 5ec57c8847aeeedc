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
    EXPECT_EQ(settings.type(), u"png"_s);
    EXPECT_EQ(settings.name(), u"Bildschirmfoto"_s);
    EXPECT_TRUE(settings.isDedicatedScreenshotFolder(home(u"Bilder/Bildschirmfotos/"_s)));
    EXPECT_FALSE(settings.isDedicatedScreenshotFolder(home(u"Bilder"_s)));
    EXPECT_EQ(settings.valueForKey(u"location"_s).toString(), settings.location());

    // Untranslated: "Screenshot" covers "Screenshot From ..." and "Screenshot from ...".
    mEnv.translate = nullptr;
    const auto english = DesktopScreenshotSettings::detect(mEnv);
    EXPECT_EQ(english.location(), home(u"Bilder/Screenshots"_s));
    EXPECT_EQ(english.name(), u"Screenshot"_s);
}

TEST_F(DesktopScreenshotSettingsTest, GnomeWithoutAPicturesFolderSavesInTheHomeFolder)
{
    mEnv.currentDesktop = u"GNOME"_s;
    const auto settings = DesktopScreenshotSettings::detect(mEnv);
    EXPECT_EQ(settings.location(), home(u"Screenshots"_s));
    EXPECT_EQ(settings.dedicatedFolder(), settings.location());
}

TEST_F(DesktopScreenshotSettingsTest, SpectacleReadsItsSaveSettings)
{
    mEnv.currentDesktop = u"KDE"_s;
    config(u"spectaclerc"_s, "[General]\nlaunchAction=TakeFullscreenScreenshot\n\n"
                             "[ImageSave]\n"
                             "imageSaveLocation=file:///shots/My%20Captures/\n"
                             "preferredImageFormat=JPEG\n"
                             "imageFilenameTemplate=Capture-<yyyy>-<MM>-<dd>\n"
                             "imageFilenameTemplate[de]=Aufnahme-<yyyy>\n");
    const auto settings = DesktopScreenshotSettings::detect(mEnv);
    EXPECT_EQ(settings.tool(), Tool::Spectacle);
    EXPECT_EQ(settings.location(), u"/shots/My Captures"_s);
    EXPECT_EQ(settings.type(), u"jpeg"_s);
    EXPECT_EQ(settings.name(), u"Capture"_s);
    EXPECT_EQ(settings.dedicatedFolder(), u"/shots/My Captures"_s);
}

TEST_F(DesktopScreenshotSettingsTest, OlderSpectacleKeysAndDefaults)
{
    // No desktop named: the configuration file that exists decides.
    config(u"user-dirs.dirs"_s, "XDG_PICTURES_DIR=\"$HOME/Images\"\n");
    config(u"spectaclerc"_s, "[Save]\n"
                             "defaultSaveLocation[$e]=$HOME/Desktop\n"
                             "saveFilenameFormat=Screenshot_%Y%M%D_%H%m%S\n");
    auto settings = DesktopScreenshotSettings::detect(mEnv);
    EXPECT_EQ(settings.tool(), Tool::Spectacle);
    EXPECT_EQ(settings.location(), home(u"Desktop"_s));
    EXPECT_TRUE(settings.dedicatedFolder().isEmpty()) << "the Desktop holds more than screenshots";
    EXPECT_EQ(settings.name(), u"Screenshot"_s);
    EXPECT_EQ(settings.type(), u"png"_s);

    config(u"spectaclerc"_s, "[General]\nrememberLastRectangle=true\n");
    settings = DesktopScreenshotSettings::detect(mEnv);
    EXPECT_EQ(settings.location(), home(u"Images/Screenshots"_s));
    EXPECT_EQ(settings.name(), u"Screenshot"_s);
}

TEST_F(DesktopScreenshotSettingsTest, FlameshotReadsItsIniFile)
{
    mEnv.currentDesktop = u"sway"_s;
    config(u"user-dirs.dirs"_s, "XDG_PICTURES_DIR=\"$HOME/Pictures\"\n");
    config(u"flameshot/flameshot.ini"_s, "[General]\n"
                                         "savePath=\"/data/screen shots\"\n"
                                         "saveAsFileExtension=.JPG\n"
                                         "filenamePattern=shot_%F_%H-%M\n");
    auto settings = DesktopScreenshotSettings::detect(mEnv);
    EXPECT_EQ(settings.tool(), Tool::Flameshot);
    EXPECT_EQ(settings.location(), u"/data/screen shots"_s);
    EXPECT_EQ(settings.type(), u"jpg"_s);
    EXPECT_EQ(settings.name(), u"shot"_s);
    EXPECT_TRUE(settings.isDedicatedScreenshotFolder(u"/data/screen shots"_s));

    // Its defaults: the Pictures folder (not dedicated) and a name that starts with the date (no name).
    config(u"flameshot/flameshot.ini"_s, "[General]\nuiColor=#116688\n");
    settings = DesktopScreenshotSettings::detect(mEnv);
    EXPECT_EQ(settings.location(), home(u"Pictures"_s));
    EXPECT_TRUE(settings.dedicatedFolder().isEmpty());
    EXPECT_FALSE(settings.isDedicatedScreenshotFolder(home(u"Pictures"_s)));
    EXPECT_FALSE(settings.valueForKey(u"name"_s).isValid());
    EXPECT_EQ(settings.valueForKey(u"type"_s).toString(), u"png"_s);
}

TEST_F(DesktopScreenshotSettingsTest, NoKnownToolGivesNoValues)
{
    mEnv.currentDesktop = u"XFCE"_s;
    config(u"user-dirs.dirs"_s, "XDG_PICTURES_DIR=\"$HOME/Pictures\"\n");
    const auto settings = DesktopScreenshotSettings::detect(mEnv);
    EXPECT_EQ(settings.tool(), Tool::None);
    for (const char *key : {"location", "type", "name"})
        EXPECT_FALSE(settings.valueForKey(QLatin1String(key)).isValid()) << key;
    EXPECT_FALSE(settings.isDedicatedScreenshotFolder(home(u"Pictures"_s)));
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
