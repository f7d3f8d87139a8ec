// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// The texts of the two reports and the kind of dialog that shows them. Free functions
// without state.

#pragma once

#include "controller/protocol.h"

#include <QString>

namespace reporttexts
{

/// The report of refused paths: a header and one line for each reason, numbered from two on.
QString rejectionText(RejectReasons reasons);

/// The report at the end of a run; a count of 0 has no line.
QString resultText(uint succeeded, uint failed);

/// The DialogKind for the report at the end of a run.
int resultDialogKind(uint succeeded, uint failed);

} // namespace reporttexts
