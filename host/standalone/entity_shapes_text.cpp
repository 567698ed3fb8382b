// Reads single-line text, attribute definitions and paragraph text.
#include <algorithm>
#include <cmath>
#include <utility>

#include "host/standalone/entity_shapes.h"

namespace korvel {
namespace {

// Paragraph text as far as its size depends on it: characters per line, without formatting codes.
// Whoever wants the exact size needs the font; this is an estimate.
class LineCounter {
 public:
  LineCounter(double character_width, double frame_width)
      : character_width_(character_width), frame_width_(frame_width) {}

  void count(std::wstring_view text) {
    for (std::size_t i = 0; i < text.size(); ++i) {
      if (text[i] == L'\\' && i + 1 < text.size()) {
        i = after_code(text, i + 1);
      } else if (text[i] == L'\n') {
        end_line();
      } else if (text[i] != L'{' && text[i] != L'}') {
        ++characters_;
      }
    }
    end_line();
  }

  [[nodiscard]] double lines() const { return lines_; }
  [[nodiscard]] double width() const { return width_; }

 private:
  // Index of the last character of the code whose letter stands at `at`.
  std::size_t after_code(std::wstring_view text, std::size_t at) {
    constexpr std::wstring_view with_argument = L"ACcFfHpQTW";
    constexpr std::wstring_view without_argument = L"LlOoKk";
    const wchar_t letter = text[at];
    if (letter == L'P') {
      end_line();
    } else if (with_argument.find(letter) != std::wstring_view::npos) {
      return std::min(text.find(L';', at), text.size() - 1);
    } else if (without_argument.find(letter) == std::wstring_view::npos) {
      ++characters_;
    }
    return at;
  }

  void end_line() {
    const double width = static_cast<double>(characters_) * character_width_;
    const bool wraps = frame_width_ > 0 && width > frame_width_;
    lines_ += wraps ? std::ceil(width / frame_width_) : 1;
    width_ = std::max(width_, wraps ? frame_width_ : width);
    characters_ = 0;
  }

  double character_width_;
  double frame_width_;
  std::size_t characters_ = 0;
  double lines_ = 0;
  double width_ = 0;
};

// What the size of a paragraph text is estimated from.
struct ParagraphMeasures {
  double character_height = 0;
  double frame_width = 0;  // 0: lines do not wrap
  double line_spacing = 1;
};

void estimate_size(MtextShape& text, const ParagraphMeasures& measures) {
  constexpr double character_shape = 0.7;      // width for height
  constexpr double line_distance = 5.0 / 3.0;  // for height, at spacing 1
  LineCounter counter(character_shape * measures.character_height, measures.frame_width);
  counter.count(text.text);
  text.width = counter.width();
  text.height = measures.character_height *
                (1 + (counter.lines() - 1) * line_distance * measures.line_spacing);
}

// The size as laid out, read-only in the file; 0 where it is not said.
void take_laid_out_size(const dxf::Group& group, MtextShape& text) {
  if (group.code == 42) text.width = group.real();
  if (group.code == 43) text.height = group.real();
}

// The vertical justification of an attribute definition has a code of its own; 73 is a length
// there.
bool is_justification(const dxf::Group& group, std::string_view type) {
  const int vertical = type == "ATTDEF" ? 74 : 73;
  return (group.code == 72 || group.code == vertical) && group.integer() != 0;
}

}  // namespace

EntityGeometry read_text(EntityRecords& records, const dxf::TextCodec& codec) {
  TextShape text;
  Point3 alignment;
  bool is_justified = false;
  bool has_alignment = false;
  Extrusion extrusion;
  dxf::Group group;
  while (records.next(group)) {
    switch (group.code) {
      case 1:
        codec.decode(group.value, text.text);
        break;
      case 11:
        has_alignment = true;
        alignment.x = group.real();
        break;
      case 40:
        text.height = group.real();
        break;
      case 41:
        text.width_factor = group.real(1);
        break;
      case 50:
        text.rotation = group.real() * radians_per_degree;
        break;
      case 72:
      case 73:
      case 74:
        is_justified = is_justified || is_justification(group, records.type());
        break;
      default:
        if (take_point(group, 10, text.position) || take_point(group, 11, alignment)) break;
        extrusion.take(group);
    }
  }
  const PlaneToWorld world(extrusion.normal);
  text.position = world(text.position);
  if (is_justified && has_alignment) text.alignment = world(alignment);
  text.normal = world.normal();
  return {std::move(text), extrusion.thickness};
}

EntityGeometry read_mtext(EntityRecords& records, const dxf::TextCodec& codec) {
  MtextShape text;
  ParagraphMeasures measures;
  Point3 direction{1, 0, 0};
  double rotation = 0;
  bool is_turned = false;  // by the rotation, instead of the direction
  Extrusion extrusion;
  dxf::Group group;
  while (records.next(group)) {
    switch (group.code) {
      case 1:
      case 3:
        text.text += codec.decode(group.value);
        break;
      case 40:
        measures.character_height = group.real();
        break;
      case 41:
        measures.frame_width = group.real();
        break;
      case 44:
        measures.line_spacing = group.real(1);
        break;
      case 50:
        rotation = group.real() * radians_per_degree;
        is_turned = true;
        break;
      case 71:
        text.attachment = static_cast<int>(std::clamp<std::int64_t>(group.integer(1), 1, 9));
        break;
      default:
        // Of a direction and an angle the later one counts.
        if (take_point(group, 11, direction)) {
          is_turned = false;
        } else if (!take_point(group, 10, text.position)) {
          take_laid_out_size(group, text);
          extrusion.take(group);
        }
    }
  }
  while (records.next_embedded(group))
    take_laid_out_size(group, text);
  if (!(text.width > 0 && text.height > 0)) estimate_size(text, measures);

  const PlaneFrame plane = plane_frame(extrusion.normal);
  const Vector3 along = is_turned ? std::cos(rotation) * plane.x + std::sin(rotation) * plane.y
                                  : direction - Point3{};
  text.normal = plane.normal;
  text.direction = plane_frame(plane.normal, along).x;
  return {std::move(text)};
}

}  // namespace korvel
