// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
//
// Every text a user sees goes through the translation tables, and the German table translates all of them.
#include "TestSupport.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QLibraryInfo>
#include <QRegularExpression>
#include <QSet>
#include <QXmlStreamReader>
#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace {

const QString sourceRoot = QDir::cleanPath(QStringLiteral(CORVEX_TEST_SOURCE_DIR "/../src"));
const QString germanTable =
    QDir::cleanPath(QStringLiteral(CORVEX_TEST_SOURCE_DIR "/../resources/translations/corvex_de.ts"));

// A literal handed straight to something that shows it: a setter of visible text or a widget made with its
// text.
const QRegularExpression untranslatedLiteral(QStringLiteral(
    R"re(\b(setText|setWindowTitle|setToolTip|setPlaceholderText|setInformativeText|setDetailedText|)re"
    R"re(setMessageText|addButtonWithTitle|addAction|addMenu|setTitle|setStatusTip|setLabelText|)re"
    R"re(setWhatsThis|setTabText|addTab|addItem|QPushButton|QLabel|QCheckBox|QAction|QMenu|QGroupBox|)re"
    R"re(QRadioButton|QToolButton)\s*\(\s*(?:[\w>.-]+,\s*)?(?:QStringLiteral\(|QLatin1String\()?u?")re"
    R"re(([^"]*)")re"));

bool needsTranslation(const QString &text)
{
    // The product's name and texts without words (":", "…", "%1") stay as they are.
    static const QRegularExpression word(u"[A-Za-z]{2,}"_s);
    return text != u"Corvex"_s && word.match(text).hasMatch();
}

QStringList untranslatedTexts(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return {path + u": unreadable"_s};
    QStringList found;
    int number = 0;
    for (const QByteArray &line : file.readAll().split('\n')) {
        ++number;
        const QRegularExpressionMatch match = untranslatedLiteral.match(QString::fromUtf8(line));
        if (match.hasMatch() && needsTranslation(match.captured(2)))
            found.append(u"%1:%2: \"%3\""_s.arg(path).arg(number).arg(match.captured(2)));
    }
    return found;
}

struct TableEntry
{
    QString context, source;
    bool finished = false;
};

QList<TableEntry> readTable(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return {};
    QXmlStreamReader xml(&file);
    QList<TableEntry> messages;
    QString context;
    TableEntry message;
    while (!xml.atEnd()) {
        xml.readNext();
        if (!xml.isStartElement())
            continue;
        if (xml.name() == u"name") {
            context = xml.readElementText();
        } else if (xml.name() == u"message") {
            message = TableEntry{context, {}, false};
        } else if (xml.name() == u"source") {
            message.source = xml.readElementText();
        } else if (xml.name() == u"translation") {
            const bool unfinished = xml.attributes().value(u"type"_s) == u"unfinished";
            const QString translation = xml.readElementText(QXmlStreamReader::IncludeChildElements);
            message.finished = !unfinished && !translation.trimmed().isEmpty();
            messages.append(message);
        }
    }
    return messages;
}

TEST(TranslatableTextsTest, VisibleTextsAreMarkedForTranslation)
{
    // The detector itself: a plain literal is found, a translated one and a name are not.
    const QString probe = corvex::test::writeFile(
        QDir::home().filePath(u"probe.cpp"_s),
        "button->setText(QStringLiteral(\"Rename\"));\nlabel->setText(tr(\"Folder:\"));\n"
        "alert.addButtonWithTitle(\"Do Not Move\");\nwindow->setWindowTitle(QStringLiteral(\"Corvex\"));\n"
        "auto *box = new QCheckBox(QStringLiteral(\"Start at log-in\"));\n");
    EXPECT_EQ(untranslatedTexts(probe).size(), 3) << untranslatedTexts(probe).join(u'\n').toStdString();

    QStringList found;
    QDirIterator it(sourceRoot, {u"*.cpp"_s, u"*.h"_s}, QDir::Files, QDirIterator::Subdirectories);
    while (it.hasNext())
        found += untranslatedTexts(it.next());
    EXPECT_TRUE(found.isEmpty()) << "texts shown without tr():\n" << found.join(u'\n').toStdString();
}

TEST(TranslatableTextsTest, GermanTableTranslatesEveryText)
{
    const QString lupdate = QLibraryInfo::path(QLibraryInfo::BinariesPath) + u"/lupdate"_s;
    if (!QFileInfo(lupdate).isExecutable())
        GTEST_SKIP() << "no lupdate at " << lupdate.toStdString();
    const QString extracted = QDir::home().filePath(u"extracted_de.ts"_s);
    const corvex::test::ProcessResult result =
        corvex::test::run(lupdate, {u"-silent"_s, u"-recursive"_s, sourceRoot, u"-ts"_s, extracted});
    ASSERT_EQ(result.exitCode, 0) << result.err.toStdString();

    QSet<QString> translated;
    const QList<TableEntry> table = readTable(germanTable);
    ASSERT_FALSE(table.isEmpty()) << germanTable.toStdString();
    for (const TableEntry &message : table) {
        if (message.finished)
            translated.insert(message.context + u'\x1f' + message.source);
    }
    QStringList missing;
    for (const TableEntry &message : readTable(extracted)) {
        if (!translated.contains(message.context + u'\x1f' + message.source))
            missing.append(message.context + u": "_s + message.source);
    }
    EXPECT_TRUE(missing.isEmpty()) << missing.size() << " texts without a German translation (run the "
                                   << "update_translations target and translate them):\n"
                                   << missing.join(u'\n').toStdString();
}

} // namespace
