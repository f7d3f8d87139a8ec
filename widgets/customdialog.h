// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// The program's one dialog: a frameless modal box with a title bar, an icon, a
// message and one or two buttons. Make it, centre it over the main window, set its
// message once, run exec(), delete it. Lives in the GUI thread; the caller owns it.

#pragma once

#include <QDialog>
#include <QRect>

class QPushButton;

/// What a message is about; it chooses icon and buttons. Only a question has a
/// Cancel button.
namespace DialogKind
{
constexpr int Refusal = 0;
constexpr int Success = 1;
constexpr int PartialSuccess = 2;
constexpr int Failure = 3;
constexpr int Question = 4;
} // namespace DialogKind

class CustomDialog : public QDialog
{
    Q_OBJECT

public:
    static constexpr int dialogWidth = 420;
    static constexpr int dialogHeight = 230;

    explicit CustomDialog(QWidget *parent = nullptr);

    /// Centres the dialog on @p area, in screen pixels, even if that is partly off the screen.
    void moveToCentreOf(const QRect &area);

    /// The question before a run.
    static QString confirmCrushText();

    // Only the first of the following three calls on a dialog has effect.

    /// Shows @p text literally with the icon and buttons of @p kind, a DialogKind;
    /// an unknown kind has no icon and only an OK button.
    void setMessage(const QString &text, int kind);
    /// Shows confirmCrushText() with a warning icon and both buttons.
    void setConfirmCrush();
    /// Says that a system file or the root directory is not shredded.
    void setSystemFileRefusal();

private:
    void addTitleBar();
    QPushButton *addButton(const QString &objectName, const QString &text, const QRect &geometry);
    bool addMessage(const QString &text, int kind, const QString &styleSheet,
                    Qt::Alignment alignment);
    void addMessageIcon(int kind);
    void addMessageText(const QString &text, const QString &styleSheet, Qt::Alignment alignment);

    bool filled = false;
    QPushButton *okButton = nullptr;
    QPushButton *cancelButton = nullptr;
    static constexpr QRect titleBarGeometry = QRect(1, 1, 418, 39);
    static constexpr QPoint closeButtonPosition = QPoint(393, 1);
    static constexpr QRect messageIconGeometry = QRect(30, 89, 45, 45);
    static constexpr QRect messageTextGeometry = QRect(95, 40, 295, 140);
    static constexpr QRect okButtonGeometry = QRect(230, 180, 76, 27);
    static constexpr QRect cancelButtonGeometry = QRect(323, 180, 76, 27);
};
