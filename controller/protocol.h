// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// The numbers that the window and the controller exchange as plain integers in
// queues and signals.

#pragma once

#include <QString>
#include <QtGlobal>

/// Requests that the window posts to the controller.
enum WalleCommand : int {
    CommandRemoveChecked = 0,
    CommandStartCrush = 1,
    CommandClearHistory = 2,
    CommandCopyHistory = 3,
    CommandAddDropped = 4,
    CommandAddChosen = 5,
    CommandCheckAll = 6,
    CommandUncheckAll = 7,
    CommandToggleRow = 8,
    CommandStopCrush = 9,
    CommandLoadHistory = 10,
};

/// Set of reasons why paths were refused; 0 when none was.
using RejectReasons = quint32;
constexpr RejectReasons RejectNotFound = 0x01;
constexpr RejectReasons RejectUnknownType = 0x02;
constexpr RejectReasons RejectNoPermission = 0x04;
constexpr RejectReasons RejectDuplicate = 0x08;
constexpr RejectReasons RejectOverLimit = 0x10;
constexpr RejectReasons RejectSystemPath = 0x20;

/// States of a run, the argument of Walle::setCrushStarted().
namespace RunState
{
constexpr int Idle = 1;
constexpr int Running = 2;
constexpr int Stopping = 3;
} // namespace RunState

/// Phases of a history load, the second argument of Walle::setHistoryButtonEnabled().
namespace LoadPhase
{
constexpr int Complete = 1;
constexpr int RowsComing = 2;
constexpr int Begun = 3;
} // namespace LoadPhase

/// What happened to the job list, the argument of Walle::refreshControls().
namespace ControlSituation
{
constexpr int BatchAdmitted = 1;
constexpr int RowsRemoved = 2;
constexpr int AllChecked = 3;
constexpr int NoneChecked = 4;
constexpr int RowChecked = 5;
constexpr int RowUnchecked = 6;
constexpr int StopAsked = 7;
constexpr int Stopped = 8;
} // namespace ControlSituation

/// A click on a row of the main table. The path says which entry was in that row: by the time the
/// click is performed the entry may have another row, or none.
struct CellToggle {
    int row = 0;
    bool state = false; ///< the state the window would draw; the controller decides for itself
    /// Empty: the entry that is in the row when the click is performed.
    QString path;
};
