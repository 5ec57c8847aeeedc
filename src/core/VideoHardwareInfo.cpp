// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/VideoHardwareInfo.h"

#include "core/FeedbackReport.h"
#include "logging/Log.h"
#include "platform/PropertyList.h"

#include <QDir>
#include <QFile>

namespace {

constexpr quint32 kBaseClassMask = 0xff0000;
constexpr quint32 kDisplayControllerClass = 0x030000;

} // namespace

VideoHardwareInfo::VideoHardwareInfo(const QString &pciDevicesPath) : mPciDevicesPath(pciDevicesPath) {}

void VideoHardwareInfo::interrogateHardware()
{
    const QDir devices(mPciDevicesPath);
    if (!devices.exists()) {
        DDLogError(QStringLiteral("No matching IOPCIDevice services!"));
        return;
    }
    // The entries are links to the device folders; they sort by bus address.
    const QStringList names = devices.entryList(QDir::Dirs | QDir::NoDotAndDotDot, QDir::Name);
    for (const QString &name : names) {
        if (mServiceCount >= MaxServiceCount)
            break;
        const QString folder = devices.filePath(name);
        const std::optional<quint32> classCode = readAttribute(folder, "class");
        if (classCode && (*classCode & kBaseClassMask) == kDisplayControllerClass)
            mServiceList[mServiceCount++] = folder;
    }
}

void VideoHardwareInfo::selectDevice(std::optional<qint64> indexOfSelectedItem)
{
    const qint64 index = indexOfSelectedItem.value_or(0);
    if (index < 0 || index > qint64(mServiceCount)) {
        DDLogError(QStringLiteral("Bad service count index"));
        return;
    }
    const QString folder = service(quint32(index));
    if (folder.isEmpty())
        return;
    if (const std::optional<quint32> vendor = readAttribute(folder, "vendor"))
        mVendorID = *vendor;
    if (const std::optional<quint32> device = readAttribute(folder, "device"))
        mDeviceID = *device;
}

QString VideoHardwareInfo::service(quint32 index) const
{
    return index < mServiceCount ? mServiceList.at(index) : QString();
}

std::optional<quint32> VideoHardwareInfo::readAttribute(const QString &deviceFolder, const char *name) const
{
    QFile file(deviceFolder + QLatin1Char('/') + QLatin1String(name));
    if (!file.open(QIODevice::ReadOnly))
        return std::nullopt;
    const QByteArray text = file.read(64).trimmed();
    bool ok = false;
    const quint32 value = text.startsWith("0x") ? text.mid(2).toUInt(&ok, 16) : 0;
    if (!ok)
        return std::nullopt;
    return value;
}

QString VideoHardwareInfo::translateVideoVendorID(quint32 vendorID)
{
    switch (vendorID) {
    case 0x1002:
        return QStringLiteral("ATI");
    case 0x10de:
        return QStringLiteral("NVIDIA");
    case 0x8086:
        return QStringLiteral("Intel");
    default:
        return QStringLiteral("Unknown");
    }
}

QString VideoHardwareInfo::translateVideoDeviceID(quint32 deviceID, quint32 vendorID)
{
    // Read on first use and kept for the life of the process.
    static const QVariantMap table = readTranslationTable(translationTablePath());
    return translateVideoDeviceID(deviceID, vendorID, table);
}

QString VideoHardwareInfo::translateVideoDeviceID(quint32 deviceID, quint32 vendorID,
                                                  const QVariantMap &table)
{
    const QString device = formattedID(deviceID);
    const QVariant models = table.value(formattedID(vendorID));
    if (models.typeId() != QMetaType::QVariantMap)
        return device;
    const QVariant name = models.toMap().value(device);
    return name.typeId() == QMetaType::QString ? name.toString() : device;
}

QString VideoHardwareInfo::formattedID(quint32 identifier)
{
    return QStringLiteral("0x%1").arg(identifier, 4, 16, QLatin1Char('0'));
}

QVariantMap VideoHardwareInfo::readTranslationTable(const QString &path)
{
    const QVariant table = PropertyList::readFile(path);
    return table.typeId() == QMetaType::QVariantMap ? table.toMap() : QVariantMap();
}

QString VideoHardwareInfo::translationTablePath()
{
    return FeedbackReport::applicationBundle().resourcePath() +
           QStringLiteral("/VideoDeviceTranslation.plist");
}
