// The explication to the byte, and beside a plain reading of its rules on drawings made at random.
#include "exchange/explication.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <limits>
#include <map>
#include <random>
#include <set>

#include "bench/silent_host.h"
#include "frame/value_text.h"
#include "tests/host/test_drawing.h"

namespace korvel::test {
namespace {

constexpr double largest = std::numeric_limits<double>::max();

std::string utf16_file(std::wstring_view text) {
  std::string bytes = "\xFF\xFE";
  const auto put = [&bytes](unsigned unit) {
    bytes.push_back(static_cast<char>(unit & 0xFF));
    bytes.push_back(static_cast<char>(unit >> 8));
  };
  for (const wchar_t c : text) {
    if (c == L'\n') put('\r');
    put(static_cast<unsigned>(c));
  }
  return bytes;
}

class Explicated : public testing::Test {
 protected:
  Explicated() : ids_(ids_of(host_.drawing(), 6)) {
    define(L"Pipes", {{L"LEN", ODType::Real, 0.0},
                      {L"N", ODType::Integer, 0},
                      {L"KIND", ODType::Character, std::wstring()},
                      {L"AT", ODType::Point, Point3{}}});
    define(L"Valves", {{L"KIND", ODType::Character, std::wstring()},
                       {L"SIZE", ODType::Integer, 0},
                       {L"N", ODType::Character, std::wstring()}});
  }
  void define(const wchar_t* name, std::vector<ODColumnDef> columns) {
    ASSERT_EQ(store_.define_table({name, std::move(columns)}), TableChange::Done);
  }
  void pipe(std::size_t entity, double length, std::int32_t number, std::wstring kind, Point3 at) {
    ASSERT_TRUE(store_.attach(ids_[entity], {L"Pipes", {length, number, std::move(kind), at}}));
  }
  void valve(std::size_t entity, std::wstring kind, std::int32_t size, std::wstring number) {
    const ODRecord record{L"Valves", {std::move(kind), size, std::move(number)}};
    ASSERT_TRUE(store_.attach(ids_[entity], record));
  }
  std::string explicated(const EntityList& entities, const ExplicationRequest& request) {
    std::string bytes;
    explicate(store_, host_, entities, request, [&bytes](std::string_view piece) {
      bytes += piece;
      return true;
    });
    return bytes;
  }

  bench::SilentHost host_{make_drawing({{L"0"}}, std::vector<EntitySpec>(6, {L"0"}))};
  StandaloneStore store_{host_.drawing()};
  EntityList ids_;
};

TEST_F(Explicated, FilesAreAsTheyShallBe) {
  valve(1, L"", 7, L"x");  // before the pipe of the same entity
  pipe(0, 2.5, 3, L"a\"b", {1, 2, 12.5});
  pipe(0, -0.0, -2, L"", {1, 2, 0});
  pipe(1, 1e20, 2147483647, L"a\nb\u017E", {5, 5, -0.0});
  pipe(2, largest, 3, L"big", {0, 0, 0.1});
  const struct {
    std::vector<std::size_t> entities;
    ExplicationRequest request;
    std::wstring_view text;
  } cases[] = {
      // N is a number in one table and text in the other, so it is counted.
      {{1, 0, 1},
       {{L"Valves", L"Pipes", L"Missing"}, {}, L","},
       L"ID,TableName,Count,AT,KIND,LEN,N,SIZE\n"
       L"2A,\"Pipes\",,12.5,\"a\"\"b\",2.5,3,\n"
       L"2A,\"Pipes\",,0.0,\"\",-0.0,-2,\n"
       L"2B,\"Pipes\",,-0.0,\"a\nb\u017E\",100000000000000000000.0,2147483647,\n"
       L"Sum,\"Pipes\",2,3,3,100000000000000000000.0,3,\n\n"
       L"2B,\"Valves\",,,\"\",,\"x\",7\n"
       L"Sum,\"Valves\",1,,1,,1,7.0\n\n"
       L"SumCount,,,3,4,3,4,1\n"
       L"SumSum,,,3,4,100000000000000000000.0,4,7.0\n"
       L"Min,,,,,-0.0,,7.0\n"
       L"Max,,,,,100000000000000000000.0,,7.0\n"
       L"Average,,,,,33333333333333331968.0,,7.0\n"
       L"Unique,,,3,3,3,4,1\n"},
      // By a field: an empty key, an entity in two groups, records of two tables in one group.
      {{0, 1},
       {{L"Pipes", L"Valves"}, L"KIND", L";;"},
       L"ID;;TableName;;KIND;;Count;;AT;;LEN;;N;;SIZE\n"
       L"2A;;\"Pipes\";;\"\";;;;0.0;;-0.0;;-2;;\n"
       L"2B;;\"Valves\";;\"\";;;;;;;;\"x\";;7\n"
       L"Sum;;;;\"\";;2;;1;;0.0;;2;;7.0\n\n"
       L"2B;;\"Pipes\";;\"a\nb\u017E\";;;;-0.0;;100000000000000000000.0;;2147483647;;\n"
       L"Sum;;;;\"a\nb\u017E\";;1;;1;;100000000000000000000.0;;1;;\n\n"
       L"2A;;\"Pipes\";;\"a\"\"b\";;;;12.5;;2.5;;3;;\n"
       L"Sum;;;;\"a\"\"b\";;1;;1;;2.5;;1;;\n\n"
       L"SumCount;;;;;;;;3;;3;;4;;1\n"
       L"SumSum;;;;;;;;3;;100000000000000000000.0;;4;;7.0\n"
       L"Min;;;;;;;;;;-0.0;;;;7.0\n"
       L"Max;;;;;;;;;;100000000000000000000.0;;;;7.0\n"
       L"Average;;;;;;;;;;33333333333333331968.0;;;;7.0\n"
       L"Unique;;;;;;;;3;;3;;4;;1\n"},
      // A sum that is the largest number looks like none. A field that a table lacks is empty.
      {{2, 1},
       {{L"Pipes", L"Valves"}, L"LEN", L"\t"},
       std::wstring_view(L"ID\tTableName\tLEN\tCount\tAT\tKIND\tN\tSIZE\n"
                         L"2B\t\"Valves\"\t\"\"\t\t\t\"\"\t\"x\"\t7\n"
                         L"Sum\t\t\"\"\t1\t\t1\t1\t7.0\n\n"
                         L"2B\t\"Pipes\"\t\"100000000000000000000.0\"\t\t-0.0\t\"a\nb\u017E\"\t"
                         L"2147483647\t\n"
                         L"Sum\t\t\"100000000000000000000.0\"\t1\t1\t1\t1\t\n\n")},
      {{2},
       {{L"Pipes"}, {}, L","},
       std::wstring_view(
           L"ID,TableName,Count,AT,KIND,LEN,N\n2C,\"Pipes\",,0.1,\"big\",1797693134")},
      {{3},
       {{L"Valves"}, {}, L","},
       L"ID,TableName,Count,KIND,N,SIZE\nSumCount,,,0,0,0\nSumSum,,,,,\nMin,,,,,\nMax,,,,,\n"
       L"Average,,,,,\nUnique,,,0,0,0\n"},
  };
  for (const auto& c : cases) {
    EntityList entities;
    for (const std::size_t i : c.entities)
      entities.push_back(ids_[i]);
    const std::string seen = explicated(entities, c.request);
    const bool is_beginning = !c.text.ends_with(L"\n") || c.text.ends_with(L"\n\n");
    const std::string expected = utf16_file(c.text);
    EXPECT_EQ(is_beginning ? seen.substr(0, expected.size()) : seen, expected)
        << to_utf8(c.text.substr(0, c.text.find(L'\n')));
  }
  const std::string big = explicated({ids_[2]}, {{L"Pipes"}, {}, L","});
  EXPECT_NE(big.find(utf16_file(L"\nSum,\"Pipes\",1,1,1,,3.0\n\n").substr(2)), big.npos);
}

// The rules once more, record by record and without a thought of speed.
class PlainExplication {
 public:
  PlainExplication(ODStore& store, const DrawingHost& host, const EntityList& entities,
                   const ExplicationRequest& request)
      : request_(request) {
    for (const std::wstring& name : request.tables) {
      const ODTableDef table = store.table(name).value();
      tables_[name] = table;
      for (const ODColumnDef& column : table.columns) {
        const bool is_number = column.type == ODType::Integer || column.type == ODType::Real;
        if (column.name != request.type_field) columns_[column.name].counted |= !is_number;
      }
    }
    const auto records = store.records();
    ODRecord record;
    for (const EntityId entity : entities) {
      for (records->open(entity, OpenMode::Read); !records->done(); records->next()) {
        records->read(record);
        if (tables_.contains(record.table)) groups_[key_of(record)][entity].push_back(record);
      }
    }
    write_header();
    for (const auto& [key, members] : groups_) {
      for (auto& [name, column] : columns_)
        column.group.clear();
      for (const auto& [entity, of_entity] : members) {
        for (const ODRecord& member : of_entity)
          write_row(host.handle_of(entity), member, key);
      }
      text_ += L"Sum" + sep() + (request.type_field ? sep() : L"") + quoted(key) + sep() +
               std::to_wstring(members.size());
      for (const auto& [name, column] : columns_)
        text_ += sep() + sum(column, column.group);
      text_ += L"\n\n";
    }
    write_statistics();
  }
  [[nodiscard]] const std::wstring& text() const { return text_; }

 private:
  struct Column {
    bool counted = false;
    std::vector<double> group{};
    std::vector<double> all{};
    std::set<std::wstring> texts{};
  };

  [[nodiscard]] std::wstring sep() const { return request_.separator; }
  static std::wstring quoted(std::wstring text) {
    for (std::size_t at = 0; (at = text.find(L'"', at)) != text.npos; at += 2)
      text.insert(at, 1, L'"');
    return L'"' + text + L'"';
  }
  [[nodiscard]] std::wstring key_of(const ODRecord& record) const {
    if (!request_.type_field) return record.table;
    const auto place = tables_.at(record.table).column(*request_.type_field);
    return place ? value_text(view_of(record.values[*place])) : L"";
  }
  void write_header() {
    text_ = L"ID" + sep() + L"TableName";
    if (request_.type_field) text_ += sep() + *request_.type_field;
    text_ += sep() + L"Count";
    for (const auto& [name, column] : columns_)
      text_ += sep() + name;
    text_ += L'\n';
  }
  void write_row(const std::wstring& handle, const ODRecord& record, const std::wstring& key) {
    text_ += handle + sep() + quoted(record.table) + sep();
    if (request_.type_field) text_ += quoted(key) + sep();
    for (auto& [name, column] : columns_) {
      text_ += sep();
      const auto place = tables_.at(record.table).column(name);
      if (!place) continue;
      ODValue value = record.values[*place];
      if (const auto* const point = std::get_if<Point3>(&value)) value = double{point->z};
      const std::wstring shown = value_text(view_of(value));
      const std::wstring cell = std::holds_alternative<std::wstring>(value) ? quoted(shown) : shown;
      const double number = column.counted ? 0 : read_real(value_text(view_of(value)));
      const auto* const real = std::get_if<double>(&value);
      column.group.push_back(!column.counted && real != nullptr ? *real : number);
      column.all.push_back(column.group.back());
      column.texts.insert(cell);
      text_ += cell;
    }
    text_ += L'\n';
  }
  static std::wstring sum(const Column& column, const std::vector<double>& numbers) {
    if (numbers.empty()) return L"";
    if (column.counted) return std::to_wstring(numbers.size());
    double total = 0;
    for (const double number : numbers)
      total += number;
    return value_text(total);
  }
  template <class Cell>
  void write_closing(std::wstring_view name, const Cell& cell) {
    text_ += std::wstring(name) + sep() + (request_.type_field ? sep() : L"") + sep();
    for (const auto& [column_name, column] : columns_)
      text_ += sep() + cell(column);
    text_ += L'\n';
  }
  void write_statistics() {
    const auto of_numbers = [](const auto& function) {
      return [function](const Column& column) {
        return column.counted || column.all.empty() ? L"" : value_text(function(column.all));
      };
    };
    write_closing(L"SumCount", [](const Column& c) { return std::to_wstring(c.all.size()); });
    write_closing(L"SumSum", [](const Column& c) { return sum(c, c.all); });
    write_closing(L"Min",
                  of_numbers([](const auto& all) { return *std::ranges::min_element(all); }));
    write_closing(L"Max",
                  of_numbers([](const auto& all) { return *std::ranges::max_element(all); }));
    write_closing(L"Average", of_numbers([](const auto& all) {
                    double total = 0;
                    for (const double number : all)
                      total += number;
                    return total / static_cast<double>(all.size());
                  }));
    write_closing(L"Unique", [](const Column& c) { return std::to_wstring(c.texts.size()); });
  }

  ExplicationRequest request_;
  std::map<std::wstring, ODTableDef> tables_;
  std::map<std::wstring, Column> columns_;
  std::map<std::wstring, std::map<EntityId, std::vector<ODRecord>>> groups_;
  std::wstring text_;
};

TEST_F(Explicated, AgreesWithAPlainReading) {
  std::mt19937_64 random(11);
  const auto up_to = [&random](std::uint64_t most) { return static_cast<int>(random() % most); };
  const auto text = [&up_to] {
    constexpr std::wstring_view units = L"ab\"\n,1\u017E";
    std::wstring made;
    for (int left = up_to(4); left > 0; --left)
      made += units[static_cast<std::size_t>(up_to(units.size()))];
    return made;
  };
  const auto real = [&up_to] { return (up_to(40) - 20) / std::pow(7, up_to(6)); };
  for (int round = 0; round < 40; ++round) {
    for (int record = 0; record < 20; ++record) {
      const auto entity = static_cast<std::size_t>(up_to(ids_.size()));
      if (up_to(3) == 0) {
        valve(entity, text(), up_to(5), text());
      } else {
        pipe(entity, real(), up_to(9) - 4, text(), {real(), real(), real()});
      }
    }
    ExplicationRequest request{{L"Pipes"}, {}, round % 2 == 0 ? L"," : L"<\">"};
    if (round % 3 != 0) request.tables.push_back(L"Valves");
    constexpr const wchar_t* fields[] = {L"KIND", L"N", L"LEN", L"AT", L"SIZE", L"OTHER"};
    if (round % 4 != 0) request.type_field = fields[up_to(std::size(fields))];
    const PlainExplication plain(store_, host_, ids_, request);
    ASSERT_EQ(explicated(ids_, request), utf16_file(plain.text())) << "round " << round;
  }
}

}  // namespace
}  // namespace korvel::test
