// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/PreferenceStore.h"

#include "TestSupport.h"
#include "foundation/CorvexError.h"
#include "platform/PropertyList.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QRegularExpression>
#include <QSize>
#include <QTemporaryDir>
#include <QThread>
#include <QTimeZone>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <thread>
#include <vector>

namespace {

const QString kDomain = QStringLiteral("com.example.Store");

QByteArray readBytes(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

// Every write replaces the file, so a new inode means a new write.
ino_t inodeOf(const QString &path)
{
    struct stat st;
    return ::stat(QFile::encodeName(path).constData(), &st) == 0 ? st.st_ino : 0;
}

class PreferenceStoreTest : public testing::Test
{
protected:
    QTemporaryDir mFolder;
    QString dir() const { return mFolder.path() + QStringLiteral("/prefs"); }
};

TEST_F(PreferenceStoreTest, EveryPropertyListTypeRoundTripsThroughTheFile)
{
    const QVariantMap values{
        {QStringLiteral("string"), QStringLiteral("Grüße <&> \"quoted\"")},
        {QStringLiteral("integer"), qint64(-42)},
        {QStringLiteral("large"), qint64(1) << 50},
        {QStringLiteral("real"), 0.1},
        {QStringLiteral("bool"), true},
        {QStringLiteral("data"), QByteArray("\x00\x01\xff", 3)},
        {QStringLiteral("date"), QDateTime(QDate(2024, 2, 29), QTime(23, 59, 58), QTimeZone::utc())},
        {QStringLiteral("array"), QVariantList{QStringLiteral("a"), qint64(1), false, QVariantList{}}},
        {QStringLiteral("dictionary"), QVariantMap{{QStringLiteral("inner"), QVariantMap{}}}},
    };
    {
        PreferenceStore writer(dir());
        for (auto it = values.cbegin(); it != values.cend(); ++it)
            ASSERT_TRUE(writer.setValue(kDomain, it.key(), it.value()));
        // Qt's other spellings of the same types are stored in their property-list form.
        ASSERT_TRUE(writer.setValue(kDomain, QStringLiteral("int"), 7));
        ASSERT_TRUE(writer.setValue(kDomain, QStringLiteral("list"), QStringList{QStringLiteral("x")}));
        EXPECT_EQ(writer.value(kDomain, QStringLiteral("int")).metaType().id(), QMetaType::LongLong);
        EXPECT_EQ(writer.value(kDomain, QStringLiteral("list")).metaType().id(), QMetaType::QVariantList);
        ASSERT_TRUE(writer.synchronize(kDomain));
    }
    PreferenceStore reader(dir());
    QVariantMap expected = values;
    expected.insert(QStringLiteral("int"), qint64(7));
    expected.insert(QStringLiteral("list"), QVariantList{QStringLiteral("x")});
    EXPECT_TRUE(PropertyList::equal(reader.dictionary(kDomain), expected));
    // The file itself is an XML property list.
    EXPECT_TRUE(readBytes(reader.pathForDomain(kDomain)).startsWith("<?xml"));
}

TEST_F(PreferenceStoreTest, DatesKeepWholeSecondsInThisProcessAsOnDisk)
{
    PreferenceStore store(dir());
    const QDateTime precise(QDate(2020, 1, 1), QTime(10, 0, 0, 750), QTimeZone::utc());
    ASSERT_TRUE(store.setValue(kDomain, QStringLiteral("d"), precise));
    EXPECT_EQ(store.value(kDomain, QStringLiteral("d")).toDateTime(), precise.addMSecs(-750));
}

TEST_F(PreferenceStoreTest, RefusesWhatIsNotAPropertyListValue)
{
    PreferenceStore store(dir());
    CorvexError error;
    EXPECT_FALSE(store.setValue(kDomain, QStringLiteral("size"), QSize(1, 2), &error));
    EXPECT_FALSE(error.domain().isEmpty());
    EXPECT_FALSE(store.setValue(kDomain, QStringLiteral("nested"), QVariantList{QSize(1, 2)}));
    EXPECT_FALSE(store.setValue(kDomain, QStringLiteral("null"), PropertyList::nullMarker()));
    EXPECT_TRUE(store.dictionary(kDomain).isEmpty());
    EXPECT_FALSE(store.setValue(QStringLiteral("../escape"), QStringLiteral("k"), 1));
    EXPECT_FALSE(store.setValue(QStringLiteral(".hidden"), QStringLiteral("k"), 1));
    EXPECT_FALSE(store.setValue(QString(), QStringLiteral("k"), 1));
    EXPECT_FALSE(QFileInfo::exists(mFolder.path() + QStringLiteral("/escape.plist")));
}

TEST_F(PreferenceStoreTest, DamagedFilesAreMovedAsideAndTheDomainStartsEmpty)
{
    for (const QByteArray &damaged :
         {QByteArray("this is { not a plist"), QByteArray(),
          PropertyList::serialize(QVariantList{1, 2}, PropertyList::Format::Xml)}) {
        QDir(dir()).removeRecursively();
        const QString path = corvex::test::writeFile(
            dir() + QStringLiteral("/") + kDomain + QStringLiteral(".plist"), damaged);
        PreferenceStore store(dir());
        EXPECT_TRUE(store.dictionary(kDomain).isEmpty());
        const QStringList aside =
            QDir(dir()).entryList({kDomain + QStringLiteral(".plist.corrupt-*")}, QDir::Files);
        ASSERT_EQ(aside.size(), 1) << damaged.constData();
        EXPECT_TRUE(
            QRegularExpression(QStringLiteral("\\.corrupt-\\d{8}-\\d{6}$")).match(aside.first()).hasMatch());
        EXPECT_EQ(readBytes(dir() + QLatin1Char('/') + aside.first()), damaged);
        // The domain goes on: a write makes a fresh, valid file and leaves the damaged copy alone.
        ASSERT_TRUE(store.setValue(kDomain, QStringLiteral("k"), QStringLiteral("v")));
        ASSERT_TRUE(store.synchronize(kDomain));
        EXPECT_EQ(PropertyList::readFile(path).toMap().value(QStringLiteral("k")).toString(),
                  QStringLiteral("v"));
        EXPECT_EQ(readBytes(dir() + QLatin1Char('/') + aside.first()), damaged);
    }
}

TEST_F(PreferenceStoreTest, SynchronizeMergesKeyByKeyAndReportsOthersChanges)
{
    PreferenceStore first(dir());
    PreferenceStore second(dir()); // stands for another process
    ASSERT_TRUE(first.setValue(kDomain, QStringLiteral("shared"), QStringLiteral("first")));
    ASSERT_TRUE(first.setValue(kDomain, QStringLiteral("gone"), 1));
    ASSERT_TRUE(first.synchronize(kDomain));

    ASSERT_TRUE(second.setValue(kDomain, QStringLiteral("mine"), 2));
    ASSERT_TRUE(second.setValue(kDomain, QStringLiteral("gone"), QVariant()));
    QStringList changed;
    ASSERT_TRUE(second.synchronize(kDomain, &changed));
    EXPECT_TRUE(changed.isEmpty()) << "second loaded the domain while writing, nothing changed under it";
    EXPECT_EQ(second.value(kDomain, QStringLiteral("shared")).toString(), QStringLiteral("first"));

    // first has a pending change of its own while second's changes arrive.
    ASSERT_TRUE(first.setValue(kDomain, QStringLiteral("own"), true));
    ASSERT_TRUE(first.synchronize(kDomain, &changed));
    EXPECT_EQ(changed, (QStringList{QStringLiteral("gone"), QStringLiteral("mine")}));
    const QVariantMap expected{{QStringLiteral("shared"), QStringLiteral("first")},
                               {QStringLiteral("mine"), qint64(2)},
                               {QStringLiteral("own"), true}};
    EXPECT_TRUE(PropertyList::equal(first.dictionary(kDomain), expected));
    EXPECT_TRUE(PropertyList::equal(PropertyList::readFile(first.pathForDomain(kDomain)), expected));

    // Nothing new: nothing reported, the file is not rewritten.
    const ino_t before = inodeOf(first.pathForDomain(kDomain));
    QThread::msleep(20);
    ASSERT_TRUE(second.synchronize(kDomain));
    ASSERT_TRUE(second.synchronize(kDomain, &changed));
    EXPECT_TRUE(changed.isEmpty());
    EXPECT_EQ(inodeOf(first.pathForDomain(kDomain)), before);

    // A process whose first look at the domain is a synchronisation: the stored keys are not news to it.
    PreferenceStore third(dir());
    ASSERT_TRUE(third.synchronize(kDomain, &changed));
    EXPECT_TRUE(changed.isEmpty()) << qPrintable(changed.join(u' '));
    EXPECT_EQ(third.value(kDomain, QStringLiteral("mine")).toLongLong(), 2);
}

TEST_F(PreferenceStoreTest, ObserversHearEveryChangeWithThePreviousValue)
{
    PreferenceStore store(dir());
    PreferenceStore other(dir());
    QList<QVariantHash> heard;
    const int token = store.addObserver([&](const QString &domain, const QVariantHash &previous) {
        EXPECT_EQ(domain, kDomain);
        heard.append(previous);
    });
    ASSERT_TRUE(store.setValue(kDomain, QStringLiteral("a"), 1));
    ASSERT_TRUE(store.setValue(kDomain, QStringLiteral("a"), 1)); // same value: no notice
    ASSERT_TRUE(store.setValue(kDomain, QStringLiteral("a"), 2));
    ASSERT_TRUE(store.synchronize(kDomain));
    ASSERT_EQ(heard.size(), 2);
    EXPECT_FALSE(heard.at(0).value(QStringLiteral("a")).isValid());
    EXPECT_EQ(heard.at(1).value(QStringLiteral("a")).toLongLong(), 1);

    ASSERT_TRUE(other.setValue(kDomain, QStringLiteral("a"), QVariant()));
    ASSERT_TRUE(other.synchronize(kDomain));
    ASSERT_TRUE(store.synchronize(kDomain));
    ASSERT_EQ(heard.size(), 3);
    EXPECT_EQ(heard.at(2).keys(), QStringList{QStringLiteral("a")});
    EXPECT_EQ(heard.at(2).value(QStringLiteral("a")).toLongLong(), 2);

    store.removeObserver(token);
    ASSERT_TRUE(store.setValue(kDomain, QStringLiteral("b"), 1));
    EXPECT_EQ(heard.size(), 3);
}

TEST_F(PreferenceStoreTest, ThreadsOfOneProcessShareOneViewAndLoseNothing)
{
    PreferenceStore store(dir());
    constexpr int kThreads = 4;
    constexpr int kKeys = 50;
    std::vector<std::thread> threads;
    for (int t = 0; t < kThreads; ++t) {
        threads.emplace_back([&store, t] {
            for (int i = 0; i < kKeys; ++i) {
                const QString key = QStringLiteral("t%1-%2").arg(t).arg(i);
                store.setValue(kDomain, key, qint64(i));
                if (i % 5 == 0)
                    store.synchronize(kDomain);
                store.value(kDomain, key);
            }
        });
    }
    for (std::thread &thread : threads)
        thread.join();
    ASSERT_TRUE(store.synchronize(kDomain));
    const QVariantMap onDisk = PropertyList::readFile(store.pathForDomain(kDomain)).toMap();
    EXPECT_EQ(onDisk.size(), kThreads * kKeys);
    EXPECT_EQ(onDisk.value(QStringLiteral("t3-49")).toLongLong(), 49);
}

TEST_F(PreferenceStoreTest, TwoProcessesWritingAtOnceLoseNothing)
{
    PreferenceStore store(PreferenceStore::defaultDirectory());
    const QString domain = QStringLiteral("com.example.TwoWriters");
    store.setValue(domain, QStringLiteral("before"), QStringLiteral("kept"));
    ASSERT_TRUE(store.synchronize(domain));

    constexpr int kWrites = 150;
    QProcess a;
    QProcess b;
    a.start(QStringLiteral(PREFS_WRITER_PATH), {domain, QStringLiteral("a"), QString::number(kWrites)});
    b.start(QStringLiteral(PREFS_WRITER_PATH), {domain, QStringLiteral("b"), QString::number(kWrites)});
    // This process writes too, meanwhile.
    for (int i = 0; i < 30; ++i) {
        store.setValue(domain, QStringLiteral("c%1").arg(i), qint64(i));
        store.synchronize(domain);
    }
    ASSERT_TRUE(a.waitForFinished(60000));
    ASSERT_TRUE(b.waitForFinished(60000));
    ASSERT_EQ(a.exitCode(), 0) << a.readAllStandardError().constData();
    ASSERT_EQ(b.exitCode(), 0) << b.readAllStandardError().constData();

    QStringList changed;
    ASSERT_TRUE(store.synchronize(domain, &changed));
    const QVariantMap view = store.dictionary(domain);
    int missing = 0;
    for (int i = 0; i < kWrites; ++i) {
        for (const QString &prefix : {QStringLiteral("a"), QStringLiteral("b")}) {
            if (view.value(prefix + QString::number(i)).toLongLong() != i ||
                !view.contains(prefix + QString::number(i)))
                ++missing;
        }
    }
    EXPECT_EQ(missing, 0);
    for (int i = 0; i < 30; ++i)
        EXPECT_EQ(view.value(QStringLiteral("c%1").arg(i)).toLongLong(), i);
    EXPECT_EQ(view.value(QStringLiteral("before")).toString(), QStringLiteral("kept"));
    EXPECT_TRUE(PropertyList::equal(PropertyList::readFile(store.pathForDomain(domain)), view));
}

TEST_F(PreferenceStoreTest, ASymlinkedDomainFileStaysALink)
{
    const QString real = mFolder.path() + QStringLiteral("/dotfiles/real.plist");
    corvex::test::writeFile(
        real, PropertyList::serialize(QVariantMap{{QStringLiteral("k"), 1}}, PropertyList::Format::Xml));
    QDir().mkpath(dir());
    PreferenceStore store(dir());
    ASSERT_TRUE(QFile::link(real, store.pathForDomain(kDomain)));
    EXPECT_EQ(store.value(kDomain, QStringLiteral("k")).toLongLong(), 1);
    ASSERT_TRUE(store.setValue(kDomain, QStringLiteral("k"), 2));
    ASSERT_TRUE(store.synchronize(kDomain));
    EXPECT_TRUE(QFileInfo(store.pathForDomain(kDomain)).isSymLink());
    EXPECT_EQ(PropertyList::readFile(real).toMap().value(QStringLiteral("k")).toLongLong(), 2);
}

TEST_F(PreferenceStoreTest, DomainsAreListedAndRemoved)
{
    PreferenceStore store(dir());
    EXPECT_TRUE(store.domainNames().isEmpty());
    store.setValue(QStringLiteral("b.domain"), QStringLiteral("k"), 1);
    store.setValue(kDomain, QStringLiteral("k"), 1);
    ASSERT_TRUE(store.synchronize(QStringLiteral("b.domain")));
    ASSERT_TRUE(store.synchronize(kDomain));
    corvex::test::writeFile(dir() + QStringLiteral("/notes.txt"), "x");
    EXPECT_EQ(store.domainNames(), (QStringList{QStringLiteral("b.domain"), kDomain}));

    QStringList heard;
    store.addObserver([&](const QString &, const QVariantHash &previous) { heard += previous.keys(); });
    ASSERT_TRUE(store.removeDomain(kDomain));
    EXPECT_FALSE(store.domainExists(kDomain));
    EXPECT_FALSE(store.value(kDomain, QStringLiteral("k")).isValid());
    EXPECT_EQ(heard, QStringList{QStringLiteral("k")});
    CorvexError error;
    EXPECT_FALSE(store.removeDomain(kDomain, &error));
    EXPECT_EQ(store.domainNames(), QStringList{QStringLiteral("b.domain")});
}

} // namespace
