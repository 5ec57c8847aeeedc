// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

namespace extended_attributes_private {

// Makes every call on a "user." attribute fail with ENOTSUP, as on a file system without user attributes.
// For tests of the fallbacks.
void setUserAttributesRefused(bool refused);

} // namespace extended_attributes_private
