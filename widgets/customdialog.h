// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// The program's one dialog: a frameless modal box with a title bar, an icon, a
// message and one or two buttons. Make it, centre it over the main window, fill it
// once, run exec(), delete it. Lives in the GUI thread; the caller owns it.

#pragma once

#include <QDialog>
#include <QRect>

class CustomTitleBar;
class QLabel;
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
    explicit CustomDialog(QWidget *parent = nullptr);

    /// Centres the dialog on @p area, in screen pixels, even if that is partly off the screen.
    void moveToCentreOf(const QRect &area);

    // Only the first of the following three calls on a dialog has effect.

    /// Shows @p text literally with the icon and buttons of @p kind, a DialogKind;
    /// an unknown kind has no icon and only an OK button.
    void setMessage(const QString &text, int kind);
    /// Asks whether the ticked entries shall be shredded.
    void setConfirmCrush();
    /// Says that a system file or the root directory is not shredded.
    void setSystemFileRefusal();

private:
    void addTitleBar();
    void addCloseButton(CustomTitleBar *bar);
    QPushButton *addButton(const QString &objectName, const QString &text, const QRect &place);
    QLabel *addMessageIcon(const QString &sheet, const QString &name);
    QLabel *addMessageText(const QString &text, const QString &sheet, Qt::Alignment alignment);
    bool claimContent();

    static constexpr int dialogWidth = 420;
    static constexpr int dialogHeight = 230;
    bool filled = false;
    QPushButton *okButton = nullptr;
    QPushButton *cancelButton = nullptr;
    static constexpr QRect titleBarPlace = QRect(1, 1, 418, 39);
    static constexpr QRect titleIconPlace = QRect(16, 12, 16, 16);
    static constexpr QRect titleTextPlace = QRect(40, 0, 380, 39);
    static constexpr QRect closeButtonPlace = QRect(393, 1, 27, 27);
    static constexpr QRect messageIconPlace = QRect(30, 89, 45, 45);
    static constexpr QRect messageTextPlace = QRect(95, 40, 295, 140);
    static constexpr QRect okButtonPlace = QRect(230, 180, 76, 27);
    static constexpr QRect cancelButtonPlace = QRect(323, 180, 76, 27);
};
