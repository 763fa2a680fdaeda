// The commands that hand records to the user's calendar and address book: their dialogs, the run behind them, and what
// is said at its end.
#pragma once

#include <cstddef>
#include <optional>

namespace quillary {

class CQuillaryDoc;
class CommandState;
class FrameWindow;
struct FormSurroundings;

/// The record `row` of the shown list, or all of it. Changes nothing in the database.
void ExportToCalendar(const CQuillaryDoc& doc, std::optional<std::size_t> row, const FormSurroundings& surroundings,
                      FrameWindow& frame);
/// All records of the shown list.
void ExportToContacts(const CQuillaryDoc& doc, const FormSurroundings& surroundings, FrameWindow& frame);

/// For the commands' state: without a Date field nothing can be put into a calendar.
void RequireDateField(const CQuillaryDoc& doc, CommandState& state);

}  // namespace quillary
