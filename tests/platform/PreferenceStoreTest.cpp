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

using namespace Qt::StringLiterals;

namespace {

const QString kDomain = u"com.example.Store"_s;

using corvex::test::readFile;

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
    QString dir() const { return mFolder.path() + u"/prefs"_s; }
};

// Each type's round trip is the property list's own (PropertyListTest); the store holds every value in this
// process as its XML file gives it back: Qt's other spellings of a type in their property-list form, dates to
// the whole second.
TEST_F(PreferenceStoreTest, ValuesAreHeldInTheFormTheXmlFileKeeps)
{
    const QDateTime precise(QDate(2020, 1, 1), QTime(10, 0, 0, 750), QTimeZone::utc());
    const struct
    {
        const char *key;
        QVariant written, held;
    } values[] = {
        {"int", 7, qint64(7)},
        {"list", QStringList{u"x"_s}, QVariantList{u"x"_s}},
        {"date", precise, precise.addMSecs(-750)},
    };
    QVariantMap expected;
    {
        PreferenceStore writer(dir());
        for (const auto &v : values) {
            SCOPED_TRACE(v.key);
            const QString key = QString::fromLatin1(v.key);
            ASSERT_TRUE(writer.setValue(kDomain, key, v.written));
            EXPECT_TRUE(PropertyList::equal(writer.value(kDomain, key), v.held));
            EXPECT_EQ(writer.value(kDomain, key).metaType(), v.held.metaType());
            expected.insert(key, v.held);
        }
        ASSERT_TRUE(writer.synchronize(kDomain));
    }
    PreferenceStore reader(dir());
    EXPECT_TRUE(PropertyList::equal(reader.dictionary(kDomain), expected));
    EXPECT_TRUE(readFile(reader.pathForDomain(kDomain)).startsWith("<?xml"));
}

TEST_F(PreferenceStoreTest, RefusesWhatIsNotAPropertyListValue)
{
    PreferenceStore store(dir());
    CorvexError error;
    EXPECT_FALSE(store.setValue(kDomain, u"size"_s, QSize(1, 2), &error));
    EXPECT_FALSE(error.domain().isEmpty());
    EXPECT_FALSE(store.setValue(kDomain, u"null"_s, PropertyList::nullMarker()));
    EXPECT_TRUE(store.dictionary(kDomain).isEmpty());
    EXPECT_FALSE(store.setValue(u"../escape"_s, u"k"_s, 1));
    EXPECT_FALSE(store.setValue(u".hidden"_s, u"k"_s, 1));
    EXPECT_FALSE(store.setValue(QString(), u"k"_s, 1));
    EXPECT_FALSE(QFileInfo::exists(mFolder.path() + u"/escape.plist"_s));
}

TEST_F(PreferenceStoreTest, DamagedFilesAreMovedAsideAndTheDomainStartsEmpty)
{
    for (const QByteArray &damaged :
         {QByteArray("this is { not a plist"), QByteArray(),
          PropertyList::serialize(QVariantList{1, 2}, PropertyList::Format::Xml)}) {
        QDir(dir()).removeRecursively();
        const QString path = corvex::test::writeFile(dir() + u"/"_s + kDomain + u".plist"_s, damaged);
        PreferenceStore store(dir());
        EXPECT_TRUE(store.dictionary(kDomain).isEmpty());
        const QStringList aside = QDir(dir()).entryList({kDomain + u".plist.corrupt-*"_s}, QDir::Files);
        ASSERT_EQ(aside.size(), 1) << damaged.constData();
        EXPECT_TRUE(QRegularExpression(u"\\.corrupt-\\d{8}-\\d{6}$"_s).match(aside.first()).hasMatch());
        EXPECT_EQ(readFile(dir() + QLatin1Char('/') + aside.first()), damaged);
        // The domain goes on: a write makes a fresh, valid file and leaves the damaged copy alone.
        ASSERT_TRUE(store.setValue(kDomain, u"k"_s, u"v"_s));
        ASSERT_TRUE(store.synchronize(kDomain));
        EXPECT_EQ(PropertyList::readFile(path).toMap().value(u"k"_s).toString(), u"v"_s);
        EXPECT_EQ(readFile(dir() + QLatin1Char('/') + aside.first()), damaged);
    }
}

TEST_F(PreferenceStoreTest, SynchronizeMergesKeyByKeyAndReportsOthersChanges)
{
    PreferenceStore first(dir());
    PreferenceStore second(dir()); // stands for another process
    ASSERT_TRUE(first.setValue(kDomain, u"shared"_s, u"first"_s));
    ASSERT_TRUE(first.setValue(kDomain, u"gone"_s, 1));
    ASSERT_TRUE(first.synchronize(kDomain));

    ASSERT_TRUE(second.setValue(kDomain, u"mine"_s, 2));
    ASSERT_TRUE(second.setValue(kDomain, u"gone"_s, QVariant()));
    QStringList changed;
    ASSERT_TRUE(second.synchronize(kDomain, &changed));
    EXPECT_TRUE(changed.isEmpty()) << "second loaded the domain while writing, nothing changed under it";
    EXPECT_EQ(second.value(kDomain, u"shared"_s).toString(), u"first"_s);

    // first has a pending change of its own while second's changes arrive.
    ASSERT_TRUE(first.setValue(kDomain, u"own"_s, true));
    ASSERT_TRUE(first.synchronize(kDomain, &changed));
    EXPECT_EQ(changed, (QStringList{u"gone"_s, u"mine"_s}));
    const QVariantMap expected{{u"shared"_s, u"first"_s}, {u"mine"_s, qint64(2)}, {u"own"_s, true}};
    EXPECT_TRUE(PropertyList::equal(first.dictionary(kDomain), expected));
    EXPECT_TRUE(PropertyList::equal(PropertyList::readFile(first.pathForDomain(kDomain)), expected));

    // Nothing new: nothing reported, the file is not rewritten.
    const ino_t before = inodeOf(first.pathForDomain(kDomain));
    ASSERT_TRUE(second.synchronize(kDomain));
    ASSERT_TRUE(second.synchronize(kDomain, &changed));
    EXPECT_TRUE(changed.isEmpty());
    EXPECT_EQ(inodeOf(first.pathForDomain(kDomain)), before);

    // A process whose first look at the domain is a synchronisation: the stored keys are not news to it.
    PreferenceStore third(dir());
    ASSERT_TRUE(third.synchronize(kDomain, &changed));
    EXPECT_TRUE(changed.isEmpty()) << qPrintable(changed.join(u' '));
    EXPECT_EQ(third.value(kDomain, u"mine"_s).toLongLong(), 2);
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
    ASSERT_TRUE(store.setValue(kDomain, u"a"_s, 1));
    ASSERT_TRUE(store.setValue(kDomain, u"a"_s, 1)); // same value: no notice
    ASSERT_TRUE(store.setValue(kDomain, u"a"_s, 2));
    ASSERT_TRUE(store.synchronize(kDomain));
    ASSERT_EQ(heard.size(), 2);
    EXPECT_FALSE(heard.at(0).value(u"a"_s).isValid());
    EXPECT_EQ(heard.at(1).value(u"a"_s).toLongLong(), 1);

    ASSERT_TRUE(other.setValue(kDomain, u"a"_s, QVariant()));
    ASSERT_TRUE(other.synchronize(kDomain));
    ASSERT_TRUE(store.synchronize(kDomain));
    ASSERT_EQ(heard.size(), 3);
    EXPECT_EQ(heard.at(2).keys(), QStringList{u"a"_s});
    EXPECT_EQ(heard.at(2).value(u"a"_s).toLongLong(), 2);

    store.removeObserver(token);
    ASSERT_TRUE(store.setValue(kDomain, u"b"_s, 1));
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
                const QString key = u"t%1-%2"_s.arg(t).arg(i);
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
    EXPECT_EQ(onDisk.value(u"t3-49"_s).toLongLong(), 49);
}

TEST_F(PreferenceStoreTest, TwoProcessesWritingAtOnceLoseNothing)
{
    PreferenceStore store(PreferenceStore::defaultDirectory());
    const QString domain = u"com.example.TwoWriters"_s;
    store.setValue(domain, u"before"_s, u"kept"_s);
    ASSERT_TRUE(store.synchronize(domain));

    constexpr int kWrites = 150;
    QProcess a;
    QProcess b;
    a.start(QStringLiteral(PREFS_WRITER_PATH), {domain, u"a"_s, QString::number(kWrites)});
    b.start(QStringLiteral(PREFS_WRITER_PATH), {domain, u"b"_s, QString::number(kWrites)});
    // This process writes too, meanwhile.
    for (int i = 0; i < 30; ++i) {
        store.setValue(domain, u"c%1"_s.arg(i), qint64(i));
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
        for (const QString &prefix : {u"a"_s, u"b"_s}) {
            if (view.value(prefix + QString::number(i)).toLongLong() != i ||
                !view.contains(prefix + QString::number(i)))
                ++missing;
        }
    }
    EXPECT_EQ(missing, 0);
    for (int i = 0; i < 30; ++i)
        EXPECT_EQ(view.value(u"c%1"_s.arg(i)).toLongLong(), i);
    EXPECT_EQ(view.value(u"before"_s).toString(), u"kept"_s);
    EXPECT_TRUE(PropertyList::equal(PropertyList::readFile(store.pathForDomain(domain)), view));
}

TEST_F(PreferenceStoreTest, ASymlinkedDomainFileStaysALink)
{
    const QString real = mFolder.path() + u"/dotfiles/real.plist"_s;
    corvex::test::writeFile(real,
                            PropertyList::serialize(QVariantMap{{u"k"_s, 1}}, PropertyList::Format::Xml));
    QDir().mkpath(dir());
    PreferenceStore store(dir());
    ASSERT_TRUE(QFile::link(real, store.pathForDomain(kDomain)));
    EXPECT_EQ(store.value(kDomain, u"k"_s).toLongLong(), 1);
    ASSERT_TRUE(store.setValue(kDomain, u"k"_s, 2));
    ASSERT_TRUE(store.synchronize(kDomain));
    EXPECT_TRUE(QFileInfo(store.pathForDomain(kDomain)).isSymLink());
    EXPECT_EQ(PropertyList::readFile(real).toMap().value(u"k"_s).toLongLong(), 2);
}

TEST_F(PreferenceStoreTest, DomainsAreListedAndRemoved)
{
    PreferenceStore store(dir());
    EXPECT_TRUE(store.domainNames().isEmpty());
    store.setValue(u"b.domain"_s, u"k"_s, 1);
    store.setValue(kDomain, u"k"_s, 1);
    ASSERT_TRUE(store.synchronize(u"b.domain"_s));
    ASSERT_TRUE(store.synchronize(kDomain));
    corvex::test::writeFile(dir() + u"/notes.txt"_s, "x");
    EXPECT_EQ(store.domainNames(), (QStringList{u"b.domain"_s, kDomain}));

    QStringList heard;
    store.addObserver([&](const QString &, const QVariantHash &previous) { heard += previous.keys(); });
    ASSERT_TRUE(store.removeDomain(kDomain));
    EXPECT_FALSE(store.domainExists(kDomain));
    EXPECT_FALSE(store.value(kDomain, u"k"_s).isValid());
    EXPECT_EQ(heard, QStringList{u"k"_s});
    CorvexError error;
    EXPECT_FALSE(store.removeDomain(kDomain, &error));
    EXPECT_EQ(store.domainNames(), QStringList{u"b.domain"_s});
}

} // namespace
