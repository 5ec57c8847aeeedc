// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/DesktopScreenshotSettings.h"
#include "platform/DesktopConfigFiles_p.h"

#include "TestSupport.h"

#include <QDir>
#include <QTemporaryDir>
#include <gtest/gtest.h>

namespace {

using Tool = DesktopScreenshotSettings::Tool;

class DesktopScreenshotSettingsTest : public testing::Test
{
protected:
    DesktopScreenshotSettingsTest()
    {
        mEnv.home = mFolder.path() + QStringLiteral("/home");
        mEnv.configHome = mEnv.home + QStringLiteral("/.config");
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
    mEnv.currentDesktop = QStringLiteral("ubuntu:GNOME");
    config(QStringLiteral("user-dirs.dirs"), "# written by xdg-user-dirs-update\n"
                                             "XDG_DESKTOP_DIR=\"$HOME/Schreibtisch\"\n"
                                             "XDG_PICTURES_DIR=\"$HOME/Bilder\"\n");
    config(QStringLiteral("flameshot/flameshot.ini"), "[General]\nsavePath=/elsewhere\n");
    mEnv.translate = [](const char *message) {
        const QString text = QString::fromUtf8(message);
        if (text == QLatin1String("Screenshots"))
            return QStringLiteral("Bildschirmfotos");
        if (text == QLatin1String("Screenshot From %s"))
            return QStringLiteral("Bildschirmfoto vom %s");
        if (text == QLatin1String("Screenshot from %s"))
            return QStringLiteral("Bildschirmfoto von %s");
        return text;
    };
    const auto settings = DesktopScreenshotSettings::detect(mEnv);
    EXPECT_EQ(settings.tool(), Tool::Gnome) << "the desktop wins over a tool's configuration file";
    EXPECT_EQ(settings.location(), home(QStringLiteral("Bilder/Bildschirmfotos")));
    EXPECT_EQ(settings.type(), QStringLiteral("png"));
    EXPECT_EQ(settings.name(), QStringLiteral("Bildschirmfoto"));
    EXPECT_TRUE(settings.isDedicatedScreenshotFolder(home(QStringLiteral("Bilder/Bildschirmfotos/"))));
    EXPECT_FALSE(settings.isDedicatedScreenshotFolder(home(QStringLiteral("Bilder"))));
    EXPECT_EQ(settings.valueForKey(QStringLiteral("location")).toString(), settings.location());

    // Untranslated: "Screenshot" covers "Screenshot From ..." and "Screenshot from ...".
    mEnv.translate = nullptr;
    const auto english = DesktopScreenshotSettings::detect(mEnv);
    EXPECT_EQ(english.location(), home(QStringLiteral("Bilder/Screenshots")));
    EXPECT_EQ(english.name(), QStringLiteral("Screenshot"));
}

TEST_F(DesktopScreenshotSettingsTest, GnomeWithoutAPicturesFolderSavesInTheHomeFolder)
{
    mEnv.currentDesktop = QStringLiteral("GNOME");
    const auto settings = DesktopScreenshotSettings::detect(mEnv);
    EXPECT_EQ(settings.location(), home(QStringLiteral("Screenshots")));
    EXPECT_EQ(settings.dedicatedFolder(), settings.location());
}

TEST_F(DesktopScreenshotSettingsTest, SpectacleReadsItsSaveSettings)
{
    mEnv.currentDesktop = QStringLiteral("KDE");
    config(QStringLiteral("spectaclerc"), "[General]\nlaunchAction=TakeFullscreenScreenshot\n\n"
                                          "[ImageSave]\n"
                                          "imageSaveLocation=file:///shots/My%20Captures/\n"
                                          "preferredImageFormat=JPEG\n"
                                          "imageFilenameTemplate=Capture-<yyyy>-<MM>-<dd>\n"
                                          "imageFilenameTemplate[de]=Aufnahme-<yyyy>\n");
    const auto settings = DesktopScreenshotSettings::detect(mEnv);
    EXPECT_EQ(settings.tool(), Tool::Spectacle);
    EXPECT_EQ(settings.location(), QStringLiteral("/shots/My Captures"));
    EXPECT_EQ(settings.type(), QStringLiteral("jpeg"));
    EXPECT_EQ(settings.name(), QStringLiteral("Capture"));
    EXPECT_EQ(settings.dedicatedFolder(), QStringLiteral("/shots/My Captures"));
}

TEST_F(DesktopScreenshotSettingsTest, OlderSpectacleKeysAndDefaults)
{
    // No desktop named: the configuration file that exists decides.
    config(QStringLiteral("user-dirs.dirs"), "XDG_PICTURES_DIR=\"$HOME/Images\"\n");
    config(QStringLiteral("spectaclerc"), "[Save]\n"
                                          "defaultSaveLocation[$e]=$HOME/Desktop\n"
                                          "saveFilenameFormat=Screenshot_%Y%M%D_%H%m%S\n");
    auto settings = DesktopScreenshotSettings::detect(mEnv);
    EXPECT_EQ(settings.tool(), Tool::Spectacle);
    EXPECT_EQ(settings.location(), home(QStringLiteral("Desktop")));
    EXPECT_TRUE(settings.dedicatedFolder().isEmpty()) << "the Desktop holds more than screenshots";
    EXPECT_EQ(settings.name(), QStringLiteral("Screenshot"));
    EXPECT_EQ(settings.type(), QStringLiteral("png"));

    config(QStringLiteral("spectaclerc"), "[General]\nrememberLastRectangle=true\n");
    settings = DesktopScreenshotSettings::detect(mEnv);
    EXPECT_EQ(settings.location(), home(QStringLiteral("Images/Screenshots")));
    EXPECT_EQ(settings.name(), QStringLiteral("Screenshot"));
}

TEST_F(DesktopScreenshotSettingsTest, FlameshotReadsItsIniFile)
{
    mEnv.currentDesktop = QStringLiteral("sway");
    config(QStringLiteral("user-dirs.dirs"), "XDG_PICTURES_DIR=\"$HOME/Pictures\"\n");
    config(QStringLiteral("flameshot/flameshot.ini"), "[General]\n"
                                                      "savePath=\"/data/screen shots\"\n"
                                                      "saveAsFileExtension=.JPG\n"
                                                      "filenamePattern=shot_%F_%H-%M\n");
    auto settings = DesktopScreenshotSettings::detect(mEnv);
    EXPECT_EQ(settings.tool(), Tool::Flameshot);
    EXPECT_EQ(settings.location(), QStringLiteral("/data/screen shots"));
    EXPECT_EQ(settings.type(), QStringLiteral("jpg"));
    EXPECT_EQ(settings.name(), QStringLiteral("shot"));
    EXPECT_TRUE(settings.isDedicatedScreenshotFolder(QStringLiteral("/data/screen shots")));

    // Its defaults: the Pictures folder (not dedicated) and a name that starts with the date (no name).
    config(QStringLiteral("flameshot/flameshot.ini"), "[General]\nuiColor=#116688\n");
    settings = DesktopScreenshotSettings::detect(mEnv);
    EXPECT_EQ(settings.location(), home(QStringLiteral("Pictures")));
    EXPECT_TRUE(settings.dedicatedFolder().isEmpty());
    EXPECT_FALSE(settings.isDedicatedScreenshotFolder(home(QStringLiteral("Pictures"))));
    EXPECT_FALSE(settings.valueForKey(QStringLiteral("name")).isValid());
    EXPECT_EQ(settings.valueForKey(QStringLiteral("type")).toString(), QStringLiteral("png"));
}

TEST_F(DesktopScreenshotSettingsTest, NoKnownToolGivesNoValues)
{
    mEnv.currentDesktop = QStringLiteral("XFCE");
    config(QStringLiteral("user-dirs.dirs"), "XDG_PICTURES_DIR=\"$HOME/Pictures\"\n");
    const auto settings = DesktopScreenshotSettings::detect(mEnv);
    EXPECT_EQ(settings.tool(), Tool::None);
    for (const char *key : {"location", "type", "name"})
        EXPECT_FALSE(settings.valueForKey(QLatin1String(key)).isValid()) << key;
    EXPECT_FALSE(settings.isDedicatedScreenshotFolder(home(QStringLiteral("Pictures"))));
}

TEST_F(DesktopScreenshotSettingsTest, EscapesAreUndoneAsEachDialectWritesThem)
{
    using namespace DesktopConfigFiles;
    config(QStringLiteral("kde.ini"), "[General]\n"
                                      "a=My\\sShots\\\\2026\\tx\\n\n"
                                      "b[$e]=$HOME/Pictures\\x41\n"
                                      "c[de]=Bildschirmfotos\n");
    const IniValues kde =
        readIni(mEnv.configHome + QStringLiteral("/kde.ini"), IniDialect::KConfig, mEnv.home);
    EXPECT_EQ(kde.value(QStringLiteral("General/a")), QStringLiteral("My Shots\\2026\tx\n"));
    EXPECT_EQ(kde.value(QStringLiteral("General/b")), mEnv.home + QStringLiteral("/Picturesx41"));
    EXPECT_FALSE(kde.contains(QStringLiteral("General/c"))) << "a translation is not the value";

    config(QStringLiteral("qt.ini"), "[General]\n"
                                     "a=\"Caf\\xe9 \\\"shots\\\"\"\n"
                                     "b=plain\\s\\x\n");
    const IniValues qt =
        readIni(mEnv.configHome + QStringLiteral("/qt.ini"), IniDialect::QSettings, mEnv.home);
    EXPECT_EQ(qt.value(QStringLiteral("General/a")), QStringLiteral("Caf\u00e9 \"shots\""));
    EXPECT_EQ(qt.value(QStringLiteral("General/b")), QStringLiteral("plainsx"));
}

} // namespace
