// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "cli/Command.h"

#include <QCoreApplication>
#include <memory>

// The entry of a command's module, libcorvex_command_NAME.so: `corvex` hands it its whole command line
// (program, command name, arguments) before any application object exists. Each module defines it as
//
//   extern "C" Q_DECL_EXPORT int corvex_command_main(int argc, char **argv)
//   {
//       const QCoreApplication app(argc, argv);
//       return cli::runModuleCommand(&runWatch);
//   }
namespace cli {

// Runs the command over the arguments after the command's name, with the stderr logger installed, and
// returns once every message it logged has been written. The application object must exist.
int runModuleCommand(CommandFunction run);

// Where a GUI application object runs: off screen, or on the session's display when there is one.
enum class Platform { Offscreen, SessionDisplay };

// A GUI application object, for a command that renders or writes PDF pages or tells about the displays.
// QT_QPA_PLATFORM, when set, names the platform instead. The session's display is Wayland's or X11's, as
// WAYLAND_DISPLAY or DISPLAY say; without either, or when it cannot be reached, it is the offscreen one.
std::unique_ptr<QCoreApplication> makeGuiApplication(int &argc, char **argv,
                                                     Platform platform = Platform::Offscreen);

// For a command that reads or writes images: a GUI application object (off screen) when the command's
// arguments name a PDF, whose pages are rendered and written with one; else a core one, which bitmaps need
// alone. A PDF is a path with the extension "pdf", a file that is a PDF under any name, or the format
// extension "pdf" itself.
std::unique_ptr<QCoreApplication> makeApplicationForImages(int &argc, char **argv);

} // namespace cli
