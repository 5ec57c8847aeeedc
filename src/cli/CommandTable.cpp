// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
//
// The command table of `corvex`: every command's usage and help, and the functions of the built-in ones.
#include "cli/Command.h"

#include <cstring>

namespace cli {

namespace {

// Sorted by name.
constexpr Command table[] = {
    {"about", "", "Prints the version and a description of this system for bug reports.",
     "The same description the feedback e-mail carries: version, operating system, memory, displays, "
     "locale,\n"
     "languages, time format and the custom screenshot settings (an empty last line when there are none).",
     nullptr},
    {"defaults", "read [DOMAIN [KEY]] | write DOMAIN KEY [TYPE] VALUE... | delete DOMAIN [KEY]",
     "Reads, writes and deletes preferences, as XML property lists.",
     "read                  prints every domain and its contents\n"
     "read DOMAIN [KEY]     prints the domain, or one value, as an XML property list\n"
     "write DOMAIN KEY VALUE             stores VALUE as a string\n"
     "write DOMAIN KEY -string|-int|-float|-bool|-data|-date VALUE\n"
     "                      -bool takes YES/NO/true/false/1/0, -data hex digits, -date ISO 8601\n"
     "write DOMAIN KEY -array [VALUE...]          an array of strings (a -TYPE VALUE pair gives a typed "
     "element)\n"
     "write DOMAIN KEY -array-add [VALUE...]      appends to the array\n"
     "write DOMAIN KEY -dict [KEY VALUE...]       a dictionary (values are strings unless -TYPE VALUE)\n"
     "write DOMAIN KEY -dict-add [KEY VALUE...]   adds to the dictionary\n"
     "delete DOMAIN [KEY]   deletes one key, or the whole domain\n"
     "\n"
     "Domains are kept in $XDG_CONFIG_HOME/corvex/DOMAIN.plist.",
     &runDefaults},
    {"name", "FILE [FORMAT-EXTENSION]",
     "Prints the name (no folder, no extension) the stored renaming pattern gives the file.",
     "The pattern is \"autoRenameFormat\" of the com.ostrel.Corvex domain: pieces joined by ':', each a "
     "token\n"
     "such as $DateYYYY$, $TimeHH$, $Counter3$ or $Dimensions1$, or literal text. Every counter token "
     "advances\n"
     "the stored \"autoRenameCount\", as a real rename does. Dimensions are measured as the format given "
     "(the\n"
     "file's own extension by default) says: a PDF's first page, else the image in points.",
     nullptr},
    {"notifications", "listen [NAME...] | post NAME [KEY=VALUE | KEY:=JSON ...]",
     "Prints the distributed notifications of the session, or posts one.",
     "listen prints every distributed notification of the session (or only those with the given names), one\n"
     "line each: the name, a tab, and the user info as one-line JSON. Dates are ISO 8601 in UTC with\n"
     "milliseconds, data is base64, the null marker is null. It runs until interrupted (Ctrl-C or SIGTERM).\n"
     "\n"
     "post sends one notification. Each KEY=VALUE pair adds a user-info entry whose type follows from "
     "VALUE:\n"
     "an optional minus sign and digits only (fitting 64 bits) give an integer, true and false give "
     "booleans,\n"
     "anything else is a string (KEY= gives the empty string). KEY:=JSON takes a JSON value instead: whole\n"
     "numbers within 64 bits are integers (2.0 too), other numbers reals; strings, true and false keep "
     "their\n"
     "type; arrays and objects nest; null is the null marker.\n"
     "Examples:\n"
     "  corvex notifications post CorvexScreenshotMatched filePath=/tmp/a.png screenNum=1\n"
     "  corvex notifications post Example 'list:=[1, 2.5, \"three\"]' 'note:=\"42\"'",
     nullptr},
    {"process", "FILE",
     "Applies the automatic steps that are switched on to the file, as the agent does; prints its final "
     "path.",
     "The steps, in order, each when its switch in the com.ostrel.Corvex domain is on:\n"
     "  rename   \"autoRename\": the name \"autoRenameFormat\" gives, with the file's extension, same "
     "folder\n"
     "  convert  \"autoReformat\": to the format of \"autoReformatExtension\" (the source goes to the "
     "Trash)\n"
     "  move     \"autoMove\": into \"autoMoveFolder\" (created when missing)\n"
     "  open     \"openWith\": with \"openWithBundleIdentifier\", when the window is off "
     "(\"showCorvexWindow\")\n"
     "An existing file is never replaced: a taken name gets \" 2\", \" 3\", ... before the extension. A "
     "failing\n"
     "step is reported and skipped, the file stays where it is; the exit status is then 1.",
     nullptr},
    {"rename", "[--replace] SOURCE DESTINATION",
     "Moves an image, or converts it to the format of the destination's extension (the source goes to the "
     "Trash).",
     "The formats come from the extensions: gif, jpg/jpeg/jpe, bmp, pdf, png, tiff/tif (any case). When "
     "both\n"
     "are the same format the file is moved. Otherwise the image (page 1 of a PDF) is written in the new\n"
     "format and the source is moved to the Trash, even when the conversion fails, so that it can be put "
     "back\n"
     "from there. Something already at the destination is left alone and the command fails, unless "
     "--replace\n"
     "is given: then a file in the way of a move goes to the Trash first, and one in the way of a "
     "conversion\n"
     "is replaced only once the new file is complete.",
     nullptr},
    {"update", "check [--feed URL] [--bundle PATH] | verify ARCHIVE [--key KEY] [--signature SIG]",
     "Checks the update feed for a newer Corvex, or verifies a release archive.",
     "check   reads the feed (Info.plist's SUFeedURL, the preference SUFeedURL, or --feed) and exits 0 when\n"
     "        no newer version is offered, 2 when one is (printing its versions), 1 on any error.\n"
     "verify  checks the archive's Ed25519 signature (--signature: base64 text or a file; default "
     "ARCHIVE.sig)\n"
     "        against the key (--key: base64 of the 32-byte public key, a PEM public key, or a file holding\n"
     "        either; default the bundle's SUPublicEDKey), then that it unpacks safely to one bundle.\n"
     "        Exits 0 when both hold, 1 otherwise.\n"
     "--bundle names the Corvex.app to act for (default: the one this program belongs to).",
     nullptr},
    {"version-compare", "A B", "Compares two version strings; prints -1 (A older), 0 (same) or 1 (A newer).",
     "Digits compare by value, other runs of characters literally; a letter suffix sorts below the release "
     "it\n"
     "qualifies (1.0b < 1.0) and an extra number sorts above (1.0 < 1.0.1).",
     &runVersionCompare},
    {"watch", "PATH...",
     "Watches files and folders and prints each change as \"<notification>\\t<path>\" until interrupted.",
     "Reports renames, writes, deletions and attribute changes, one line each, with the path as given.\n"
     "A path that cannot be watched is reported on stderr; Ctrl-C (or SIGTERM) ends the command.",
     nullptr},
};

} // namespace

std::span<const Command> commands()
{
    return table;
}

const Command *findCommand(const char *name)
{
    for (const Command &command : table)
        if (std::strcmp(command.name, name) == 0)
            return &command;
    return nullptr;
}

QString moduleFileName(const Command &command)
{
    return QStringLiteral("libcorvex_command_%1.so").arg(QLatin1String(command.name));
}

void printUsage(std::FILE *stream)
{
    QString text = QStringLiteral("usage: corvex COMMAND [ARGUMENTS...] | --version\n\nCommands:\n");
    for (const Command &command : table)
        text += QStringLiteral("  %1 %2\n      %3\n")
                    .arg(QLatin1String(command.name), QString::fromUtf8(command.usage),
                         QString::fromUtf8(command.summary));
    text += QStringLiteral("\nRun 'corvex COMMAND --help' for a command's help.\n");
    std::fputs(text.toUtf8().constData(), stream);
}

void printHelp(const Command &command)
{
    out(QStringLiteral("usage: corvex %1 %2\n%3\n")
            .arg(QLatin1String(command.name), QString::fromUtf8(command.usage),
                 QString::fromUtf8(command.summary)));
    if (*command.help)
        out(QStringLiteral("\n%1\n").arg(QString::fromUtf8(command.help)));
}

} // namespace cli
