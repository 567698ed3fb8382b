// The words for what an import would do.
#include "exchange/csv_plan.h"
#include "frame/format.h"

namespace korvel {
namespace {

void append_findings(std::wstring_view title, const Findings& findings, std::wstring& out) {
  out += format_text(L"%s: %i\n", title, findings.count());
  for (const std::wstring& example : findings.examples())
    out += L"  " + example + L"\n";
  if (findings.count() > findings.examples().size()) out += L"  ...\n";
}

}  // namespace

std::wstring preview_text(const CsvPlan& plan) {
  std::wstring out = format_text(L"Rows: %i\n", plan.rows);
  append_findings(L"Changed", plan.changed, out);
  append_findings(L"Added", plan.added, out);
  out += format_text(L"Unchanged: %i\n", plan.unchanged);
  const auto append_problem = [&out](std::wstring_view title, const Findings& findings) {
    if (findings.count() > 0) append_findings(title, findings, out);
  };
  append_problem(L"Unknown handles", plan.unknown_handles);
  append_problem(L"Records that the object does not have", plan.missing_records);
  append_problem(L"Records of an earlier row", plan.duplicates);
  append_problem(L"Objects that cannot be changed", plan.locked);
  append_problem(L"Values that the column does not take", plan.refused);
  for (const std::wstring& column : plan.ignored_columns.examples())
    out += format_text(L"Column not in the table: %s\n", column);
  const std::size_t unnamed = plan.ignored_columns.count() - plan.ignored_columns.examples().size();
  if (unnamed > 0) out += format_text(L"Further columns not in the table: %i\n", unnamed);
  return out;
}

}  // namespace korvel
