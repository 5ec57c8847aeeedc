// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
//
// corvex update check [--feed URL] [--bundle PATH]: asks the update feed whether a newer version exists.
// corvex update verify ARCHIVE [--key KEY] [--signature SIG]: checks a release archive's signature and
// contents.
#include "cli/CommandModule.h"
#include "core/AppUserDefaults.h"
#include "core/SUAppcastItem.h"
#include "core/SUSignatureVerifier.h"
#include "core/SUUpdateArchive.h"
#include "core/SUUpdater.h"
#include "core/TypedPreferences.h"
#include "platform/Bundle.h"

#include <QCoreApplication>
#include <QEventLoop>
#include <QFileInfo>
#include <QTemporaryDir>

namespace {

// Takes "--name VALUE" out of the arguments; false when the option lacks its value.
bool takeOption(QStringList &arguments, const QString &name, QString *value)
{
    const int index = arguments.indexOf(name);
    if (index < 0)
        return true;
    if (index + 1 >= arguments.size())
        return false;
    *value = arguments.at(index + 1);
    arguments.remove(index, 2);
    return true;
}

// The bundle to check for: the given one, else the one this program lies in, else the bundle a build puts
// beside the bin folder.
Bundle hostBundle(const QString &given)
{
    if (!given.isEmpty())
        return Bundle(given);
    const Bundle main = Bundle::mainBundle();
    if (main.isValid())
        return main;
    return Bundle(QCoreApplication::applicationDirPath() + QStringLiteral("/../Corvex.app"));
}

int runCheck(QStringList arguments)
{
    QString feed, bundlePath;
    if (!takeOption(arguments, QStringLiteral("--feed"), &feed) ||
        !takeOption(arguments, QStringLiteral("--bundle"), &bundlePath))
        return cli::fail(QStringLiteral("update check: an option lacks its value"));
    if (!arguments.isEmpty())
        return cli::fail(QStringLiteral("update check: unexpected argument '%1'").arg(arguments.first()));
    const Bundle bundle = hostBundle(bundlePath);
    if (!bundle.isValid())
        return cli::fail(
            QStringLiteral("update check: no Corvex bundle found (give one with --bundle PATH)"));
    SUUpdater updater(bundle, AppUserDefaults::sharedCorvexDefaults());
    if (!feed.isEmpty()) {
        const QUrl url = QUrl::fromUserInput(feed, QDir::currentPath(), QUrl::AssumeLocalFile);
        if (!url.isValid())
            return cli::fail(QStringLiteral("update check: '%1' is not a URL").arg(feed));
        updater.setFeedURL(url);
    }
    int status = 1;
    QEventLoop loop;
    QObject::connect(&updater, &SUUpdater::updateFound, &loop, [&](const SUAppcastItem &item) {
        cli::out(QStringLiteral("Corvex %1 (%2) is available; this is %3 (%4).\n%5\n")
                     .arg(item.displayVersionString(), item.versionString, bundle.shortVersionString(),
                          bundle.bundleVersion(), item.fileURL.toDisplayString()));
        status = 2;
        loop.quit();
    });
    QObject::connect(&updater, &SUUpdater::noUpdateFound, &loop, [&] {
        cli::out(QStringLiteral("Corvex %1 (%2) is up to date.\n")
                     .arg(bundle.shortVersionString(), bundle.bundleVersion()));
        status = 0;
        loop.quit();
    });
    QObject::connect(&updater, &SUUpdater::failed, &loop, [&](const CorvexError &error) {
        cli::fail(QStringLiteral("update check: %1").arg(error.localizedDescription()));
        status = 1;
        loop.quit();
    });
    updater.checkForUpdates();
    if (updater.phase() != SUUpdater::Phase::Idle)
        loop.exec();
    return status;
}

// A key or signature given as text, or as the name of a file that holds it.
QString textOrFileContents(const QString &value)
{
    QFile file(value);
    if (QFileInfo(value).isFile() && file.open(QIODevice::ReadOnly))
        return QString::fromLatin1(file.readAll()).trimmed();
    return value;
}

int runVerify(QStringList arguments)
{
    QString key, signature, bundlePath;
    if (!takeOption(arguments, QStringLiteral("--key"), &key) ||
        !takeOption(arguments, QStringLiteral("--signature"), &signature) ||
        !takeOption(arguments, QStringLiteral("--bundle"), &bundlePath))
        return cli::fail(QStringLiteral("update verify: an option lacks its value"));
    if (arguments.size() != 1)
        return cli::fail(
            QStringLiteral("update verify needs exactly one archive (usage: corvex update verify "
                           "ARCHIVE [--key KEY] [--signature SIG])"));
    const QString archive = arguments.first();
    if (!QFileInfo(archive).isFile())
        return cli::fail(QStringLiteral("update verify: no such file: %1").arg(archive));
    if (key.isEmpty()) {
        const Bundle bundle = hostBundle(bundlePath);
        key = bundle.objectForInfoDictionaryKey(QStringLiteral("SUPublicEDKey")).toString();
        if (key.isEmpty())
            return cli::fail(
                QStringLiteral("update verify: no key given and no bundle with \"SUPublicEDKey\" found"));
    }
    if (signature.isEmpty()) {
        if (!QFileInfo(archive + QStringLiteral(".sig")).isFile())
            return cli::fail(
                QStringLiteral("update verify: no signature given and no %1.sig beside it").arg(archive));
        signature = archive + QStringLiteral(".sig");
    }
    const SUSignatureVerifier verifier(textOrFileContents(key));
    if (!verifier.isValid())
        return cli::fail(QStringLiteral("update verify: %1").arg(verifier.keyError()));
    CorvexError error;
    if (!verifier.verifyFile(archive, textOrFileContents(signature), &error))
        return cli::fail(QStringLiteral("update verify: %1").arg(error.localizedDescription()));
    QTemporaryDir folder;
    QString unpacked;
    if (!folder.isValid() || !SUUpdateArchive::unpack(archive, folder.path(), &unpacked, &error))
        return cli::fail(
            QStringLiteral("update verify: the signature is good, but %1").arg(error.localizedDescription()));
    const Bundle bundle(unpacked);
    if (!bundle.isValid())
        return cli::fail(QStringLiteral("update verify: the signature is good, but %1 has no Info.plist")
                             .arg(QFileInfo(unpacked).fileName()));
    cli::out(QStringLiteral("%1: good signature; holds %2 %3 (%4), %5\n")
                 .arg(archive, QFileInfo(unpacked).fileName(), bundle.shortVersionString(),
                      bundle.bundleVersion(), bundle.bundleIdentifier()));
    return 0;
}

int runUpdate(const QStringList &arguments)
{
    if (arguments.isEmpty())
        return cli::fail(QStringLiteral("update needs 'check' or 'verify' (try 'corvex update --help')"));
    const QString action = arguments.first();
    if (action == QLatin1String("check"))
        return runCheck(arguments.mid(1));
    if (action == QLatin1String("verify"))
        return runVerify(arguments.mid(1));
    return cli::fail(QStringLiteral("update: unknown action '%1' (use 'check' or 'verify')").arg(action));
}

} // namespace

extern "C" Q_DECL_EXPORT int corvex_command_main(int argc, char **argv)
{
    const QCoreApplication app(argc, argv);
    return cli::runModuleCommand(&runUpdate);
}
