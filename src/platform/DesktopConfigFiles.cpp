// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/DesktopConfigFiles_p.h"

#include "platform/HomeFolder.h"

#include <QDir>
#include <QFile>
#include <QUrl>

namespace DesktopConfigFiles {
namespace {

QStringList readLines(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return {};
    return QString::fromUtf8(file.readAll()).split(QLatin1Char('\n'));
}

QString expandHome(QString value, const QString &home)
{
    value = expandTildeInPath(value, home);
    value.replace(QLatin1String("${HOME}"), home);
    if (value.startsWith(QLatin1String("$HOME")))
        value.replace(0, 5, home);
    return value;
}

// Undoes the backslash escapes of a value: KConfig's \s, \t, \n, \r; QSettings' \t, \n, \r, \xHHHH and the
// quotes around a whole value. Any other escaped character stands for itself.
QString unescape(QString value, IniDialect dialect)
{
    const bool qsettings = dialect != IniDialect::KConfig;
    if (qsettings && value.size() >= 2 && value.startsWith(QLatin1Char('"')) &&
        value.endsWith(QLatin1Char('"')))
        value = value.mid(1, value.size() - 2);
    QString result;
    result.reserve(value.size());
    for (qsizetype i = 0; i < value.size(); ++i) {
        const QChar c = value.at(i);
        if (c != QLatin1Char('\\') || i + 1 >= value.size()) {
            result.append(c);
            continue;
        }
        const QChar next = value.at(++i);
        switch (next.unicode()) {
        case 's':
            result.append(qsettings ? next : QLatin1Char(' '));
            break;
        case 't':
            result.append(QLatin1Char('\t'));
            break;
        case 'n':
            result.append(QLatin1Char('\n'));
            break;
        case 'r':
            result.append(QLatin1Char('\r'));
            break;
        case 'x': {
            qsizetype end = i + 1;
            while (qsettings && end < value.size() && end < i + 5 &&
                   QStringLiteral("0123456789abcdefABCDEF").contains(value.at(end)))
                ++end;
            bool ok = false;
            const ushort code = value.mid(i + 1, end - i - 1).toUShort(&ok, 16);
            if (ok) {
                result.append(QChar(code));
                i = end - 1;
            } else {
                result.append(next);
            }
            break;
        }
        default:
            result.append(next);
            break;
        }
    }
    return result;
}

} // namespace

IniValues readIni(const QString &path, IniDialect dialect, const QString &home)
{
    IniValues values;
    QString group = QStringLiteral("General");
    for (QString line : readLines(path)) {
        line = line.trimmed();
        if (line.isEmpty() || line.startsWith(QLatin1Char('#')) || line.startsWith(QLatin1Char(';')))
            continue;
        if (line.startsWith(QLatin1Char('['))) {
            // KConfig nests groups as [Outer][Inner]; the innermost name is enough here.
            const qsizetype open = line.lastIndexOf(QLatin1Char('['));
            const qsizetype close = line.indexOf(QLatin1Char(']'), open);
            if (close > open)
                group = line.mid(open + 1, close - open - 1);
            continue;
        }
        const qsizetype equals = line.indexOf(QLatin1Char('='));
        if (equals <= 0)
            continue;
        QString key = line.left(equals).trimmed();
        QString value = line.mid(equals + 1).trimmed();
        if (dialect == IniDialect::KConfig) {
            bool expand = false;
            const qsizetype bracket = key.indexOf(QLatin1Char('['));
            if (bracket >= 0) {
                const QString options = key.mid(bracket);
                if (!options.startsWith(QLatin1String("[$")))
                    continue; // a translation of the value
                expand = options.contains(QLatin1Char('e'));
                key = key.left(bracket);
            }
            value = unescape(value, IniDialect::KConfig);
            if (expand)
                value = expandHome(value, home);
        } else {
            value = unescape(value, IniDialect::QSettings);
        }
        values.insert(group + QLatin1Char('/') + key, value);
    }
    return values;
}

QHash<QString, QString> readUserDirs(const QString &path, const QString &home)
{
    QHash<QString, QString> dirs;
    for (QString line : readLines(path)) {
        line = line.trimmed();
        if (line.isEmpty() || line.startsWith(QLatin1Char('#')))
            continue;
        const qsizetype equals = line.indexOf(QLatin1Char('='));
        if (equals <= 0)
            continue;
        const QString name = line.left(equals).trimmed();
        QString value = line.mid(equals + 1).trimmed();
        if (value.size() >= 2 && value.startsWith(QLatin1Char('"')) && value.endsWith(QLatin1Char('"')))
            value = value.mid(1, value.size() - 2);
        value.replace(QLatin1String("\\\""), QLatin1String("\""));
        value.replace(QLatin1String("\\\\"), QLatin1String("\\"));
        // Only "$HOME/..." and absolute paths are valid values.
        if (value == QLatin1String("$HOME") || value.startsWith(QLatin1String("$HOME/")))
            value = QDir::cleanPath(home + value.mid(5));
        else if (value.startsWith(QLatin1Char('/')))
            value = QDir::cleanPath(value);
        else
            continue;
        dirs.insert(name, value);
    }
    return dirs;
}

QString folderFromSetting(const QString &value, const QString &home)
{
    QString text = value.trimmed();
    if (text.isEmpty())
        return {};
    if (text.startsWith(QLatin1String("file:"))) {
        const QUrl url(text);
        if (!url.isLocalFile())
            return {};
        text = url.toLocalFile();
    }
    text = expandHome(text, home);
    if (!text.startsWith(QLatin1Char('/')))
        return {};
    return QDir::cleanPath(text);
}

} // namespace DesktopConfigFiles
