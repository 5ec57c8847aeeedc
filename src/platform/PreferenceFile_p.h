// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <QVariantMap>
#include <sys/types.h>

class CorvexError;

// What identifies one version of a domain file without reading it: a file replaced by a rename gets a new
// inode, a file edited in place a new size or time.
struct PreferenceFileSignature
{
    bool exists = false;
    dev_t device = 0;
    ino_t inode = 0;
    off_t size = 0;
    qint64 modified = 0; // nanoseconds
    qint64 changed = 0;  // nanoseconds

    bool operator==(const PreferenceFileSignature &other) const = default;
};

// An exclusive advisory lock (flock) on a domain's lock file, held for the lifetime of the object.
class PreferenceFileLock
{
public:
    explicit PreferenceFileLock(const QString &lockPath);
    ~PreferenceFileLock();
    PreferenceFileLock(const PreferenceFileLock &) = delete;
    PreferenceFileLock &operator=(const PreferenceFileLock &) = delete;

    bool isLocked() const { return mFd >= 0; }
    const QString &errorText() const { return mErrorText; }

private:
    int mFd = -1;
    QString mErrorText;
};

// One domain's property-list file: reading it (remembering which version was read), replacing it atomically
// and moving a damaged file aside. The file last read or written is kept open, so that its inode cannot be
// reused by another file and a matching signature really means the same file.
class PreferenceFile
{
public:
    explicit PreferenceFile(QString path);
    ~PreferenceFile();
    PreferenceFile(const PreferenceFile &) = delete;
    PreferenceFile &operator=(const PreferenceFile &) = delete;

    enum class ReadResult {
        Read,        // the file held a dictionary
        Missing,     // there is no file
        Quarantined, // the file was not a property-list dictionary and has been moved aside
        Failed,      // the file could not be read (or a damaged file could not be moved aside)
    };

    const QString &path() const { return mPath; }
    QString lockPath() const { return mPath + QStringLiteral(".lock"); }

    // True when the file on disk is the one last read or written (or is still missing, as it was).
    bool isUnchanged() const;

    // Reads the file into *values. A damaged file is renamed to "<file>.corrupt-<yyyyMMdd-HHmmss>" (only when
    // allowQuarantine is true, i.e. under the lock); *movedTo receives that path.
    ReadResult read(QVariantMap *values, bool allowQuarantine, QString *errorText, QString *movedTo);

    // Replaces the file with the serialised dictionary: a temporary file beside it, flushed, then renamed.
    bool write(const QVariantMap &values, CorvexError *error);

    // Deletes the file. Returns false with *error when it cannot be deleted.
    bool remove(CorvexError *error);

    static PreferenceFileSignature signatureOfPath(const QString &path);

private:
    void hold(int fd);
    QString writeTarget() const;

    QString mPath;
    int mFd = -1;
    PreferenceFileSignature mHeld; // signature of the file last read or written (exists = false: none)
    bool mKnown = false;           // read() or write() ran at least once
};
