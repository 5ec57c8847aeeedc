// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/ArgumentDomain.h"

#include "platform/PropertyList.h"

#include <optional>

namespace ArgumentDomain {
namespace {

// A reader of the old-style (text) property-list form: strings, arrays, dictionaries and data.
class OldStyleReader
{
public:
    explicit OldStyleReader(const QString &text) : mText(text) {}

    // The whole text as one value; nullopt when it is not exactly one well-formed value.
    std::optional<QVariant> readDocument()
    {
        std::optional<QVariant> value = readValue(0);
        skipBlanks();
        if (!value || mPos != mText.size())
            return std::nullopt;
        return value;
    }

private:
    static constexpr int kMaxDepth = 64;

    bool atEnd() const { return mPos >= mText.size(); }
    QChar peek() const { return atEnd() ? QChar() : mText.at(mPos); }

    void skipBlanks()
    {
        while (!atEnd()) {
            if (peek().isSpace()) {
                ++mPos;
            } else if (mText.mid(mPos, 2) == QLatin1String("//")) {
                while (!atEnd() && peek() != QLatin1Char('\n'))
                    ++mPos;
            } else if (mText.mid(mPos, 2) == QLatin1String("/*")) {
                const qsizetype end = mText.indexOf(QLatin1String("*/"), mPos + 2);
                mPos = end < 0 ? mText.size() : end + 2;
            } else {
                return;
            }
        }
    }

    static bool isUnquotedChar(QChar c)
    {
        return (c >= QLatin1Char('a') && c <= QLatin1Char('z')) ||
               (c >= QLatin1Char('A') && c <= QLatin1Char('Z')) ||
               (c >= QLatin1Char('0') && c <= QLatin1Char('9')) || QStringLiteral("_$+/:.-").contains(c);
    }

    std::optional<QVariant> readValue(int depth)
    {
        if (depth > kMaxDepth)
            return std::nullopt;
        skipBlanks();
        const QChar c = peek();
        if (c == QLatin1Char('('))
            return readArray(depth);
        if (c == QLatin1Char('{'))
            return readDictionary(depth);
        if (c == QLatin1Char('<'))
            return readData();
        if (c == QLatin1Char('"') || c == QLatin1Char('\''))
            return readQuoted();
        const qsizetype start = mPos;
        while (!atEnd() && isUnquotedChar(peek()))
            ++mPos;
        if (mPos == start)
            return std::nullopt;
        return QVariant(mText.mid(start, mPos - start));
    }

    std::optional<QVariant> readArray(int depth)
    {
        ++mPos; // (
        QVariantList list;
        skipBlanks();
        while (peek() != QLatin1Char(')')) {
            std::optional<QVariant> element = readValue(depth + 1);
            if (!element)
                return std::nullopt;
            list.append(*element);
            skipBlanks();
            if (peek() == QLatin1Char(','))
                ++mPos;
            else if (peek() != QLatin1Char(')'))
                return std::nullopt;
            skipBlanks();
        }
        ++mPos; // )
        return QVariant(list);
    }

    std::optional<QVariant> readDictionary(int depth)
    {
        ++mPos; // {
        QVariantMap map;
        skipBlanks();
        while (peek() != QLatin1Char('}')) {
            std::optional<QVariant> key = readValue(depth + 1);
            if (!key || key->metaType().id() != QMetaType::QString)
                return std::nullopt;
            skipBlanks();
            if (peek() != QLatin1Char('='))
                return std::nullopt;
            ++mPos;
            std::optional<QVariant> value = readValue(depth + 1);
            if (!value)
                return std::nullopt;
            map.insert(key->toString(), *value);
            skipBlanks();
            if (peek() == QLatin1Char(';'))
                ++mPos;
            else if (peek() != QLatin1Char('}'))
                return std::nullopt;
            skipBlanks();
        }
        ++mPos; // }
        return QVariant(map);
    }

    std::optional<QVariant> readData()
    {
        ++mPos; // <
        QByteArray hex;
        while (!atEnd() && peek() != QLatin1Char('>')) {
            const QChar c = peek();
            const char16_t u = c.unicode();
            if ((u >= u'0' && u <= u'9') || (u >= u'a' && u <= u'f') || (u >= u'A' && u <= u'F'))
                hex.append(char(u));
            else if (!c.isSpace())
                return std::nullopt;
            ++mPos;
        }
        if (atEnd() || hex.size() % 2 != 0)
            return std::nullopt;
        ++mPos; // >
        return QVariant(QByteArray::fromHex(hex));
    }

    std::optional<QVariant> readQuoted()
    {
        const QChar quote = mText.at(mPos++);
        QString result;
        while (!atEnd() && peek() != quote) {
            QChar c = mText.at(mPos++);
            if (c == QLatin1Char('\\')) {
                if (atEnd())
                    return std::nullopt;
                c = mText.at(mPos++);
                switch (c.unicode()) {
                case 'n':
                    c = QLatin1Char('\n');
                    break;
                case 't':
                    c = QLatin1Char('\t');
                    break;
                case 'r':
                    c = QLatin1Char('\r');
                    break;
                case 'U':
                case 'u': {
                    bool ok = false;
                    const ushort code = mText.mid(mPos, 4).toUShort(&ok, 16);
                    if (!ok)
                        return std::nullopt;
                    mPos += 4;
                    c = QChar(code);
                    break;
                }
                default:
                    break; // \" \\ \' and any other character stand for themselves
                }
            }
            result.append(c);
        }
        if (atEnd())
            return std::nullopt;
        ++mPos; // closing quote
        return QVariant(result);
    }

    const QString &mText;
    qsizetype mPos = 0;
};

std::optional<QVariant> readXml(const QString &trimmed)
{
    QByteArray bytes = trimmed.toUtf8();
    if (!bytes.startsWith("<?xml") && !bytes.startsWith("<!DOCTYPE") && !bytes.startsWith("<plist"))
        bytes = "<plist version=\"1.0\">" + bytes + "</plist>";
    const QVariant value = PropertyList::parse(bytes);
    if (!value.isValid() || PropertyList::isNullMarker(value))
        return std::nullopt;
    return value;
}

} // namespace

QVariant parseValue(const QString &text)
{
    const QString trimmed = text.trimmed();
    if (trimmed.isEmpty())
        return QVariant(text);
    const QChar first = trimmed.at(0);
    std::optional<QVariant> value;
    if (first == QLatin1Char('<') && trimmed.size() > 1 &&
        (trimmed.at(1).isLetter() || trimmed.at(1) == QLatin1Char('?') || trimmed.at(1) == QLatin1Char('!')))
        value = readXml(trimmed);
    else if (QStringLiteral("({<\"'").contains(first))
        value = OldStyleReader(trimmed).readDocument();
    return value ? *value : QVariant(text);
}

QVariantMap parse(const QStringList &arguments)
{
    QVariantMap domain;
    for (qsizetype i = 0; i < arguments.size(); ++i) {
        const QString &argument = arguments.at(i);
        if (argument.size() < 2 || !argument.startsWith(QLatin1Char('-')) || i + 1 >= arguments.size())
            continue;
        domain.insert(argument.mid(1), parseValue(arguments.at(i + 1)));
        ++i;
    }
    return domain;
}

} // namespace ArgumentDomain
