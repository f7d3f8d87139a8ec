// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// Makes the QApplication, with high-DPI scaling and without OpenGL.

#pragma once

#include <QApplication>

#include <memory>

/// Scales as the desktop asks, fractions included, and draws without OpenGL; the user's environment
/// variables about either take precedence. Called once, by the main thread.
std::unique_ptr<QApplication> makeApplication(int &argc, char **argv);
