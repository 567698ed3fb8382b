// Cells as text: quoting, line ends, damage, and what is written read again.
#include "exchange/csv_text.h"

#include <gtest/gtest.h>
#include <random>

#include "exchange/exact_text.h"
#include "exchange/spreadsheet_risk.h"

namespace korvel::test {
namespace {

using Cells = std::vector<std::string>;
using Rows = std::vector<Cells>;

struct Outcome {
  Rows rows;
  std::vector<std::size_t> lines;  // on which they begin
  std::optional<CsvError> error;
};

Outcome read_all(std::string text, char separator = ',') {
  Outcome outcome;
  CsvReader reader(text, separator);
  std::vector<std::string_view> cells;
  while (reader.next(cells)) {
    outcome.rows.emplace_back(cells.begin(), cells.end());
    outcome.lines.push_back(reader.line());
  }
  outcome.error = reader.error();
  return outcome;
}

TEST(CsvText, ReadsRows) {
  const struct {
    const char* text;
    Rows rows;
    std::vector<std::size_t> lines;
  } cases[] = {
      {"", {}, {}},
      {"a", {{"a"}}, {1}},
      {"a,b\r\nc,\n", {{"a", "b"}, {"c", ""}}, {1, 2}},
      {",", {{"", ""}}, {1}},
      {"\n\na\n", {{""}, {""}, {"a"}}, {1, 2, 3}},
      {"\"a\"\"b\",\"\",\"c,\"", {{"a\"b", "", "c,"}}, {1}},
      {"\"1\n2\r\n3\",x\r\ny,z", {{"1\n2\r\n3", "x"}, {"y", "z"}}, {1, 4}},
      {"5\" pipe, \"x\"", {{"5\" pipe", " \"x\""}}, {1}},
      {"a\rb,c\r\r\"1\r2\",\r", {{"a"}, {"b", "c"}, {""}, {"1\r2", ""}}, {1, 2, 3, 4}},
      {"\"\"\"\"\n\"\"\"\"\"\"", {{"\""}, {"\"\""}}, {1, 2}},
  };
  for (const auto& c : cases) {
    const Outcome outcome = read_all(c.text);
    EXPECT_EQ(outcome.rows, c.rows) << c.text;
    EXPECT_EQ(outcome.lines, c.lines) << c.text;
    EXPECT_FALSE(outcome.error) << c.text;
  }
  EXPECT_EQ(read_all("a,b;c\n", ';').rows, (Rows{{"a,b", "c"}}));
}

TEST(CsvText, TellsWhereATextIsDamaged) {
  const struct {
    const char* text;
    CsvDamage damage;
    std::size_t line;
    std::size_t rows;  // before it
  } cases[] = {
      {"a\n\"b", CsvDamage::QuoteNotClosed, 2, 1},
      {"a,\"b\nc\"\"\nd,e\n", CsvDamage::QuoteNotClosed, 1, 0},
      {"\"\n\n\",\"x\"y", CsvDamage::TextBehindQuote, 3, 0},
      {"\"a\" ,b", CsvDamage::TextBehindQuote, 1, 0},
      {"a\r\"b\r\nc\"\r\"d\"e", CsvDamage::TextBehindQuote, 4, 2},
  };
  for (const auto& c : cases) {
    const Outcome outcome = read_all(c.text);
    ASSERT_TRUE(outcome.error) << c.text;
    EXPECT_EQ(outcome.error->damage, c.damage) << c.text;
    EXPECT_EQ(outcome.error->line, c.line) << c.text;
    EXPECT_EQ(outcome.rows.size(), c.rows) << c.text;
  }
}

TEST(CsvText, QuotesOnlyWhereNeeded) {
  std::string text;
  CsvWriter writer(';', text);
  for (const std::wstring_view cell :
       {L"a b,c", L"a;b", L"say \"x\"", L"1\r2", L"1\n2", L" a", L"a\t", L"", L"\x00E9"})
    writer.cell(cell);
  writer.end_row();
  writer.cell(std::string_view("x"));
  writer.end_row();
  EXPECT_EQ(text,
            "a b,c;\"a;b\";\"say \"\"x\"\"\";\"1\r2\";\"1\n2\";\" a\";\"a\t\";;\xC3\xA9\r\nx\r\n");
}

TEST(CsvText, WhatIsWrittenIsReadAgain) {
  constexpr std::string_view letters = "\"\"\",,;\r\n\t ab\xC3\xA9";
  std::mt19937 random(20);
  const auto below = [&random](std::size_t count) { return random() % count; };
  for (int round = 0; round < 2000; ++round) {
    Rows rows(below(4));
    std::string text;
    const char separator = ",;\t"[below(3)];
    CsvWriter writer(separator, text);
    for (Cells& row : rows) {
      row.resize(2 + below(3));
      for (std::string& cell : row) {
        for (std::size_t size = below(6); size > 0; --size)
          cell += letters[below(letters.size())];
        writer.cell(std::string_view(cell));
      }
      writer.end_row();
    }
    const Outcome outcome = read_all(text, separator);
    ASSERT_FALSE(outcome.error) << text;
    ASSERT_EQ(outcome.rows, rows) << text;
  }
}

TEST(ExactText, ReadsBackAndIsNoInteger) {
  const struct {
    ODValueView value;
    const char* text;
  } cases[] = {
      {3.0, "3.0"},
      {-0.0, "-0.0"},
      {0.1, "0.1"},
      {1e-300, "1e-300"},
      {1e22, "1e+22"},
      {123456789.0, "123456789.0"},
      {0.1 + 0.2, "0.30000000000000004"},
      {std::int32_t{-7}, "-7"},
      {Point3{1, -2.5, 1e-7}, "1.0,-2.5,1e-07"},
      {std::monostate{}, ""},
  };
  for (const auto& c : cases) {
    std::string text;
    append_exact(c.value, text);
    EXPECT_EQ(text, c.text);
  }
}

TEST(ExactText, PlainNumbersHaveNoExponent) {
  std::string text;
  for (const double number : {6e6, -1.5e-6, 123456789012345.5, 2e15, 1e-7, 0.0}) {
    append_plain(number, text);
    text += ' ';
  }
  EXPECT_EQ(text, "6000000.0 -0.0000015 123456789012345.5 2e+15 1e-07 0.0 ");
}

TEST(SpreadsheetRisk, OfTexts) {
  using enum SpreadsheetRisk;
  const struct {
    const wchar_t* text;
    SpreadsheetRisk risk;
  } cases[] = {
      {L"", None},
      {L"abc", None},
      {L"12", None},
      {L"-12.5", None},
      {L"0", None},
      {L"0.5", None},
      {L"2A", None},
      {L"123456789012345", None},
      {L"A-1", None},
      {L"12 m", None},
      {L"1.5.", None},
      {L"007", Number},
      {L"1E5", Number},
      {L"12e-3", Number},
      {L"3.10", Number},
      {L".5", Number},
      {L"5.", Number},
      {L"1,234,567", Number},
      {L" 5", Number},
      {L"-0", Number},
      {L"5-", Number},
      {L"12-", Number},
      {L"$5", Number},
      {L"-$5.50", Number},
      {L"5 \u20AC", Number},
      {L"(5)", Number},
      {L"(5", None},
      {L"5%", Number},
      {L"1 1/2", Number},
      {L"1 1", None},
      {L"true", Logical},
      {L"FALSE", Logical},
      {L"truely", None},
      {L"a\rb", LineBreak},
      {L"a\nb", None},
      {L"1234567890123456", LongNumber},
      {L"1.2.2024", Date},
      {L"1/2", Date},
      {L"3-4", Date},
      {L"2024-01-02", Date},
      {L"2024-01-02 10:00", Date},
      {L"12:30", Date},
      {L"12:", Date},
      {L"5 pm", Date},
      {L"1/2 10:00", Date},
      {L"5 May 2024 10:00:30", Date},
      {L"May 5, 2024", Date},
      {L"1/2 inch", None},
      {L"5 May", Date},
      {L"MARCH1", Date},
      {L"DEC1", Date},
      {L"1-Jan-2024", Date},
      {L"May", None},
      {L"Mayor 5", None},
      {L"=A1", Formula},
      {L"+49 30", Formula},
      {L"@x", Formula},
      {L"-abc", Formula},
      {L"1,23", None},
      {L"Jan5x", None},
      {L"--", Formula},
  };
  for (const auto& c : cases)
    EXPECT_EQ(risk_of_text(c.text, '.'), c.risk) << testing::PrintToString(c.text);
  EXPECT_EQ(risk_of_text(std::wstring(32'767, L'x'), '.'), None);
  EXPECT_EQ(risk_of_text(std::wstring(32'768, L'x'), '.'), LongText);
  const struct {
    const wchar_t* text;
    SpreadsheetRisk risk;
  } with_decimal_comma[] = {
      {L"1,5", None}, {L"3,10", Number}, {L"1.234", Number},
      {L"1.5", Date}, {L",5", Number},   {L"1,234,567", None},
  };
  for (const auto& c : with_decimal_comma)
    EXPECT_EQ(risk_of_text(c.text, ','), c.risk) << testing::PrintToString(c.text);
}

TEST(SpreadsheetRisk, OfReals) {
  EXPECT_EQ(risk_of_real(-1.23456789012345e-6, "-0.00000123456789012345"), SpreadsheetRisk::None);
  EXPECT_EQ(risk_of_real(0.1 + 0.2, "0,30000000000000004"), SpreadsheetRisk::LongNumber);
  EXPECT_EQ(risk_of_real(1.23456789012345e-300, "1.23456789012345e-300"), SpreadsheetRisk::None);
  EXPECT_EQ(risk_of_real(1e-310, "1e-310"), SpreadsheetRisk::SmallNumber);
}

}  // namespace
}  // namespace korvel::test
