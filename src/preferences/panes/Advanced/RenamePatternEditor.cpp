// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "RenamePatternEditor.h"

#include "core/FileFormat.h"
#include "core/RenamePattern.h"
#include "core/UserDefaults.h"
#include "foundation/PreferenceKeys.h"
#include "platform/DesktopScreenshotSettings.h"

#include <QEvent>
#include <QGridLayout>
#include <QGuiApplication>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QPushButton>
#include <QRegularExpressionValidator>
#include <QScreen>
#include <QTimer>
#include <QToolButton>

namespace {

// What each token stands for, in menu words; a token missing here is listed under its own name.
QString tokenDescription(const QString &token)
{
    static const QHash<QString, const char *> descriptions{
        {QStringLiteral("$DateShort$"), "Date, short"},
        {QStringLiteral("$DateMedium$"), "Date, medium"},
        {QStringLiteral("$DateLong$"), "Date, long"},
        {QStringLiteral("$DateFull$"), "Date, full"},
        {QStringLiteral("$DateYY$"), "Year, two digits"},
        {QStringLiteral("$DateYYYY$"), "Year"},
        {QStringLiteral("$DateM$"), "Month"},
        {QStringLiteral("$DateMM$"), "Month, two digits"},
        {QStringLiteral("$DateD$"), "Day"},
        {QStringLiteral("$DateDD$"), "Day, two digits"},
        {QStringLiteral("$TimeShort$"), "Time, short"},
        {QStringLiteral("$TimeMedium$"), "Time, medium"},
        {QStringLiteral("$TimeLong$"), "Time, long"},
        {QStringLiteral("$TimeFull$"), "Time, full"},
        {QStringLiteral("$TimeH$"), "Hour"},
        {QStringLiteral("$TimeHH$"), "Hour, two digits"},
        {QStringLiteral("$TimeM$"), "Minute"},
        {QStringLiteral("$TimeMM$"), "Minute, two digits"},
        {QStringLiteral("$TimeS$"), "Second"},
        {QStringLiteral("$TimeSS$"), "Second, two digits"},
        {QStringLiteral("$Counter1$"), "Counter"},
        {QStringLiteral("$Counter2$"), "Counter, two digits"},
        {QStringLiteral("$Counter3$"), "Counter, three digits"},
        {QStringLiteral("$Counter4$"), "Counter, four digits"},
        {QStringLiteral("$Dimensions1$"), "Width and height"},
        {QStringLiteral("$Dimensions2$"), "Width and height, spaced"},
    };
    const char *description = descriptions.value(token);
    return description ? RenamePatternEditor::tr(description) : token;
}

// The size of a sample screenshot: the primary screen's.
QSizeF sampleDimensions()
{
    const QScreen *screen = QGuiApplication::primaryScreen();
    return screen ? QSizeF(screen->size()) : QSizeF(1920, 1080);
}

RenamePattern::Sources sampleSources(qint64 counter)
{
    RenamePattern::Sources sources;
    // Each counter token takes the next number, as for a real screenshot; the stored count stays as it is.
    sources.nextCounterValue = [counter]() mutable {
        counter = qMax<qint64>(counter + 1, 1);
        return counter;
    };
    sources.dimensions = &sampleDimensions;
    return sources;
}

QString sampleExtension()
{
    UserDefaults &defaults = UserDefaults::standardUserDefaults();
    if (defaults.boolForKey(kAutoReformatKey)) {
        const FileFormat *format = qzFileFormatForExtension(FileFormat::allFileFormats(),
                                                            defaults.stringForKey(kAutoReformatExtensionKey));
        if (format)
            return format->preferredExtension();
    }
    const QString type = DesktopScreenshotSettings::current().type();
    return type.isEmpty() ? QStringLiteral("png") : type;
}

} // namespace

RenamePatternEditor::RenamePatternEditor(QWidget *parent) : QWidget(parent)
{
    mEdit = new QLineEdit(this);
    mEdit->setObjectName(QStringLiteral("renamePattern"));
    mEdit->setAccessibleName(tr("Renaming pattern"));
    mEdit->setPlaceholderText(tr("Screenshot $DateYYYY$-$DateMM$-$DateDD$"));
    mEdit->setClearButtonEnabled(true);
    // The line edit's own clear button has no text: a screen reader still says what it does.
    for (QToolButton *clear : mEdit->findChildren<QToolButton *>())
        clear->setAccessibleName(tr("Clear the pattern"));
    // The pattern's pieces are separated by colons, so a colon cannot be part of a name.
    mEdit->setValidator(new QRegularExpressionValidator(QRegularExpression(QStringLiteral("[^:]*")), mEdit));
    mEdit->setToolTip(
        tr("Text and tokens; a token such as $DateYYYY$ is replaced by its value. Colons are not "
           "allowed."));

    mMenu = new QMenu(this);
    buildMenu();
    // A push button draws its menu arrow beside the text, not over it.
    mInsertButton = new QPushButton(this);
    mInsertButton->setText(tr("&Insert Token"));
    mInsertButton->setAccessibleName(tr("Insert a token into the pattern"));
    mInsertButton->setMenu(mMenu);

    mPreview = new QLabel(this);
    mPreview->setObjectName(QStringLiteral("renamePreview"));
    mPreview->setTextInteractionFlags(Qt::TextSelectableByMouse);
    mPreview->setAccessibleName(tr("Example name"));

    auto *layout = new QGridLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setHorizontalSpacing(6);
    layout->addWidget(mEdit, 0, 0);
    layout->addWidget(mInsertButton, 0, 1);
    layout->addWidget(mPreview, 1, 0, 1, 2);

    mClock = new QTimer(this);
    mClock->setInterval(1000);
    connect(mClock, &QTimer::timeout, this, &RenamePatternEditor::updatePreview);
    connect(mEdit, &QLineEdit::textEdited, this, &RenamePatternEditor::textEdited);
    connect(&UserDefaults::standardUserDefaults(), &UserDefaults::valueChanged, this,
            [this](const QString &key) {
                if (key == kAutoRenameFormatKey)
                    showStoredPattern();
                else if (key == kAutoRenameCountKey || key == kAutoReformatKey ||
                         key == kAutoReformatExtensionKey)
                    updatePreview();
            });
    showStoredPattern();
}

QString RenamePatternEditor::patternFromText(const QString &text)
{
    QStringList pieces;
    QString literal;
    qsizetype i = 0;
    while (i < text.size()) {
        const qsizetype close = text.at(i) == QLatin1Char('$') ? text.indexOf(QLatin1Char('$'), i + 1) : -1;
        if (close > i && RenamePattern::isToken(text.mid(i, close - i + 1))) {
            if (!literal.isEmpty())
                pieces.append(std::exchange(literal, QString()));
            pieces.append(text.mid(i, close - i + 1));
            i = close + 1;
        } else {
            if (text.at(i) != QLatin1Char(':'))
                literal.append(text.at(i));
            ++i;
        }
    }
    if (!literal.isEmpty())
        pieces.append(literal);
    return pieces.join(QLatin1Char(':'));
}

QString RenamePatternEditor::textFromPattern(const QString &pattern)
{
    return pattern.split(QLatin1Char(':')).join(QString());
}

QString RenamePatternEditor::previewName(const QString &pattern, const QDateTime &date, qint64 counter,
                                         const QString &extension)
{
    const QString name = RenamePattern::fileName(pattern, date, sampleSources(counter));
    return extension.isEmpty() ? name : name + QLatin1Char('.') + extension;
}

QString RenamePatternEditor::previewText() const
{
    return mPreview->text();
}

void RenamePatternEditor::buildMenu()
{
    const QDateTime now = QDateTime::currentDateTime();
    const qint64 counter = UserDefaults::standardUserDefaults().integerForKey(kAutoRenameCountKey);
    const QList<QPair<QString, QString>> groups{{QStringLiteral("$Date"), tr("&Date")},
                                                {QStringLiteral("$Time"), tr("&Time")},
                                                {QStringLiteral("$Counter"), tr("&Counter")},
                                                {QStringLiteral("$Dimensions"), tr("D&imensions")}};
    QHash<QString, QMenu *> menus;
    for (const auto &[prefix, title] : groups)
        menus.insert(prefix, mMenu->addMenu(title));
    for (const QString &token : RenamePattern::allTokens()) {
        QMenu *menu = nullptr;
        for (const auto &group : groups)
            if (token.startsWith(group.first))
                menu = menus.value(group.first);
        if (!menu)
            menu = mMenu;
        const QString example = RenamePattern::expandPiece(token, now, sampleSources(counter));
        QAction *action = menu->addAction(tr("%1 (%2)").arg(tokenDescription(token), example));
        action->setData(token);
        action->setToolTip(token);
        connect(action, &QAction::triggered, this, [this, token] { insertToken(token); });
    }
}

void RenamePatternEditor::insertToken(const QString &token)
{
    mEdit->insert(token);
    textEdited(mEdit->text());
    mEdit->setFocus();
}

void RenamePatternEditor::textEdited(const QString &text)
{
    const QString pattern = patternFromText(text);
    UserDefaults &defaults = UserDefaults::standardUserDefaults();
    if (pattern.isEmpty())
        defaults.removeObjectForKey(kAutoRenameFormatKey);
    else if (defaults.stringForKey(kAutoRenameFormatKey) != pattern)
        defaults.setObject(pattern, kAutoRenameFormatKey);
    updatePreview();
}

void RenamePatternEditor::showStoredPattern()
{
    const QString stored = UserDefaults::standardUserDefaults().stringForKey(kAutoRenameFormatKey);
    // Text being typed stays as it is while it means the stored pattern.
    if (patternFromText(mEdit->text()) != stored)
        mEdit->setText(textFromPattern(stored));
    updatePreview();
}

void RenamePatternEditor::updatePreview()
{
    const QString pattern = UserDefaults::standardUserDefaults().stringForKey(kAutoRenameFormatKey);
    if (pattern.isEmpty()) {
        mPreview->setText(tr("Without a pattern, screenshots keep their names."));
        return;
    }
    const qint64 counter = UserDefaults::standardUserDefaults().integerForKey(kAutoRenameCountKey);
    mPreview->setText(
        tr("Example: %1")
            .arg(previewName(pattern, QDateTime::currentDateTime(), counter, sampleExtension())));
}

bool RenamePatternEditor::event(QEvent *event)
{
    // The example follows the clock only while it can be seen.
    if (event->type() == QEvent::Show) {
        updatePreview();
        mClock->start();
    } else if (event->type() == QEvent::Hide) {
        mClock->stop();
    }
    return QWidget::event(event);
}
