// The words of one traced call.
#pragma once

#include <algorithm>
#include <concepts>
#include <filesystem>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "frame/drawing_host.h"
#include "frame/format.h"
#include "frame/od_store.h"
#include "frame/tracing_host.h"

namespace korvel {

// `name(argument, argument) = result`, put together from the left.
class TraceLine {
 public:
  template <class... Args>
  explicit TraceLine(std::wstring_view name, const Args&... args) : line_(name) {
    std::wstring_view between = L"(";
    ((line_ += between, append(args), between = L", "), ...);
    if constexpr (sizeof...(args) == 0) line_ += between;
  }

  // Writes the line; what the call gave is handed on.
  template <class Result>
  const Result& returns(const TraceSink& sink, const Result& result) {
    line_ += L") = ";
    append(result);
    sink(line_);
    return result;
  }
  void ends(const TraceSink& sink) {
    line_ += L')';
    sink(line_);
  }

 private:
  static constexpr std::size_t longest_list = 8;

  // A template, so that nothing else converts to a number or a truth value.
  template <class Number>
  requires FormatInteger<Number> || std::same_as<Number, bool>
  void append(Number number) {
    if constexpr (std::same_as<Number, bool>) {
      line_ += number ? L"true" : L"false";
    } else {
      append_integer(number, line_);
    }
  }
  void append(std::wstring_view text);
  void append(const std::wstring& text) { append(std::wstring_view(text)); }
  void append(const std::filesystem::path& path);
  void append(const NewFile& file) { append(file.target); }
  void append(const FailedFile& file) { append(sentence_of(file)); }
  void append(OpenMode mode) { line_ += mode == OpenMode::Read ? L"read" : L"write"; }
  void append(EntityId id);
  void append(const ODValueView& value);
  void append(const ODValue& value) { append(view_of(value)); }
  void append(const Point3& point);
  void append(const ODRecord& record);
  void append(const ODColumnDef& column) { append(column.name); }
  void append(const ODTableDef& definition);
  void append(const BlockAttribute& attribute);
  void append(const AttributeText& text);
  void append(const ExtensionEntry& entry) { append(entry.name); }
  void append(const Layer& layer) { append(layer.name); }
  void append(const EntityProperties& properties) { append(properties.layer); }
  void append(const EntityGeometry& /*geometry*/) { line_ += L"shape"; }
  void append(const Extents& extents);
  void append(TableChange change);
  void append(ColumnChange change);
  template <class Value>
  void append(const std::optional<Value>& value) {
    if (value) {
      append(*value);
    } else {
      line_ += L"none";
    }
  }
  template <class Value>
  void append(const Answer<Value>& answer) {
    switch (answer.kind) {
      case Answer<Value>::Kind::Given:
        append(answer.value);
        break;
      case Answer<Value>::Kind::Enter:
        line_ += L"Enter";
        break;
      case Answer<Value>::Kind::Cancelled:
        line_ += L"Esc";
        break;
    }
  }
  template <class Value>
  void append(const std::vector<Value>& list) {
    append(std::span(list));
  }
  template <class Value>
  void append(std::span<const Value> list) {
    std::wstring_view between = L"[";
    for (std::size_t i = 0; i < std::min(list.size(), longest_list); ++i) {
      line_ += between;
      append(list[i]);
      between = L", ";
    }
    line_ += list.empty() ? L"[]" : L"]";
    if (list.size() > longest_list) append_total(list.size());
  }

  void append_unit(wchar_t unit);
  void append_total(std::size_t total);

  std::wstring line_;
};

}  // namespace korvel
