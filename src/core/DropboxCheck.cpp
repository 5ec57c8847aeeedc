// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/DropboxCheck.h"

#include "foundation/QZSUStandardVersionComparator.h"
#include "logging/Log.h"
#include "platform/Bundle.h"
#include "platform/RunningApplications.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>
#include <QJsonObject>
#include <QJsonParseError>
#include <QRegularExpression>
#include <QStringConverter>
#include <QStringDecoder>
#include <openssl/bio.h>
#include <openssl/evp.h>

namespace {

QString withoutPrefix(const QString &version)
{
    if (version.isNull())
        return version;
    QString cleaned = version;
    cleaned.remove(DropboxCheck::VersionPrefix);
    return cleaned;
}

QString readTrimmedFile(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return QString();
    const QString text = QString::fromUtf8(file.read(4096)).trimmed();
    return text.isEmpty() ? QString() : text;
}

QString processName(qint64 pid)
{
    return readTrimmedFile(QStringLiteral("/proc/%1/comm").arg(pid));
}

} // namespace

DropboxCheck::DropboxCheck() : DropboxCheck(QDir::homePath(), {}) {}

DropboxCheck::DropboxCheck(QString homeFolder, ClientFactsSource clientFacts)
    : mHomeFolder(std::move(homeFolder)), mClientFacts(std::move(clientFacts))
{
}

QString DropboxCheck::incompatibilityWarning()
{
    return QStringLiteral(
        "The Dropbox feature \"Share screenshots using Dropbox\" is incompatible with Corvex and "
        "might be turned on.\n\nPlease check the preferences in the Dropbox app and make sure "
        "it is turned off.\n");
}

bool DropboxCheck::screenshotFolderTest() const
{
    if (!runningClientTest())
        return false;
    QStringList folders = accountFolders();
    if (const std::optional<QString> folder = dropboxFolder())
        folders.prepend(*folder);
    for (const QString &folder : std::as_const(folders)) {
        if (QFileInfo(folder + QStringLiteral("/Screenshots")).isDir())
            return true;
    }
    return false;
}

QStringList DropboxCheck::accountFolders() const
{
    const QString path = homeFolder() + QStringLiteral("/.dropbox/info.json");
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return {};
    QJsonParseError error{};
    const QJsonDocument document = QJsonDocument::fromJson(file.readAll(), &error);
    if (error.error != QJsonParseError::NoError || !document.isObject()) {
        DDLogWarn(QStringLiteral("Ignoring the Dropbox settings file %1: %2")
                      .arg(path, error.error != QJsonParseError::NoError ? error.errorString()
                                                                         : QStringLiteral("not an object")));
        return {};
    }
    QStringList folders;
    for (const char *account : {"personal", "business"}) {
        const QString folder = document.object()
                                   .value(QLatin1StringView(account))
                                   .toObject()
                                   .value(QStringLiteral("path"))
                                   .toString();
        if (QDir::isAbsolutePath(folder))
            folders.append(folder);
    }
    return folders;
}

void DropboxCheck::checkDropbox() const
{
    if (screenshotFolderTest())
        DDLogWarn(incompatibilityWarning());
}

bool DropboxCheck::runningClientTest() const
{
    const DropboxClientFacts facts = clientFacts();
    if (!facts.running)
        return false;
    const QZSUStandardVersionComparator &comparator = QZSUStandardVersionComparator::defaultComparator();
    // A missing version compares as the empty string, which every real version is newer than.
    for (const QString &version :
         {withoutPrefix(facts.bundleVersion), withoutPrefix(facts.shortVersionString)}) {
        if (comparator.compareVersion(MinimumVersion, version) ==
            QZSUStandardVersionComparator::OrderedDescending)
            return false;
    }
    return true;
}

std::optional<QString> DropboxCheck::dropboxFolder() const
{
    QFile file(homeFolder() + QStringLiteral("/.dropbox/host.db"));
    if (!file.open(QIODevice::ReadOnly))
        return std::nullopt;
    const QByteArray bytes = file.readAll();
    if (file.error() != QFileDevice::NoError)
        return std::nullopt;

    // The encoding is detected from a byte-order mark; without one the file is UTF-8.
    const QStringConverter::Encoding encoding =
        QStringConverter::encodingForData(bytes).value_or(QStringConverter::Utf8);
    QStringDecoder textDecoder(encoding, QStringConverter::Flag::Stateless);
    const QString text = textDecoder.decode(bytes);
    if (textDecoder.hasError())
        return std::nullopt;

    const QStringList lines = text.split(QLatin1Char('\n'));
    if (lines.size() < 2)
        return std::nullopt;

    const std::optional<QByteArray> decoded = decodeBase64(lines.at(1).toLatin1());
    if (!decoded)
        return std::nullopt;

    QStringDecoder utf8(QStringConverter::Utf8, QStringConverter::Flag::Stateless);
    const QString path = utf8.decode(*decoded);
    if (utf8.hasError() || path.isEmpty() || !QDir::isAbsolutePath(path))
        return std::nullopt;
    return path;
}

std::optional<QByteArray> DropboxCheck::decodeBase64(const QByteArray &text)
{
    const QByteArray input = text + '\n';
    BIO *base64 = BIO_new(BIO_f_base64());
    if (!base64)
        return std::nullopt;
    BIO *source = BIO_new_mem_buf(input.constData(), int(input.size()));
    if (!source) {
        BIO_free_all(base64);
        return std::nullopt;
    }
    BIO_push(base64, source);

    QByteArray decoded;
    char chunk[256];
    int count = 0;
    while ((count = BIO_read(base64, chunk, int(sizeof chunk))) > 0)
        decoded.append(chunk, count);
    BIO_free_all(base64);

    if (count < 0 || decoded.isEmpty())
        return std::nullopt;
    // The filter drops what it cannot decode without saying so (also the tail of a line longer than its
    // 1024-byte buffer): only a result of exactly the length the text encodes is the folder's path.
    const QByteArray digits = text.simplified().replace(' ', QByteArray());
    const qsizetype padding = digits.endsWith("==") ? 2 : digits.endsWith('=') ? 1 : 0;
    if (digits.size() % 4 != 0 || decoded.size() != digits.size() / 4 * 3 - padding)
        return std::nullopt;
    return decoded;
}

QString DropboxCheck::versionFromDistributionFolderName(const QString &folderName)
{
    // "dropbox-lnx.<arch>-<version>", the version starting with a digit.
    static const QRegularExpression pattern(QStringLiteral("^dropbox-lnx\\.[^-]+-(\\d.*)$"));
    const QRegularExpressionMatch match = pattern.match(folderName);
    return match.hasMatch() ? match.captured(1) : QString();
}

DropboxClientFacts DropboxCheck::systemClientFacts(const QString &homeFolder)
{
    const QList<RunningApplication> bundled =
        RunningApplications::runningApplicationsWithBundleIdentifier(DropboxBundleIdentifier);
    if (!bundled.isEmpty()) {
        const Bundle bundle(bundled.first().bundlePath);
        return DropboxClientFacts{true, bundle.bundleVersion(), bundle.shortVersionString()};
    }

    const QString distribution = QDir::cleanPath(homeFolder + QStringLiteral("/.dropbox-dist"));
    const QString distributionPrefix = distribution + QLatin1Char('/');
    for (const qint64 pid : RunningApplications::processIds()) {
        const QString executable = RunningApplications::executablePathOfProcess(pid);
        if (executable.isEmpty())
            continue;
        const bool fromDistribution = executable.startsWith(distributionPrefix);
        if (!fromDistribution && QFileInfo(executable).fileName() != QLatin1String("dropbox") &&
            processName(pid) != QLatin1String("dropbox"))
            continue;

        QString version;
        if (fromDistribution) {
            const QString folder = executable.mid(distributionPrefix.size()).section(QLatin1Char('/'), 0, 0);
            version = versionFromDistributionFolderName(folder);
        }
        if (version.isNull())
            version = readTrimmedFile(distribution + QStringLiteral("/VERSION"));
        return DropboxClientFacts{true, version, version};
    }
    return DropboxClientFacts{};
}

DropboxClientFacts DropboxCheck::clientFacts() const
{
    return mClientFacts ? mClientFacts() : systemClientFacts(mHomeFolder);
}
