// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// What the gallery shows, scene by scene. Each function opens windows of its own
// and leaves its pictures in @p folder. They need a screen, a window manager and
// a home folder in which a history may be written.

#pragma once

class QDir;

namespace testsupport
{

void showTables(const QDir &folder);
void showButtons(const QDir &folder);
void showRun(const QDir &folder);
void showDialogs(const QDir &folder);
void showHistory(const QDir &folder);

} // namespace testsupport
