// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "CapturingLogger.h"
#include "TestSupport.h"

#include "core/FeedbackReport.h"
#include "core/VideoHardwareInfo.h"
#include "platform/PropertyList.h"

#include <QRegularExpression>

using namespace Qt::StringLiterals;

namespace {

struct Device
{
    QByteArray address;
    QByteArray classCode; // null: no class file
    QByteArray vendor;
    QByteArray device;
};

// A PCI device list in the layout of /sys/bus/pci/devices.
QString makeDeviceList(const QTemporaryDir &dir, const std::vector<Device> &devices)
{
    const QString root = dir.filePath(u"devices"_s);
    QDir().mkpath(root);
    for (const Device &device : devices) {
        const QString folder = root + QLatin1Char('/') + QString::fromLatin1(device.address);
        if (!device.classCode.isNull())
            corvex::test::writeFile(folder + u"/class"_s, device.classCode + '\n');
        corvex::test::writeFile(folder + u"/vendor"_s, device.vendor + '\n');
        corvex::test::writeFile(folder + u"/device"_s, device.device + '\n');
    }
    return root;
}

const std::vector<Device> kMachine = {
    {"0000:00:00.0", "0x060000", "0x8086", "0x3e30"}, // host bridge
    {"0000:00:02.0", "0x030000", "0x8086", "0x3e92"}, // VGA
    {"0000:00:1f.3", "0x040300", "0x8086", "0xa348"}, // audio
    {"0000:01:00.0", "0x030200", "0x10de", "0x1c82"}, // 3D controller
    {"0000:01:00.1", "0x040300", "0x10de", "0x0fb9"}, // audio of the card
    {"0000:02:00.0", {}, "0x1002", "0x67df"},         // no class file
    {"0000:03:00.0", "garbage", "0x1002", "0x67df"},  // unreadable class
    {"0000:04:00.0", "0x038000", "0x1234", "0x1111"}, // other display controller
};

} // namespace

TEST(VideoHardwareInfoTest, SelectionReadsTheDisplayControllersIdsUpToAndIncludingTheCount)
{
    struct Case
    {
        std::optional<qint64> index;
        quint32 vendor, device;
        bool badIndex;
    };
    // Three display controllers, in bus order; a first selection of index 1 sets 0x10de/0x1c82, then the
    // case's selection follows.
    const Case cases[] = {
        {std::nullopt, 0x8086, 0x3e92, false}, // no selection object: the first controller
        {0, 0x8086, 0x3e92, false},
        {2, 0x1234, 0x1111, false},
        {3, 0x10de, 0x1c82, false}, // one past the last: an empty slot, nothing read
        {4, 0x10de, 0x1c82, true},
        {-1, 0x10de, 0x1c82, true},
    };
    QTemporaryDir dir;
    const QString devices = makeDeviceList(dir, kMachine);
    for (const Case &c : cases) {
        SCOPED_TRACE(c.index ? int(*c.index) : -100);
        LogCapture log;
        VideoHardwareInfo info(devices);
        info.interrogateHardware();
        EXPECT_EQ(info.serviceCount(), 3u);
        info.selectDevice(1);
        info.selectDevice(c.index);
        EXPECT_EQ(info.vendorID(), c.vendor);
        EXPECT_EQ(info.deviceID(), c.device);
        EXPECT_EQ(log.messages(DDLogFlagError).contains(u"Bad service count index"_s), c.badIndex);
    }
}

TEST(VideoHardwareInfoTest, NoControllersLeaveIdsAtZeroAndAtMostSixteenAreKept)
{
    QTemporaryDir dir;
    for (const QString &devices :
         {makeDeviceList(dir, {{"0000:00:00.0", "0x060000", "0x8086", "0x3e30"}}), dir.filePath("absent")}) {
        LogCapture log;
        VideoHardwareInfo info(devices);
        info.interrogateHardware();
        info.selectDevice();
        EXPECT_EQ(info.serviceCount(), 0u);
        EXPECT_EQ(info.vendorID(), 0u);
        EXPECT_EQ(info.deviceID(), 0u);
        EXPECT_TRUE(log.messages(DDLogFlagError).filter(u"Bad service count"_s).isEmpty());
        EXPECT_EQ(log.messages(DDLogFlagError).contains(u"No matching IOPCIDevice services!"_s),
                  devices.endsWith(u"absent"_s));
    }

    // At most sixteen controllers are kept.
    std::vector<Device> devices;
    for (int i = 0; i < 20; ++i)
        devices.push_back(
            {u"0000:%1:00.0"_s.arg(i, 2, 16, QLatin1Char('0')).toLatin1(), "0x030000", "0x10de", "0x1c82"});
    QTemporaryDir many;
    VideoHardwareInfo info(makeDeviceList(many, devices));
    info.interrogateHardware();
    EXPECT_EQ(info.serviceCount(), 16u);
    EXPECT_TRUE(info.service(15).endsWith(u"0000:0f:00.0"_s));
    info.selectDevice(16);
    EXPECT_EQ(info.vendorID(), 0u); // the slot past the array reads nothing
}

TEST(VideoHardwareInfoTest, VendorAndModelNames)
{
    EXPECT_EQ(VideoHardwareInfo::translateVideoVendorID(0x1002), u"ATI"_s);
    EXPECT_EQ(VideoHardwareInfo::translateVideoVendorID(0x10de), u"NVIDIA"_s);
    EXPECT_EQ(VideoHardwareInfo::translateVideoVendorID(0x8086), u"Intel"_s);
    EXPECT_EQ(VideoHardwareInfo::translateVideoVendorID(0x15ad), u"Unknown"_s);
    EXPECT_EQ(VideoHardwareInfo::translateVideoVendorID(0), u"Unknown"_s);

    QTemporaryDir dir;
    const QString path = dir.filePath(u"table.plist"_s);
    const QVariantMap written{{u"0x10de"_s, QVariantMap{{u"0x1c82"_s, "GTX 1050 Ti"}}},
                              {u"0x1234"_s, u"not a dictionary"_s}};
    corvex::test::writeFile(path, PropertyList::serialize(written, PropertyList::Format::Xml));
    const QVariantMap table = VideoHardwareInfo::readTranslationTable(path);
    const QVariantMap missing = VideoHardwareInfo::readTranslationTable(dir.filePath(u"none"_s));
    EXPECT_TRUE(missing.isEmpty());
    struct Case
    {
        quint32 device, vendor;
        const QVariantMap &table;
        const char *name;
    };
    const Case cases[] = {
        {0x1c82, 0x10de, table, "GTX 1050 Ti"}, {0x0a2e, 0x10de, table, "0x0a2e"},
        {0x1c82, 0x8086, table, "0x1c82"},      {0x1111, 0x1234, table, "0x1111"},
        {0x1c82, 0x10de, missing, "0x1c82"},    {0x7, 0x10de, missing, "0x0007"},
        {0x12345, 0x10de, missing, "0x12345"},
    };
    for (const Case &c : cases)
        EXPECT_EQ(VideoHardwareInfo::translateVideoDeviceID(c.device, c.vendor, c.table),
                  QLatin1String(c.name));
}

TEST(VideoHardwareInfoTest, BuiltTableNamesDisplayControllersOnly)
{
    // The table made at build time from the system's PCI id list, as the application finds it.
    const QString path = VideoHardwareInfo::translationTablePath();
    ASSERT_TRUE(QFileInfo::exists(path)) << qPrintable(path);
    const QVariantMap table = VideoHardwareInfo::readTranslationTable(path);
    const QRegularExpression id(u"^0x[0-9a-f]{4}$"_s);
    for (const char *vendor : {"0x1002", "0x10de", "0x8086", "0x15ad"}) {
        const QVariantMap models = table.value(QLatin1String(vendor)).toMap();
        EXPECT_FALSE(models.isEmpty()) << vendor;
        for (auto it = models.cbegin(); it != models.cend(); ++it) {
            EXPECT_TRUE(id.match(it.key()).hasMatch()) << qPrintable(it.key());
            EXPECT_FALSE(it.value().toString().contains(u"Audio"_s)) << qPrintable(it.value().toString());
            EXPECT_FALSE(it.value().toString().contains(u"USB"_s)) << qPrintable(it.value().toString());
        }
    }
    // Through the process-wide table: a known card, a virtual adapter, a device that is no display
    // controller.
    EXPECT_THAT(VideoHardwareInfo::translateVideoDeviceID(0x1c82, 0x10de).toStdString(),
                testing::HasSubstr("GeForce GTX 1050 Ti"));
    EXPECT_EQ(VideoHardwareInfo::translateVideoDeviceID(0x0405, 0x15ad), u"SVGA II Adapter"_s);
    EXPECT_EQ(VideoHardwareInfo::translateVideoDeviceID(0x0fb9, 0x10de), u"0x0fb9"_s);
}
