// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// Makes the QApplication: high-DPI scaling on, OpenGL off.

#pragma once

#include <QApplication>

#include <memory>

/// Makes the application of a program with windows, in units that are as many pixels of the screen
/// as the desktop asks for, fractions included, and drawn without OpenGL. What the user's
/// environment says about either goes before. Once, by the main thread.
std::unique_ptr<QApplication> makeApplication(int &argc, char **argv);
