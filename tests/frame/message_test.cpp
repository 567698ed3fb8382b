// The catalogue: identifiers that other programs know, and texts that are easily mistyped.
#include "frame/message.h"

#include <gtest/gtest.h>
#include <string_view>

namespace korvel {
namespace {

static_assert(message_detail::catalogue.size() == 81);

TEST(Message, KeepsItsIdentifier) {
  EXPECT_EQ(static_cast<int>(Message::ProductName), 100);
  EXPECT_EQ(static_cast<int>(Message::Selected), 105);
  EXPECT_EQ(static_cast<int>(Message::Completed), 110);
  EXPECT_EQ(static_cast<int>(Message::CompletedOutOf), 112);
  EXPECT_EQ(static_cast<int>(Message::SelectObjectsPrompt), 119);
  EXPECT_EQ(static_cast<int>(Message::WarningTitle), 128);
  EXPECT_EQ(static_cast<int>(Message::FieldHeading), 145);
  EXPECT_EQ(static_cast<int>(Message::UnableToRetrieveDefault), 159);
  EXPECT_EQ(static_cast<int>(Message::DuplicateColumnNames), 171);
  EXPECT_EQ(static_cast<int>(Message::DetachAllWarning), 180);
}

TEST(Message, HasTheExactFileFilters) {
  EXPECT_EQ(text(Message::DrawingAndTemplateFilter),
            L"Drawings; Drawing Templates (*.dwg;*.dwt)|*.dwg;*.dwt||");
  EXPECT_EQ(text(Message::TextFileFilter), L"Text files (*.txt)|*.txt||");
  EXPECT_EQ(text(Message::DrawingFilter), L"Drawings (*.dwg)|*.dwg||");
}

TEST(Message, EndsPromptsOpenAndReportsWithALine) {
  for (const auto& [id, text] : message_detail::catalogue) {
    const bool is_report = text.starts_with(L"Error:") || text.starts_with(L"Warning:") ||
                           text.starts_with(L"Completed") || text.starts_with(L"Objects");
    if (is_report) {
      EXPECT_TRUE(text.ends_with(L"\n")) << static_cast<int>(id);
    }
    const bool is_line = text.ends_with(L"\n");
    EXPECT_EQ(text.find(L'\n'), is_line ? text.size() - 1 : text.npos) << static_cast<int>(id);
  }
}

TEST(Message, FormatsWithItsOwnPlaceholders) {
  EXPECT_EQ(format<Message::NoObjectsSelected>(), L"Error: no objects selected.\n");
  EXPECT_EQ(format<Message::CompletedOutOfRangeAndMultiple>(1, 2, 3, 4),
            L"Completed: 1 out of 2 (3 out of range, 4 multiple)\n");
  EXPECT_EQ(format<Message::InvalidTypeOf>(L"ROADS", L"WIDTH"),
            L"Error: 'ROADS':'WIDTH': invalid type.\n");
}

}  // namespace
}  // namespace korvel
