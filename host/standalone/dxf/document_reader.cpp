#include "host/standalone/dxf/document_reader.h"

#include <algorithm>
#include <limits>

#include "host/standalone/dxf/number_text.h"

namespace korvel::dxf {
namespace {

constexpr std::string_view utf8_mark = "\xEF\xBB\xBF";
constexpr std::string_view first_utf8_version = "AC1021";
constexpr std::string_view first_version_with_markers = "AC1012";  // R13

Section section_named(std::string_view name) {
  if (name == "HEADER") return Section::Header;
  if (name == "CLASSES") return Section::Classes;
  if (name == "TABLES") return Section::Tables;
  if (name == "BLOCKS") return Section::Blocks;
  if (name == "ENTITIES") return Section::Entities;
  if (name == "OBJECTS") return Section::Objects;
  return Section::Other;
}

constexpr std::size_t most_types = std::numeric_limits<std::uint16_t>::max();
constexpr std::uint64_t longest_item = std::numeric_limits<std::uint32_t>::max();

bool has_parts(std::string_view type) { return type == "POLYLINE" || type == "INSERT"; }

}  // namespace

bool is_part(std::string_view type) {
  return type == "VERTEX" || type == "ATTRIB" || type == "SEQEND";
}

bool is_section_mark(std::string_view type) { return type == "SECTION" || type == "ENDSEC"; }

void FactsCollector::take(const Group& group) {
  switch (group.code) {
    case 2:
      if (!has_name_) facts.name = group.value;
      has_name_ = true;
      break;
    case 5:
      // In an R12 DIMSTYLE this is the name of a block; its handle is 105.
      if (markers_ > 0 || is_dimstyle) break;
      if (handle == 0) handle = group.handle();
      ++handles_;
      damaged_ |= depth_ != 0 || in_xdata_;
      break;
    case 105:
      if (handle == 0 && markers_ == 0 && is_dimstyle) handle = group.handle();
      break;
    case 8:
      if (!has_layer_) facts.layer = group.value;
      has_layer_ = true;
      break;
    case 67:
      if (markers_ <= 1 && group.integer() == 1) facts.paper_space = true;
      break;
    case 100:
      ++markers_;
      break;
    case 102:
      if (markers_ > 0) break;
      depth_ += group.value.starts_with('{') ? 1 : -1;
      damaged_ |= depth_ < 0 || depth_ > 1 || in_xdata_;
      in_extension_ = group.value == "{ACAD_XDICTIONARY";
      break;
    case 330:
      if (markers_ == 0 && depth_ <= 0) facts.owner = group.handle();
      break;
    case 350:
    case 360:
      if (!in_extension_ || markers_ > 0) break;
      facts.extension_dictionary = group.handle();
      ++references_;
      break;
    default:
      in_xdata_ |= group.code >= 1000;
      break;
  }
}

void FactsCollector::end() {
  facts.sound_head = !damaged_ && handles_ == 1 && depth_ == 0 && references_ <= 1;
}

Result<Document> DocumentReader::read(std::string bytes) {
  document_.original_ = std::move(bytes);
  bytes_ = document_.original_;
  if (std::optional<Failure> failure = choose_framing()) return *failure;
  if (std::optional<Failure> failure = cut()) return *failure;

  document_.items_in_file_ = document_.items_.size();
  // A seed that would soon run over is a damaged one.
  constexpr std::uint64_t room = std::uint64_t{1} << 32;
  constexpr std::uint64_t highest_seed = std::numeric_limits<std::uint64_t>::max() - room;
  const std::uint64_t seed = document_.seed_in_file_ < highest_seed ? document_.seed_in_file_ : 0;
  document_.next_handle_ = std::max(seed, highest_handle_ + 1);
  document_.has_handles_ = highest_handle_ != 0 || document_.at_least(first_version_with_markers);
  return std::move(document_);
}

std::optional<Failure> DocumentReader::choose_framing() {
  if (bytes_.empty()) return Failure{name_ + ": the file is empty"};
  constexpr std::string_view binary_title = "AutoCAD Binary DXF";
  Manner& manner = document_.manner_;
  if (bytes_.starts_with(binary_sentinel)) {
    first_group_ = binary_sentinel.size();
    const bool two_bytes = bytes_.substr(first_group_).starts_with(std::string_view("\0\0", 2));
    manner.framing = two_bytes ? Framing::BinaryTwoByte : Framing::BinaryOneByte;
    return std::nullopt;
  }
  if (bytes_.starts_with(binary_title)) {
    return fail_at(binary_title.size(), "a binary DXF damaged in transfer: its line ends changed");
  }
  if (bytes_.starts_with("AC10") && bytes_.size() > 6 && bytes_[6] == '\0') {
    return Failure{name_ + ": this is a DWG file; save it as DXF to open it here"};
  }
  if (bytes_.starts_with(utf8_mark)) first_group_ = utf8_mark.size();
  const std::size_t line = bytes_.find('\n', first_group_);
  if (line != std::string_view::npos && line > first_group_) {
    const bool crlf = bytes_[line - 1] == '\r';
    manner.line_end = crlf ? "\r\n" : "\n";
    const std::size_t width = line - first_group_ - (crlf ? 1 : 0);
    manner.code_width =
        bytes_[first_group_] == ' ' ? static_cast<int>(std::min<std::size_t>(width, 4)) : 0;
    manner.padded_integers = manner.code_width > 0;
  }
  return std::nullopt;
}

std::optional<Failure> DocumentReader::cut() {
  GroupReader reader(bytes_, document_.manner_.framing, first_group_);
  Group group;
  while (reader.next(group)) {
    if (group.code != 0) {
      if (open_) take_group(group);
      continue;
    }
    if (std::optional<Failure> failure = begin_item(group)) return failure;
    if (type_ == "EOF") {
      if (bytes_.size() - group.begin > longest_item) {
        return fail_at(group.end, "more than 4 GB behind the end-of-file mark");
      }
      end_item(bytes_.size());  // with whatever follows the mark
      return std::nullopt;
    }
  }
  if (reader.fault() != nullptr) return fail_at(reader.position(), reader.fault());
  return fail_at(bytes_.size(), "the end-of-file mark is missing, the file was cut short");
}

std::optional<Failure> DocumentReader::begin_item(const Group& group) {
  const std::string_view type = trimmed(group.value);
  if (takes_parts_ && is_part(type)) {
    in_part_ = true;
    part_has_handle_ = false;
    if (type == "SEQEND") takes_parts_ = false;
    return std::nullopt;
  }

  if (open_ && group.begin - item_.span.offset > longest_item) {
    return fail_at(item_.span.offset, "an object longer than 4 GB");
  }
  if (open_) {
    end_item(group.begin);
  } else if (group.begin > 0) {
    end_leading_bytes(group.begin);
  }
  const Section section = section_;
  const bool inside = section != Section::Outside;
  if (type == "SECTION" && inside) return fail_at(group.begin, "a section begins inside another");
  if (type == "EOF" && inside) {
    return fail_at(group.begin, "the file ends inside a section, it was cut short");
  }
  if (type == "ENDSEC") {
    document_.section_ends_[section_] = static_cast<ItemIndex>(document_.items_.size());
    section_ = Section::Outside;
  } else if (type == "ENDTAB" && !table_.empty()) {
    document_.table_ends_.emplace(std::string(table_),
                                  static_cast<ItemIndex>(document_.items_.size()));
  }

  if (document_.type_names_.size() > most_types) {
    return fail_at(group.begin, "more than 65,535 names of types; no program writes so many");
  }
  item_ = {};
  item_.span.offset = group.begin;
  item_.type = type_index(type);
  item_.section = section;  // ENDSEC is still of the section it ends
  type_ = document_.type_names_[item_.type];
  takes_parts_ = has_parts(type);
  in_part_ = false;
  open_ = true;
  collector_.begin();
  collector_.is_dimstyle = type == "DIMSTYLE";
  return std::nullopt;
}

void DocumentReader::end_leading_bytes(std::size_t end) {
  Item leading;
  leading.span.length = static_cast<std::uint32_t>(end);
  leading.type = type_index("");
  document_.items_.push_back(leading);
}

void DocumentReader::end_item(std::size_t end) {
  collector_.end();
  item_.span.length = static_cast<std::uint32_t>(end - item_.span.offset);
  item_.handle = collector_.handle;
  if (item_.handle != 0) enter_handle(item_.handle, item_.span.offset);
  document_.items_.push_back(item_);
  const auto index = static_cast<ItemIndex>(document_.items_.size() - 1);
  if (item_.section == Section::Header && type_ == "SECTION") {
    document_.header_ = index;
    document_.header_in_file_ = item_.span;
    finish_header();
  }
  if (type_ == "TABLE") table_ = collector_.facts.name;
  if (!document_.codec_ && section_ != Section::Header) finish_header();
  visit_(document_, index, collector_.facts);
}

void DocumentReader::take_group(const Group& group) {
  if (in_part_) {
    if (group.code == 5 && !part_has_handle_) {
      part_has_handle_ = true;
      if (const std::uint64_t handle = group.handle(); handle != 0) {
        enter_handle(handle, group.begin);
      }
    }
    return;
  }
  if (section_ == Section::Header) return take_header_group(group);
  collector_.take(group);
  if (group.code == 2 && section_ == Section::Outside && type_ == "SECTION") {
    section_ = section_named(trimmed(group.value));
    item_.section = section_;
  }
}

void DocumentReader::take_header_group(const Group& group) {
  if (group.code == 9) {
    header_variable_ = group.value;
  } else if (header_variable_ == "$ACADVER" && group.code == 1) {
    document_.version_ = trimmed(group.value);
  } else if (header_variable_ == "$DWGCODEPAGE" && group.code == 3) {
    code_page_ = trimmed(group.value);
  } else if (header_variable_ == "$HANDSEED" && group.code == 5) {
    document_.seed_in_file_ = group.handle();
  } else if (value_kind(group.code) == ValueKind::Int16 && !group.binary) {
    document_.manner_.padded_integers = group.value.starts_with(' ');
  }
}

void DocumentReader::finish_header() {
  document_.codec_.emplace(TextCodec::Manner{
      .code_page = code_page_,
      .utf8 = document_.at_least(first_utf8_version),
      .caret_escapes = document_.manner_.framing == Framing::Ascii,
  });
}

void DocumentReader::enter_handle(std::uint64_t handle, std::size_t offset) {
  highest_handle_ = std::max(highest_handle_, handle);
  const auto index = static_cast<std::uint32_t>(document_.items_.size());
  if (document_.handles_.enter(handle, index)) return;
  document_.shared_handles_.insert(handle);
  if (!document_.duplicate_handle_.empty()) return;
  std::string digits;
  append_handle(digits, handle);
  document_.duplicate_handle_ =
      name_ + ": " + place_of(offset) + ": handle " + digits + " is used a second time";
}

std::uint16_t DocumentReader::type_index(std::string_view type) {
  if (type == last_type_ && !document_.type_names_.empty()) return last_type_index_;
  const auto [found, is_new] = type_indexes_.try_emplace(
      std::string(type), static_cast<std::uint16_t>(document_.type_names_.size()));
  if (is_new) document_.type_names_.emplace_back(type);
  last_type_ = type;
  last_type_index_ = found->second;
  return found->second;
}

Failure DocumentReader::fail_at(std::size_t offset, std::string_view reason) const {
  return {name_ + ": " + place_of(offset) + ": " + std::string(reason)};
}

std::string DocumentReader::place_of(std::size_t offset) const {
  return document_.manner_.framing == Framing::Ascii
             ? "line " + std::to_string(line_of(bytes_, offset))
             : "byte " + std::to_string(offset);
}

}  // namespace korvel::dxf
