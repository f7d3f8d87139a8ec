// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// What the gallery shows, scene by scene. Each function opens windows of its own
// and leaves its pictures in the working folder. They need a screen, a window manager
// and a home folder in which a history may be written.

#pragma once

namespace testsupport
{

void showTables();
void showButtons();
void showRun();
void showDialogs();
void showHistory();

} // namespace testsupport
