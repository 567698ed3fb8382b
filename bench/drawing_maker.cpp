#include "bench/drawing_maker.h"

#include <array>
#include <charconv>
#include <random>
#include <string>
#include <utility>

#include "host/standalone/blank_drawing.h"

namespace korvel::bench {
namespace {

constexpr std::uint64_t layers = 10;
constexpr std::uint64_t first_handle = 0x100;

// Handles in the blank drawing.
constexpr std::uint64_t layer_table = 0x2;
constexpr std::uint64_t root_dictionary = 0xC;
constexpr std::uint64_t plot_style = 0xF;
constexpr std::uint64_t model_space = 0x1F;

// Upper-case hexadecimal; the number of digits.
std::size_t handle_digits(std::uint64_t handle, std::array<char, 16>& digits) {
  char* const end = std::to_chars(digits.begin(), digits.end(), handle, 16).ptr;
  for (char* digit = digits.begin(); digit != end; ++digit) {
    if (*digit >= 'a') *digit = static_cast<char>(*digit - 'a' + 'A');
  }
  return static_cast<std::size_t>(end - digits.begin());
}

// Groups in the manner of the blank drawing.
class Groups {
 public:
  explicit Groups(const std::function<void(std::string_view)>& sink) : sink_(sink) {}
  ~Groups() { sink_(text_); }
  Groups(const Groups&) = delete;
  Groups& operator=(const Groups&) = delete;

  void as_it_stands(std::string_view text) {
    text_ += text;
    if (text_.size() < capacity) return;
    sink_(text_);
    text_.clear();
  }
  void text(int code, std::string_view value) {
    number(code, 3);
    as_it_stands(value);
    as_it_stands("\n");
  }
  void handle(int code, std::uint64_t value) {
    std::array<char, 16> digits{};
    text(code, {digits.data(), handle_digits(value, digits)});
  }
  void int16(int code, std::int64_t value) {
    number(code, 3);
    number(value, 6);
  }
  void int32(int code, std::int64_t value) {
    number(code, 3);
    number(value, 9);
  }
  // In thousandths, to have short and different numbers.
  void real(int code, std::uint64_t thousandths) {
    number(code, 3);
    std::array<char, 24> digits{};
    char* end = std::to_chars(digits.begin(), digits.end(), thousandths / 1000).ptr;
    *end++ = '.';
    const std::uint64_t fraction = thousandths % 1000;
    *end++ = static_cast<char>('0' + fraction / 100);
    *end++ = static_cast<char>('0' + fraction / 10 % 10);
    *end++ = static_cast<char>('0' + fraction % 10);
    while (end[-1] == '0' && end[-2] != '.')
      --end;
    *end++ = '\n';
    as_it_stands({digits.begin(), end});
  }

 private:
  static constexpr std::size_t capacity = std::size_t{1} << 20;

  void number(std::int64_t value, std::ptrdiff_t width) {
    std::array<char, 24> digits{};
    char* const end = std::to_chars(digits.begin(), digits.end(), value).ptr;
    for (std::ptrdiff_t blanks = width - (end - digits.begin()); blanks > 0; --blanks)
      text_ += ' ';
    text_.append(digits.begin(), end);
    text_ += '\n';
  }

  const std::function<void(std::string_view)>& sink_;
  std::string text_;
};

class Maker {
 public:
  Maker(const DrawingSize& size, const std::function<void(std::string_view)>& sink)
      : size_(size), out_(sink), random_(size.seed) {
    for (std::uint64_t i = 0; i < size.entities; ++i)
      carriers_ += records_of(i) > 0 ? 1 : 0;
    next_dictionary_ = first_entity + size.entities;
  }

  void make() {
    copy_through("$HANDSEED\n  5\n");
    std::array<char, 16> digits{};
    out_.as_it_stands({digits.data(), handle_digits(first_handle + handles_in_all(), digits)});
    rest_.remove_prefix(rest_.find('\n'));
    copy_through("  0\nLAYER\n");
    copy_until("  0\nENDTAB\n");
    for (std::uint64_t i = 0; i < layers; ++i)
      add_layer(i);
    copy_through("  2\nENTITIES\n");
    for (std::uint64_t i = 0; i < size_.entities; ++i)
      add_entity(i);
    copy_through("  2\nOBJECTS\n  0\nDICTIONARY\n");
    copy_until("  0\nDICTIONARY\n");
    out_.text(3, "KORVEL_OBJECT_DATA");
    out_.handle(350, definitions);
    copy_until("  0\nENDSEC\n");
    add_definitions();
    std::uint64_t carrier = 0;
    for (std::uint64_t i = 0; i < size_.entities; ++i) {
      if (records_of(i) > 0) add_records(i, carrier++);
    }
    out_.as_it_stands(rest_);
  }

 private:
  static constexpr std::uint64_t definitions = first_handle;
  static constexpr std::uint64_t roads = first_handle + 1;
  static constexpr std::uint64_t surveys = first_handle + 2;
  static constexpr std::uint64_t first_layer = first_handle + 3;
  static constexpr std::uint64_t first_entity = first_layer + layers;

  [[nodiscard]] std::uint64_t handles_in_all() const {
    return first_entity - first_handle + size_.entities + 2 * carriers_;
  }
  [[nodiscard]] std::uint64_t records_of(std::uint64_t entity) const {
    const auto until = [this](std::uint64_t count) {
      return static_cast<std::uint64_t>(static_cast<double>(count) * size_.records);
    };
    return until(entity + 1) - until(entity);
  }

  // Parts of the blank drawing.
  void copy_until(std::string_view mark) { copy(rest_.find(mark)); }
  void copy_through(std::string_view mark) { copy(rest_.find(mark) + mark.size()); }
  void copy(std::size_t length) {
    out_.as_it_stands(rest_.substr(0, length));
    rest_.remove_prefix(length);
  }

  std::string_view layer_name(std::uint64_t layer) {
    name_.back() = static_cast<char>('0' + layer % layers);
    return name_;
  }
  void add_layer(std::uint64_t layer) {
    out_.text(0, "LAYER");
    out_.handle(5, first_layer + layer);
    out_.handle(330, layer_table);
    out_.text(100, "AcDbSymbolTableRecord");
    out_.text(100, "AcDbLayerTableRecord");
    out_.text(2, layer_name(layer));
    out_.int16(70, 0);
    out_.int16(62, static_cast<std::int64_t>(1 + layer % 7));
    out_.text(6, "Continuous");
    out_.int16(370, -3);
    out_.handle(390, plot_style);
  }

  // Thousandths in a square of 100 by 100 km.
  std::uint64_t place() { return random_() % 100'000'000; }
  void point(int code) {
    out_.real(code, place());
    out_.real(code + 10, place());
  }
  void begin_entity(std::string_view type, std::string_view marker, std::uint64_t entity) {
    out_.text(0, type);
    out_.handle(5, first_entity + entity);
    if (records_of(entity) > 0) {
      out_.text(102, "{ACAD_XDICTIONARY");
      out_.handle(360, next_dictionary_);
      out_.text(102, "}");
      next_dictionary_ += 2;
    }
    out_.handle(330, model_space);
    out_.text(100, "AcDbEntity");
    out_.text(8, layer_name(random_()));
    out_.text(100, marker);
  }
  void add_entity(std::uint64_t entity) {
    switch (entity % 4) {
      case 0:
        begin_entity("POINT", "AcDbPoint", entity);
        point(10);
        out_.real(30, 0);
        break;
      case 1:
        if (size_.references) {
          add_reference(entity);
          break;
        }
        begin_entity("LINE", "AcDbLine", entity);
        for (const int code : {10, 11}) {
          point(code);
          out_.real(code + 20, 0);
        }
        break;
      default:
        begin_entity("LWPOLYLINE", "AcDbPolyline", entity);
        out_.int32(90, static_cast<std::int64_t>(size_.vertices));
        out_.int16(70, 0);
        out_.real(43, 0);
        std::uint64_t x = place();
        std::uint64_t y = place();
        for (std::uint64_t i = 0; i < size_.vertices; ++i) {
          out_.real(10, x += random_() % 50'000);
          out_.real(20, y += random_() % 50'000);
        }
        break;
    }
  }

  void add_reference(std::uint64_t entity) {
    begin_entity("INSERT", "AcDbBlockReference", entity);
    out_.int16(66, 1);
    out_.text(2, "SIGN");
    point(10);
    out_.real(30, 0);
    for (const auto& [tag, text] :
         {std::pair{"NAME", "High Street"}, {"LANES", "2"}, {"WIDTH", "3.5"}})
      add_attribute(tag, text);
    for (std::uint64_t i = 0; i < size_.further_attributes; ++i)
      add_attribute("A" + std::to_string(i), "0");
    out_.text(0, "SEQEND");
    out_.text(100, "AcDbEntity");
    out_.text(8, "0");
  }
  void add_attribute(std::string_view tag, std::string_view text) {
    out_.text(0, "ATTRIB");
    out_.text(100, "AcDbEntity");
    out_.text(8, layer_name(random_()));
    out_.text(100, "AcDbText");
    point(10);
    out_.real(30, 0);
    out_.real(40, 2500);
    out_.text(1, text);
    out_.text(100, "AcDbAttribute");
    out_.int16(280, 0);
    out_.text(2, tag);
    out_.int16(70, 0);
    out_.int16(280, 1);
  }

  void begin_dictionary(std::uint64_t handle, std::uint64_t owner, bool reactor) {
    out_.text(0, "DICTIONARY");
    out_.handle(5, handle);
    if (reactor) add_reactor(owner);
    out_.handle(330, owner);
    out_.text(100, "AcDbDictionary");
    out_.int16(280, 1);
    out_.int16(281, 1);
  }
  void begin_xrecord(std::uint64_t handle, std::uint64_t dictionary) {
    out_.text(0, "XRECORD");
    out_.handle(5, handle);
    add_reactor(dictionary);
    out_.handle(330, dictionary);
    out_.text(100, "AcDbXrecord");
    out_.int16(280, 1);
  }
  void add_reactor(std::uint64_t owner) {
    out_.text(102, "{ACAD_REACTORS");
    out_.handle(330, owner);
    out_.text(102, "}");
  }
  void add_entry(std::string_view key, std::uint64_t handle) {
    out_.text(3, key);
    out_.handle(360, handle);
  }
  void begin_column(std::string_view name, int type) {
    out_.text(300, name);
    out_.int16(70, type);
  }
  void add_definitions() {
    begin_dictionary(definitions, root_dictionary, true);
    add_entry("Roads", roads);
    add_entry("Surveys", surveys);
    begin_xrecord(roads, definitions);
    out_.int32(90, 1);
    out_.text(2, "Roads");
    begin_column("LANES", 1);
    out_.int32(90, 2);
    begin_column("WIDTH", 2);
    out_.real(40, 3500);
    begin_column("NAME", 3);
    out_.text(1, "");
    begin_xrecord(surveys, definitions);
    out_.int32(90, 1);
    out_.text(2, "Surveys");
    begin_column("YEAR", 1);
    out_.int32(90, 2000);
    begin_column("NOTE", 3);
    out_.text(1, "");
  }
  void add_records(std::uint64_t entity, std::uint64_t carrier) {
    const std::uint64_t dictionary = first_entity + size_.entities + 2 * carrier;
    begin_dictionary(dictionary, first_entity + entity, false);
    add_entry("KORVEL_OD", dictionary + 1);
    begin_xrecord(dictionary + 1, dictionary);
    for (std::uint64_t i = 0; i < records_of(entity); ++i) {
      // Names repeat, as those of streets do; notes hardly ever.
      text_ = i == 0 ? "Street " : "surveyed as number ";
      text_ += std::to_string(i == 0 ? random_() % 5000 : random_() % 1'000'000'000);
      out_.text(2, i == 0 ? "Roads" : "Surveys");
      out_.int32(90, static_cast<std::int64_t>(i == 0 ? 1 + random_() % 6 : 1990 + random_() % 36));
      if (i == 0) out_.real(40, 2000 + random_() % 10'000);
      out_.text(1, text_);
    }
  }

  DrawingSize size_;
  Groups out_;
  std::mt19937_64 random_;
  std::string_view rest_ = blank_drawing;
  std::uint64_t carriers_ = 0;
  std::uint64_t next_dictionary_ = 0;
  std::string name_ = "LAYER_0";
  std::string text_;
};

}  // namespace

void make_drawing(const DrawingSize& size, const std::function<void(std::string_view)>& sink) {
  Maker(size, sink).make();
}

std::string drawing_text(const DrawingSize& size) {
  std::string text;
  make_drawing(size, [&text](std::string_view piece) { text += piece; });
  return text;
}

}  // namespace korvel::bench
