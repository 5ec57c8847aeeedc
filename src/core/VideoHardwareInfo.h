// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <QVariantMap>
#include <array>
#include <optional>

// The display controllers on the PCI bus, and the vendor and model names of one of them. The controllers are
// the devices of /sys/bus/pci/devices whose "class" file names PCI base class 3 (0x03xxxx); "vendor" and
// "device" give the ids of the selected one. Probing never fails loudly: problems go to the log and the ids
// stay 0 (as they do in a container without /sys).
class VideoHardwareInfo
{
public:
    // Room for this many controllers; further ones are not kept.
    static constexpr int MaxServiceCount = 16;

    // A probe of the devices below the folder (the system's PCI device list unless a test gives another).
    explicit VideoHardwareInfo(const QString &pciDevicesPath = QStringLiteral("/sys/bus/pci/devices"));

    // Finds the display controllers, in the order of the device folders' names (the bus addresses).
    void interrogateHardware();

    // Reads the ids of the controller at the index (none: index 0). An index past serviceCount() logs
    // "Bad service count index" and changes nothing. The index equal to serviceCount() is admitted and reads
    // an empty slot, so with no controller found both ids stay 0.
    void selectDevice(std::optional<qint64> indexOfSelectedItem = std::nullopt);

    quint32 vendorID() const { return mVendorID; }
    quint32 deviceID() const { return mDeviceID; }

    // How many controllers were found (at most MaxServiceCount), and the device folder of one of them.
    quint32 serviceCount() const { return mServiceCount; }
    QString service(quint32 index) const;

    // "ATI", "NVIDIA", "Intel", else "Unknown".
    static QString translateVideoVendorID(quint32 vendorID);

    // The model's name from the video device table in the application's resources (read once per process);
    // the device id written "0x%04x" when the table, the vendor or the device is missing.
    static QString translateVideoDeviceID(quint32 deviceID, quint32 vendorID);
    // The same over a given table.
    static QString translateVideoDeviceID(quint32 deviceID, quint32 vendorID, const QVariantMap &table);

    // An id as the table writes it: "0x%04x" (lower case, at least four digits).
    static QString formattedID(quint32 identifier);

    // The table of a property-list file: {vendor id: {device id: model name}}; empty when the file is missing
    // or holds no dictionary.
    static QVariantMap readTranslationTable(const QString &path);
    // "VideoDeviceTranslation.plist" in the application's resource folder.
    static QString translationTablePath();

private:
    // A hexadecimal number of a sysfs attribute file ("0x10de\n"); nothing when missing or unreadable.
    std::optional<quint32> readAttribute(const QString &deviceFolder, const char *name) const;

    QString mPciDevicesPath;
    std::array<QString, MaxServiceCount> mServiceList;
    quint32 mServiceCount = 0;
    quint32 mVendorID = 0;
    quint32 mDeviceID = 0;
};
