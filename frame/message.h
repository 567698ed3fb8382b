// The message catalogue: every prompt, message, caption and file filter that commands share.
//
// The identifiers, 100 to 180, are those of the plug-in's string resources and never change. A
// message that ends a line ends in "\n"; a prompt ends in ": " or "<" and the answer follows it.
#pragma once

#include <array>
#include <cstddef>
#include <string>
#include <string_view>

#include "frame/format.h"

namespace korvel {

enum class Message : int {
  ProductName = 100,
  UnableToOpen,
  DrawingAndTemplateFilter,
  OperationUnsuccessful,
  OperationCompleted,
  Selected,
  ModeFirstLastPrompt,
  ModeFirst,
  ModeLast,
  InvalidParameters,
  Completed,
  NoObjectsSelected,
  CompletedOutOf,
  SelectObjectPrompt,
  InvalidFormatOf,
  InvalidFormat,
  LayerNotFound,
  NamedTableNotFound,
  TextFileFilter,
  SelectObjectsPrompt,
  CompletedLengthAreaVolume,
  UnableToLoadFeatureClass,
  UnableToCopyTable,
  ColumnNotFound,
  PrecisionPrompt,
  InvalidPrecision,
  AlreadyExists,
  DrawingHoldsDefinitions,
  WarningTitle,
  TablePromptWithDefault,
  TablePrompt,
  TableNotFound,
  ColorPrompt,
  InvalidColor,
  LayerPromptStart,
  InvalidLayer,
  LinetypePromptStart,
  InvalidLinetype,
  ClosePrompt,
  DrawingFilter,
  FileAlreadyActive,
  UnableToReadObjects,
  NoFilesSelected,
  InvalidTypeOf,
  ConversionPrecisionPrompt,
  FieldHeading,
  ValueHeading,
  ErrorTitle,
  NoObjectsSelectedBox,
  DataMayNotMatch,
  DataDoesNotMatch,
  DetachSelected,
  OptionFirst,
  OptionLast,
  OptionCenter,
  OptionMin,
  OptionMax,
  OptionAverage,
  FileHeading,
  UnableToRetrieveDefault,
  StatTablesHeading,
  StatObjects,
  StatObjectsWithoutData,
  StatObjectsWithData,
  StatObjectsWithDuplicates,
  StatObjectsWithMultiple,
  StatDefinitions,
  StatUnusedDefinitions,
  CompletedOutOfRangeAndMultiple,
  CompletedOutOfRange,
  CompletedMultiple,
  DuplicateColumnNames,
  TableDoesNotMatch,
  FileExistsOverwrite,
  TableDoesNotMatchContinue,
  StatisticsCaption,
  WithTablesCaption,
  WithoutTablesCaption,
  SelectedTablesStart,
  SelectReferencePrompt,
  DetachAllWarning,
};

inline constexpr int first_message_id = 100;
inline constexpr int last_message_id = 180;

namespace message_detail {

struct Entry {
  Message id;
  std::wstring_view text;
};

inline constexpr auto catalogue = std::to_array<Entry>({
    {Message::ProductName, L"korvel"},
    {Message::UnableToOpen, L"Error: unable to open '%s'.\n"},
    {Message::DrawingAndTemplateFilter, L"Drawings; Drawing Templates (*.dwg;*.dwt)|*.dwg;*.dwt||"},
    {Message::OperationUnsuccessful, L"Error. Operation unsuccessful.\n"},
    {Message::OperationCompleted, L"Operation completed.\n"},
    {Message::Selected, L"Selected: %i\n"},
    {Message::ModeFirstLastPrompt, L"Mode (First, Last)<First>: "},
    {Message::ModeFirst, L"first"},
    {Message::ModeLast, L"last"},
    {Message::InvalidParameters, L"Error: invalid parameters.\n"},
    {Message::Completed, L"Completed: %i\n"},
    {Message::NoObjectsSelected, L"Error: no objects selected.\n"},
    {Message::CompletedOutOf, L"Completed: %i out of %i\n"},
    {Message::SelectObjectPrompt, L"Select object: "},
    {Message::InvalidFormatOf, L"Error: '%s': invalid format.\n"},
    {Message::InvalidFormat, L"Error: invalid format.\n"},
    {Message::LayerNotFound, L"Warning: layer '%s' not found.\n"},
    {Message::NamedTableNotFound, L"Error: table '%s' not found.\n"},
    {Message::TextFileFilter, L"Text files (*.txt)|*.txt||"},
    {Message::SelectObjectsPrompt, L"Select objects: "},
    {Message::CompletedLengthAreaVolume, L"Completed (Length/Area/Volume): %i/%i/%i out of %i\n"},
    {Message::UnableToLoadFeatureClass, L"Error: unable to load feature class '%s'.\n"},
    {Message::UnableToCopyTable, L"Error: unable to copy table '%s'.\n"},
    {Message::ColumnNotFound, L"Error: column not found.\n"},
    {Message::PrecisionPrompt, L"Precision [1-99]<10>: "},
    {Message::InvalidPrecision, L"Error: invalid precision.\n"},
    {Message::AlreadyExists, L"Warning: '%s' already exists.\n"},
    {Message::DrawingHoldsDefinitions,
     L"Active document contains Object Data definitions which can cause errors during program "
     L"operation. Recommend removal of existing Object Data definitions.\n"},
    {Message::WarningTitle, L"Warning"},
    {Message::TablePromptWithDefault, L"Table <%s>: "},
    {Message::TablePrompt, L"Table: "},
    {Message::TableNotFound, L"Error: table not found.\n"},
    {Message::ColorPrompt, L"Color<ByLayer>: "},
    {Message::InvalidColor, L"Error: invalid color.\n"},
    {Message::LayerPromptStart, L"Layer<"},
    {Message::InvalidLayer, L"Error: invalid layer.\n"},
    {Message::LinetypePromptStart, L"Linetype<"},
    {Message::InvalidLinetype, L"Error: invalid linetype.\n"},
    {Message::ClosePrompt, L"Close<0>: "},
    {Message::DrawingFilter, L"Drawings (*.dwg)|*.dwg||"},
    {Message::FileAlreadyActive, L"Error: selected file already active.\n"},
    {Message::UnableToReadObjects, L"Unable to read %i object(s). Continue?"},
    {Message::NoFilesSelected, L"Error: no files selected.\n"},
    {Message::InvalidTypeOf, L"Error: '%s':'%s': invalid type.\n"},
    {Message::ConversionPrecisionPrompt, L"Precision [0-99]<0> (> 0 - enable conversion): "},
    {Message::FieldHeading, L"Field"},
    {Message::ValueHeading, L"Value"},
    {Message::ErrorTitle, L"Error"},
    {Message::NoObjectsSelectedBox, L"No objects selected."},
    {Message::DataMayNotMatch, L"Data may not match existing definitions. Continue?"},
    {Message::DataDoesNotMatch, L"Data does not match existing definitions."},
    {Message::DetachSelected, L"Detach selected Object Data?"},
    {Message::OptionFirst, L"First"},
    {Message::OptionLast, L"Last"},
    {Message::OptionCenter, L"Center"},
    {Message::OptionMin, L"Min"},
    {Message::OptionMax, L"Max"},
    {Message::OptionAverage, L"Average"},
    {Message::FileHeading, L"File"},
    {Message::UnableToRetrieveDefault, L"Error: unable to retrieve default value of '%s'.\n"},
    {Message::StatTablesHeading, L"Graphical objects with Object Data:\n"},
    {Message::StatObjects, L"Objects: %i\n"},
    {Message::StatObjectsWithoutData, L"Objects with no Object Data: %i\n"},
    {Message::StatObjectsWithData, L"Objects with Object Data: %i\n"},
    {Message::StatObjectsWithDuplicates, L"Objects containing duplicated Object Data: %i\n"},
    {Message::StatObjectsWithMultiple, L"Objects containing multiple Object Data: %i\n"},
    {Message::StatDefinitions, L"Object Data: %i\n"},
    {Message::StatUnusedDefinitions, L"Unused Object Data: %i\n"},
    {Message::CompletedOutOfRangeAndMultiple,
     L"Completed: %i out of %i (%i out of range, %i multiple)\n"},
    {Message::CompletedOutOfRange, L"Completed: %i out of %i (%i out of range)\n"},
    {Message::CompletedMultiple, L"Completed: %i out of %i (%i multiple)\n"},
    {Message::DuplicateColumnNames, L"Error: duplicate column names.\n"},
    {Message::TableDoesNotMatch, L"Error: table '%s' does not match existing definition.\n"},
    {Message::FileExistsOverwrite, L"File '%s' already exists. Overwrite?"},
    {Message::TableDoesNotMatchContinue,
     L"Table '%s' does not match existing definition. Continue?"},
    {Message::StatisticsCaption, L"Object Data statistics."},
    {Message::WithTablesCaption, L"Select objects with specific OD."},
    {Message::WithoutTablesCaption, L"Select objects without specific OD."},
    {Message::SelectedTablesStart, L"Selected: %i ( "},
    {Message::SelectReferencePrompt, L"Select reference object: "},
    {Message::DetachAllWarning, L"This will detach ALL tables from selected objects. Continue?\n"},
});

constexpr bool ids_are_contiguous() {
  int expected = first_message_id;
  for (const Entry& entry : catalogue) {
    if (static_cast<int>(entry.id) != expected++) return false;
  }
  return expected == last_message_id + 1;
}
static_assert(ids_are_contiguous(), "a message is found by its place in the catalogue");

}  // namespace message_detail

// The text as it stands in the catalogue, placeholders and all.
[[nodiscard]] constexpr std::wstring_view text(Message message) {
  const int place = static_cast<int>(message) - first_message_id;
  return message_detail::catalogue[static_cast<std::size_t>(place)].text;
}

// Whether the message says that something was refused or failed.
[[nodiscard]] constexpr bool is_error(Message message) {
  return text(message).starts_with(L"Error");
}

// The text with its placeholders filled; arguments that do not fit them do not compile.
template <Message M, class... Args>
[[nodiscard]] std::wstring format(const Args&... args) {
  return format_text<Args...>(text(M), args...);
}

}  // namespace korvel
