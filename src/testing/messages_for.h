// SPDX-License-Identifier: MIT
#pragma once

#include "app/database_history.h"
#include "testing/report_messages.h"

namespace quillon {

/// loadReportMessages, where what is replaced is noted as a change by `who`. Gives why that did not work.
[[nodiscard]] LostNote loadMessagesFor(const DatabaseChange& who, const Installation& installation, Dialogs& dialogs,
                                       KeptFiles& kept, ReportMessages& messages);

/// The ten messages of the local file alone. NotFound: there is none. Subscript: fewer than ten.
[[nodiscard]] Result<ReportMessages> readLocalMessages(const Paths& paths);

}  // namespace quillon
