// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/AutostartEntry.h"

#include <QFile>
#include <QFileInfo>
#include <QSaveFile>
#include <cerrno>

namespace {

const QString desktopEntryGroup = QStringLiteral("[Desktop Entry]");

// Undoes the escapes of a string value: \s \n \t \r \\ (an unknown escape keeps its backslash).
QString unescapeValue(const QString &value)
{
    QString result;
    result.reserve(value.size());
    for (qsizetype i = 0; i < value.size(); ++i) {
        const QChar c = value.at(i);
        if (c != u'\\' || i + 1 == value.size()) {
            result.append(c);
            continue;
        }
        const QChar next = value.at(++i);
        switch (next.unicode()) {
        case 's':
            result.append(u' ');
            break;
        case 'n':
            result.append(u'\n');
            break;
        case 't':
            result.append(u'\t');
            break;
        case 'r':
            result.append(u'\r');
            break;
        case '\\':
            result.append(u'\\');
            break;
        default:
            result.append(c).append(next);
            break;
        }
    }
    return result;
}

QString escapeValue(const QString &value)
{
    QString result;
    result.reserve(value.size() + 8);
    for (qsizetype i = 0; i < value.size(); ++i) {
        const QChar c = value.at(i);
        switch (c.unicode()) {
        case '\\':
            result.append(QStringLiteral("\\\\"));
            break;
        case '\n':
            result.append(QStringLiteral("\\n"));
            break;
        case '\t':
            result.append(QStringLiteral("\\t"));
            break;
        case '\r':
            result.append(QStringLiteral("\\r"));
            break;
        case ' ':
            result.append(i == 0 ? QStringLiteral("\\s") : QStringLiteral(" "));
            break;
        default:
            result.append(c);
            break;
        }
    }
    return result;
}

bool isTrue(const QString &value)
{
    return value.trimmed() == QLatin1String("true");
}

bool isFalse(const QString &value)
{
    return value.trimmed() == QLatin1String("false");
}

bool isEnvironmentAssignment(const QString &word)
{
    const qsizetype equals = word.indexOf(u'=');
    return equals > 0 && !word.left(equals).contains(u'/');
}

} // namespace

bool AutostartEntry::read(const QString &path, int *status)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        if (status)
            *status =
                !QFileInfo::exists(path) ? ENOENT : (file.error() == QFile::PermissionsError ? EACCES : EIO);
        return false;
    }
    *this = AutostartEntry();
    bool inGroup = false;
    bool sawGroup = false;
    const QList<QByteArray> lines = file.readAll().split('\n');
    for (const QByteArray &rawLine : lines) {
        const QString line = QString::fromUtf8(rawLine).trimmed();
        if (line.isEmpty() || line.startsWith(u'#'))
            continue;
        if (line.startsWith(u'[')) {
            inGroup = line == desktopEntryGroup;
            sawGroup = sawGroup || inGroup;
            continue;
        }
        if (!inGroup)
            continue;
        const qsizetype equals = line.indexOf(u'=');
        if (equals <= 0)
            continue;
        const QString key = line.left(equals).trimmed();
        const QString value = unescapeValue(line.mid(equals + 1).trimmed());
        if (key == QLatin1String("Name"))
            mName = value;
        else if (key == QLatin1String("Exec"))
            mExec = value;
        else if (key == QLatin1String("Hidden"))
            mHidden = isTrue(value);
        else if (key == QLatin1String("X-GNOME-Autostart-enabled"))
            mAutostartEnabled = !isFalse(value);
    }
    if (!sawGroup) {
        if (status)
            *status = ENOEXEC;
        return false;
    }
    return true;
}

bool AutostartEntry::write(const QString &path, int *status) const
{
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly)) {
        if (status)
            *status = file.error() == QFile::PermissionsError ? EACCES : EIO;
        return false;
    }
    QString text = desktopEntryGroup + u'\n';
    text += QStringLiteral("Type=Application\n");
    text += QStringLiteral("Name=") + escapeValue(mName) + u'\n';
    text += QStringLiteral("Exec=") + escapeValue(mExec) + u'\n';
    text += QStringLiteral("Terminal=false\n");
    text += QStringLiteral("NoDisplay=true\n");
    if (mHidden)
        text += QStringLiteral("Hidden=true\n");
    text += QStringLiteral("X-GNOME-Autostart-enabled=") +
            (mAutostartEnabled ? QStringLiteral("true") : QStringLiteral("false")) + u'\n';
    file.write(text.toUtf8());
    if (!file.commit()) {
        if (status)
            *status = file.error() == QFile::PermissionsError ? EACCES : EIO;
        return false;
    }
    return true;
}

void AutostartEntry::setProgram(const QString &program)
{
    mExec = quoteArgument(program);
}

QString AutostartEntry::program() const
{
    QStringList words;
    if (!splitCommandLine(mExec, &words))
        return QString();
    qsizetype first = 0;
    if (!words.isEmpty() &&
        (words.first() == QLatin1String("env") || words.first() == QLatin1String("/usr/bin/env"))) {
        first = 1;
        while (first < words.size() && isEnvironmentAssignment(words.at(first)))
            ++first;
    }
    return first < words.size() ? words.at(first) : QString();
}

bool AutostartEntry::splitCommandLine(const QString &commandLine, QStringList *words)
{
    QStringList result;
    QString word;
    bool inWord = false;
    bool quoted = false;
    for (qsizetype i = 0; i < commandLine.size(); ++i) {
        const QChar c = commandLine.at(i);
        if (quoted) {
            if (c == u'"') {
                quoted = false;
                // A closing quote ends the word: the next character must separate it.
                if (i + 1 < commandLine.size() && !commandLine.at(i + 1).isSpace())
                    return false;
            } else if (c == u'\\' && i + 1 < commandLine.size()) {
                word.append(commandLine.at(++i));
            } else {
                word.append(c);
            }
            continue;
        }
        if (c.isSpace()) {
            if (inWord)
                result.append(word.replace(QStringLiteral("%%"), QStringLiteral("%")));
            word.clear();
            inWord = false;
        } else if (c == u'"') {
            if (inWord)
                return false;
            quoted = true;
            inWord = true;
        } else {
            word.append(c);
            inWord = true;
        }
    }
    if (quoted)
        return false;
    if (inWord)
        result.append(word.replace(QStringLiteral("%%"), QStringLiteral("%")));
    if (words)
        *words = result;
    return true;
}

QString AutostartEntry::quoteArgument(const QString &word)
{
    static const QString reserved = QStringLiteral(" \t\n\"'\\><~|&;$*?#()`");
    bool needsQuotes = word.isEmpty();
    // Any kind of space separates words when the line is read again, not only the ASCII ones.
    for (const QChar c : word)
        needsQuotes = needsQuotes || reserved.contains(c) || c.isSpace();
    QString text = word;
    text.replace(u'%', QStringLiteral("%%"));
    if (!needsQuotes)
        return text;
    QString quoted = QStringLiteral("\"");
    for (const QChar c : std::as_const(text)) {
        if (c == u'"' || c == u'`' || c == u'$' || c == u'\\')
            quoted.append(u'\\');
        quoted.append(c);
    }
    quoted.append(u'"');
    return quoted;
}
