// LIST.
#include <algorithm>
#include <cstdint>
#include <numbers>
#include <variant>

#include "frame/format.h"
#include "frame/value_text.h"
#include "geometry/elliptic_arc.h"
#include "geometry/measures.h"
#include "host/console/commands/handlers.h"
#include "host/console/commands/questions.h"
#include "host/standalone/drawing_dump.h"
#include "host/standalone/dxf/number_text.h"
#include "values/unit_precision.h"

namespace korvel::host_command {
namespace {

constexpr std::wstring_view indent = L"  ";

// The roomy form: a line for every fact, indented below the entity's type.
class EntityText {
 public:
  EntityText(const Drawing& drawing, int decimals) : drawing_(drawing), decimals_(decimals) {}

  [[nodiscard]] std::wstring of(EntityId id) {
    type(id);
    properties(drawing_.properties_of(id));
    std::visit(*this, drawing_.picture_of(id).shape);
    const EntityGeometry geometry = drawing_.geometry_of(id);
    if (geometry.thickness != 0) number(L"thickness", geometry.thickness);
    if (const auto length = length_of(geometry.shape)) number(L"length", *length);
    if (const auto area = area_of(geometry.shape)) number(L"area", *area);
    for (const BlockAttribute& attribute : drawing_.attributes_of(id)) {
      fact(L"attribute " + attribute.tag, attribute.text);
    }
    if (drawing_.has_readable_records(id)) {
      records(Drawing::index_of(id));
    } else {
      fact(L"Object data", L"cannot be read");
    }
    return std::move(out_);
  }

  void operator()(const PointShape& point) { place(L"at point", point.position); }
  void operator()(const LineShape& line) {
    place(L"from point", line.start);
    place(L"to point", line.end);
  }
  void operator()(const ArcShape& arc) {
    place(L"center point", arc.center);
    number(L"radius", arc.radius);
    if (!is_whole_turn(arc.sweep)) {
      place(L"start point", point_at(elliptic_arc(arc), 0));
      place(L"end point", point_at(elliptic_arc(arc), arc.sweep));
    }
  }
  void operator()(const EllipseShape& ellipse) {
    place(L"center point", ellipse.center);
    place(L"major axis", {ellipse.major.x, ellipse.major.y, ellipse.major.z});
    number(L"radius ratio", ellipse.ratio);
  }
  void operator()(const PolylineShape& polyline) {
    line(polyline.closed ? L"closed" : L"open");
    for (const Vertex& vertex : polyline.vertices) {
      place(L"at point", vertex.point);
      if (vertex.bulge != 0) number(L"bulge", vertex.bulge);
    }
  }
  void operator()(const SplineShape& spline) {
    line(spline.closed ? L"closed" : L"open");
    for (const Point3& point : spline.control_points)
      place(L"control point", point);
    for (const Point3& point : spline.fit_points)
      place(L"fit point", point);
  }
  void operator()(const MlineShape& mline) {
    for (const Point3& point : mline.vertices)
      place(L"at point", point);
  }
  void operator()(const TextShape& text) {
    place(L"start point", text.position);
    number(L"height", text.height);
    number(L"rotation angle", text.rotation * 180 / std::numbers::pi);
    fact(L"text", text.text);
  }
  void operator()(const MtextShape& text) {
    place(L"location", text.position);
    number(L"width", text.width);
    number(L"height", text.height);
    fact(L"contents", text.text);
  }
  void operator()(const BlockReferenceShape& block) {
    fact(L"block name", L'"' + block.block + L'"');
    place(L"at point", block.position);
    place(L"scale factors", block.scale);
    number(L"rotation angle", block.rotation * 180 / std::numbers::pi);
  }
  void operator()(const FaceShape& face) {
    for (const Point3& corner : face.corners)
      place(L"corner", corner);
  }
  void operator()(const HatchShape& hatch) {
    line(counted(hatch.loops.size(), L"outline", L"outlines"));
  }
  void operator()(std::monostate) {}

 private:
  void line(std::wstring_view text) {
    out_ += indent;
    out_ += on_one_line(text);
    out_ += L'\n';
  }
  void fact(std::wstring_view name, std::wstring_view value) {
    line(format_text(L"%s: %s", name, value));
  }
  // What rounds to zero has no sign.
  [[nodiscard]] std::wstring shown(double value) const {
    std::wstring text = fixed_text(value, decimals_);
    const bool is_zero = text.find_first_not_of(L"-0.") == std::wstring::npos;
    return is_zero && text.starts_with(L'-') ? text.substr(1) : text;
  }
  void number(std::wstring_view name, double value) {
    line(format_text(L"%s = %s", name, shown(value)));
  }
  void place(std::wstring_view name, Point3 point) {
    line(format_text(L"%s, X=%s Y=%s Z=%s", name, shown(point.x), shown(point.y), shown(point.z)));
  }

  void type(EntityId id) {
    const std::string_view name = drawing_.type_of(id);
    out_.append(name.begin(), name.end());
    out_ += L'\n';
    if (const std::uint64_t handle = drawing_.handle_of(id); handle != 0) {
      std::string digits;
      dxf::append_handle(digits, handle);
      fact(L"Handle", std::wstring(digits.begin(), digits.end()));
    }
    switch (drawing_.space_of(id)) {
      case Space::Model:
        return line(L"Space: Model space");
      case Space::Paper:
        return line(L"Space: Paper space");
      case Space::Block:
        return fact(L"Block", drawing_.block_of(id));
    }
  }

  void properties(const EntityProperties& properties) {
    const EntityProperties usual;
    fact(L"Layer", L'"' + properties.layer + L'"');
    if (properties.true_color) {
      const auto part = [&properties](int shift) {
        return (*properties.true_color >> shift) & 255;
      };
      fact(L"Color", format_text(L"%i,%i,%i", part(16), part(8), part(0)));
    } else if (properties.color == 0) {
      fact(L"Color", L"BYBLOCK");
    } else if (properties.color != usual.color) {
      fact(L"Color", format_text(L"%i", properties.color));
    }
    if (properties.linetype != usual.linetype) fact(L"Linetype", properties.linetype);
    if (properties.linetype_scale != usual.linetype_scale) {
      number(L"Linetype scale", properties.linetype_scale);
    }
    if (properties.lineweight >= 0) {
      fact(L"Lineweight", fixed_text(properties.lineweight / 100.0, 2) + L" mm");
    }
  }

  void records(std::uint32_t entity) {
    const OdTables& od = drawing_.od();
    const RecordSpan span = od.records_of(entity);
    for (std::uint32_t i = 0; i < span.count; ++i) {
      const RecordRef record = od.record(span.first + i);
      const OdTable& table = od.tables()[record.table];
      line(format_text(L"Object data %i of %i: %s", i + 1, span.count, table.name));
      for (std::uint32_t column = 0; column < table.columns.size(); ++column) {
        out_ += indent;
        fact(table.columns[column].definition.name, value_text(od.value(record, column)));
      }
    }
  }

  const Drawing& drawing_;
  int decimals_;
  std::wstring out_;
};

int shown_decimals(const ConsoleHost& host) {
  constexpr int most = 8;
  return std::clamp(unit_precision_of(host), 0, most);
}

}  // namespace

void list(ConsoleHost& host) {
  const std::optional<EntityList> entities = selected_entities(host);
  if (!entities) return;
  if (entities->size() == 1) {
    host.print(EntityText(host.drawing(), shown_decimals(host)).of(entities->front()));
    return;
  }
  for (const EntityId id : *entities) {
    if (cancelled(host)) return;
    host.print(dump_line(host.drawing(), id) + L"\n");
  }
}

}  // namespace korvel::host_command
