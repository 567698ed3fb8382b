// The value search over entities whose records say the same in different tables, or cannot be read.
#include "search/value_search.h"

#include "tests/host/failing_host.h"
#include "tests/host/scripted_host.h"
#include "tests/host/test_drawing.h"

namespace korvel::test {
namespace {

const std::vector<std::vector<ODRecord>> records_of_entities = {
    {{L"ROADS", {L"Main", 5}}},
    {{L"ROADS", {L"Side", 3}}, {L"PIPES", {L"Main"}}, {L"ROADS", {L"Main", 3}}},
    {{L"PIPES", {L"Main"}}},
    {},
    {{L"ROADS", {L"Main", 5}}},  // cannot be read
};

struct Case {
  std::vector<std::wstring> tables;
  std::vector<ValueCriterion> criteria;
  std::vector<std::size_t> found;  // of the entities given in reverse
};

const std::vector<Case> cases = {
    {{L"ROADS", L"PIPES"}, {{L"NAME", L"Main"}}, {2, 1, 0}},
    {{L"ROADS", L"ROADS"}, {{L"NAME", L"Main"}}, {1, 0}},
    {{L"GONE", L"PIPES"}, {{L"NAME", L"Main"}}, {2, 1}},
    {{L"ROADS"}, {{L"NAME", L"Main"}, {L"NAME", L"Side"}}, {1}},
    {{L"ROADS"}, {{L"NAME", L"Main"}, {L"WIDTH", L">3"}}, {0}},
    {{L"ROADS", L"PIPES"}, {{L"NAME", L"Side"}, {L"WIDTH", L"5"}}, {}},
    {{L"PIPES"}, {{L"WIDTH", L"5"}}, {}},
    {{L"PIPES"}, {{L"NAME", L"**"}}, {2, 1}},
    {{L"ROADS"}, {{L"Name", L"Main"}}, {}},
    {{}, {{L"NAME", L"Main"}}, {}},
    {{}, {{L"NAME", L"*"}}, {}},
    {{L"PIPES"}, {{L"WIDTH", L"\t*\n"}}, {4, 3, 2, 1, 0}},
    {{L"PIPES"}, {{L"WIDTH", L"*"}, {L"NAME", L"*in"}}, {2, 1}},
    {{L"PIPES"}, {}, {4, 3, 2, 1, 0}},
};

TEST(ValueSearch, FindsWhatMeetsEveryCriterionInAnyOfTheTables) {
  const std::size_t count = records_of_entities.size();
  ScriptedHost host(make_drawing({{L"0"}}, std::vector<EntitySpec>(count, {L"0"})));
  StandaloneStore target(host.drawing());
  (void)target.define_table(
      {L"ROADS", {{L"NAME", ODType::Character, std::wstring()}, {L"WIDTH", ODType::Integer, 0}}});
  (void)target.define_table({L"PIPES", {{L"NAME", ODType::Character, std::wstring()}}});
  const EntityList ids = host.model_space();
  for (std::size_t i = 0; i < count; ++i) {
    for (const ODRecord& record : records_of_entities[i])
      ASSERT_TRUE(target.attach(ids[i], record));
  }
  Failures failures;
  failures.open = {ids[4]};
  FailingStore store(target, failures);
  for (std::size_t i = 0; i < cases.size(); ++i) {
    EntityList expected;
    for (const std::size_t index : cases[i].found)
      expected.push_back(ids[index]);
    const ValueSearch search{cases[i].tables, cases[i].criteria, true};
    EXPECT_EQ(find_by_values(search, store, EntityList(ids.rbegin(), ids.rend()), host), expected)
        << "case " << i;
  }
}

}  // namespace
}  // namespace korvel::test
