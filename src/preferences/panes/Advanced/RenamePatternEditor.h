// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QDateTime>
#include <QString>
#include <QWidget>

class QLabel;
class QLineEdit;
class QMenu;
class QTimer;
class QPushButton;

// The editor of the renaming pattern ("autoRenameFormat"): the pattern as one line of text in which tokens
// such as "$DateYYYY$" stand between literal text, a menu that inserts every token, and a preview of the name
// the pattern gives a screenshot taken now. The preview uses the counter's next values without advancing it.
class RenamePatternEditor : public QWidget
{
    Q_OBJECT

public:
    explicit RenamePatternEditor(QWidget *parent = nullptr);

    // The stored form of typed text: tokens and the literal runs between them, joined by ":".
    static QString patternFromText(const QString &text);
    // The text shown for a stored pattern: its pieces one after another.
    static QString textFromPattern(const QString &pattern);
    // The file name (with extension) the pattern gives a screenshot dated `date` when the counter stands at
    // `counter`; the counter itself is not changed.
    static QString previewName(const QString &pattern, const QDateTime &date, qint64 counter,
                               const QString &extension);

    QLineEdit *lineEdit() const { return mEdit; }
    QMenu *tokenMenu() const { return mMenu; }
    QString previewText() const;

private:
    void buildMenu();
    void insertToken(const QString &token);
    void textEdited(const QString &text);
    void showStoredPattern();
    void updatePreview();
    bool event(QEvent *event) override;

    QLineEdit *mEdit = nullptr;
    QPushButton *mInsertButton = nullptr;
    QMenu *mMenu = nullptr;
    QLabel *mPreview = nullptr;
    QTimer *mClock = nullptr;
};
