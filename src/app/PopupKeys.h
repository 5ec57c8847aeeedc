// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// Whether the key being handled is a popup's: a list or menu of the application was open when it was
// pressed, or is open now. A popup that closes on a key (Escape, Return) may close before the window's
// shortcuts are looked at for that same key press, and the key must then not act on the window too.
namespace PopupKeys {

// Starts following key presses, once per application; windows with keys of their own call it when made.
void follow();

bool keyIsThePopups();

} // namespace PopupKeys
