#!/usr/bin/env python3
# SPDX-FileCopyrightText: 2026 The Corvex developers
# SPDX-License-Identifier: GPL-3.0-or-later
"""Writes the video device table: an XML property list that maps a PCI vendor id and a device id of a display
controller to the model's name, both ids written "0x%04x".

    VideoDeviceTranslation.py PCI_IDS OUTPUT

PCI_IDS is the system's PCI id list (Debian's pci.ids or hwdata package). It names devices but not their
classes, so the display controllers of AMD/ATI, NVIDIA and Intel are told apart from their other devices by
name; the common virtual display adapters are listed by id.
"""
import os
import re
import sys
from xml.sax.saxutils import escape

MAJOR_VENDORS = (0x1002, 0x10DE, 0x8086)

# Devices of the major vendors that are no display controller, recognised by words of their names.
NOT_DISPLAY = re.compile(
    r"\b(audio|usb|bridge|ethernet|smbus|lpc|ide|sata|ahci|scsi|raid|host|root port|pci express port|"
    r"memory controller|dram|cryptographic|coprocessor|psp|serial|uart|modem|network|wireless|wi-?fi|"
    r"bluetooth|thermal|power management|dma|sensor|switch|thunderbolt|nvme|storage|nand|spi|i2c|gpio|"
    r"management engine|mei|heci|keyboard|ethernet|infiniband|fabric|nvlink|nvswitch|pmc|iommu|"
    r"pcie|lan|gigabit|trace|telemetry|sram|xhci|ehci|ohci|uhci|sd host|card reader|camera|ipu|"
    r"image signal|vmd|qat|dsa|iaa|uncore|performance monitor|registers|ras|hub|i/o|apic|mcp|nforce|ata|pmu|smu|"
    r"co-?processor|hbiu|daio|azalia|northbridge|mci)\b",
    re.IGNORECASE)

# Intel makes far more other devices than graphics; its display controllers are kept by name only.
INTEL_DISPLAY = re.compile(
    r"\b(graphics|gpu|iris|uhd|gma|arc|xe|vga|display|video|flex|mobile 4 series|g45|g35|q35|"
    r"atom processor .*graphics)\b",
    re.IGNORECASE)

# Common virtual display adapters: (vendor, device).
VIRTUAL_DISPLAYS = (
    (0x1234, 0x1111),  # QEMU standard VGA (Bochs)
    (0x1013, 0x00B8),  # Cirrus Logic GD 5446, as QEMU emulates it
    (0x15AD, 0x0405),  # VMware SVGA II
    (0x15AD, 0x0710),  # VMware SVGA
    (0x80EE, 0xBEEF),  # VirtualBox graphics adapter
    (0x1AF4, 0x1050),  # virtio GPU
    (0x1B36, 0x0100),  # QXL paravirtual graphics
    (0x1414, 0x5353),  # Hyper-V virtual VGA
)


def read_devices(path):
    """{vendor: {device: name}} of every vendor and device line in the list."""
    vendors = {}
    vendor = None
    with open(path, encoding="utf-8", errors="replace") as ids:
        for line in ids:
            if line.startswith("C "):  # the class list follows the devices
                break
            if not line.strip() or line.startswith("#") or line.startswith("\t\t"):
                continue
            match = re.match(r"^(\t?)([0-9a-fA-F]{4})\s+(.*)$", line.rstrip("\n"))
            if not match:
                continue
            number = int(match.group(2), 16)
            if not match.group(1):
                vendor = vendors.setdefault(number, {})
            elif vendor is not None:
                vendor[number] = match.group(3).strip()
    return vendors


def is_display(vendor, name):
    if NOT_DISPLAY.search(name):
        return False
    if vendor == 0x8086:
        return bool(INTEL_DISPLAY.search(name))
    return True


def select(vendors):
    table = {}
    for vendor in MAJOR_VENDORS:
        for device, name in vendors.get(vendor, {}).items():
            if is_display(vendor, name):
                table.setdefault(vendor, {})[device] = name
    for vendor, device in VIRTUAL_DISPLAYS:
        name = vendors.get(vendor, {}).get(device)
        if name:
            table.setdefault(vendor, {})[device] = name
    return table


def write_plist(table, path):
    lines = ['<?xml version="1.0" encoding="UTF-8"?>',
             '<!DOCTYPE plist PUBLIC "-//Apple//DTD PLIST 1.0//EN" '
             '"http://www.apple.com/DTDs/PropertyList-1.0.dtd">',
             '<plist version="1.0">', "<dict>"]
    for vendor in sorted(table):
        lines.append("\t<key>0x%04x</key>" % vendor)
        lines.append("\t<dict>")
        for device in sorted(table[vendor]):
            lines.append("\t\t<key>0x%04x</key>" % device)
            lines.append("\t\t<string>%s</string>" % escape(table[vendor][device]))
        lines.append("\t</dict>")
    lines += ["</dict>", "</plist>", ""]
    temporary = path + ".part"
    with open(temporary, "w", encoding="utf-8") as out:
        out.write("\n".join(lines))
    os.replace(temporary, path)


def main(arguments):
    if len(arguments) != 3:
        sys.stderr.write("usage: VideoDeviceTranslation.py PCI_IDS OUTPUT\n")
        return 2
    try:
        vendors = read_devices(arguments[1])
    except OSError as error:
        sys.stderr.write("VideoDeviceTranslation.py: cannot read %s: %s\n" % (arguments[1], error.strerror))
        return 1
    table = select(vendors)
    if not table:
        sys.stderr.write("VideoDeviceTranslation.py: %s names no display controller\n" % arguments[1])
        return 1
    write_plist(table, arguments[2])
    return 0


if __name__ == "__main__":
    sys.exit(main(sys.argv))
