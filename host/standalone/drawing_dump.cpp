// The lines of a dump.
#include "host/standalone/drawing_dump.h"

#include <cmath>
#include <numbers>
#include <optional>
#include <span>
#include <variant>

#include "frame/format.h"
#include "geometry/hatch_loops.h"
#include "geometry/vector.h"
#include "host/standalone/dump_text.h"
#include "host/standalone/dxf/number_text.h"

namespace korvel {
namespace {

constexpr double full_turn = 2 * std::numbers::pi;

void append_ascii(std::string_view text, std::wstring& out) {
  out.append(text.begin(), text.end());
}

// Angles and directions are computed from what the file holds; their last digits are noise.
double without_noise(double value) {
  constexpr double places = 1e10;
  return std::round(value * places) / places;
}

double degrees(double radians) { return without_noise(radians * 180 / std::numbers::pi); }

// Writes "name value" pairs of a shape, each behind a blank.
class ShapeText {
 public:
  explicit ShapeText(std::wstring& out) : out_(out) {}

  void operator()(std::monostate) {}

  void operator()(const PointShape& point) { place(L" at ", point.position); }

  void operator()(const LineShape& line) {
    place(L" from ", line.start);
    place(L" to ", line.end);
  }

  void operator()(const ArcShape& arc) {
    place(L" center ", arc.center);
    number(L" radius ", arc.radius);
    if (arc.sweep != full_turn) {
      direction(L" start ", arc.start);
      number(L" sweep ", degrees(arc.sweep));
    }
    normal(arc.normal);
  }

  void operator()(const EllipseShape& ellipse) {
    place(L" center ", ellipse.center);
    place(L" major ", {ellipse.major.x, ellipse.major.y, ellipse.major.z});
    number(L" ratio ", ellipse.ratio);
    number(L" start ", degrees(ellipse.start));
    number(L" end ", degrees(ellipse.end));
    normal(ellipse.normal);
  }

  void operator()(const PolylineShape& polyline) {
    if (polyline.kind == PolylineKind::ThreeD) out_ += L" 3d";
    closed(polyline.closed);
    out_ += L" vertices";
    for (const Vertex& vertex : polyline.vertices) {
      place(L" ", vertex.point);
      if (vertex.bulge != 0) number(L" bulge ", vertex.bulge);
    }
    normal(polyline.normal);
  }

  void operator()(const SplineShape& spline) {
    out_ += L" degree ";
    append_integer(spline.degree, out_);
    closed(spline.closed);
    numbers(L" knots", spline.knots);
    numbers(L" weights", spline.weights);
    places(L" control", spline.control_points);
    places(L" fit", spline.fit_points);
  }

  void operator()(const MlineShape& mline) {
    closed(mline.closed);
    places(L" vertices", mline.vertices);
  }

  void operator()(const TextShape& text) {
    place(L" at ", text.position);
    number(L" height ", text.height);
    if (text.rotation != 0) number(L" rotation ", degrees(text.rotation));
    if (text.width_factor != 1) number(L" width ", text.width_factor);
    normal(text.normal);
    quoted(L" text ", text.text);
  }

  void operator()(const MtextShape& text) {
    place(L" at ", text.position);
    direction(L" direction ", text.direction);
    number(L" width ", text.width);
    number(L" height ", text.height);
    out_ += L" attachment ";
    append_integer(text.attachment, out_);
    normal(text.normal);
    quoted(L" text ", text.text);
  }

  void operator()(const BlockReferenceShape& block) {
    out_ += L" of ";
    append_name(block.block, out_);
    place(L" at ", block.position);
    if (block.scale != Point3{1, 1, 1}) place(L" scale ", block.scale);
    if (block.rotation != 0) number(L" rotation ", degrees(block.rotation));
    if (block.columns != 1 || block.rows != 1) {
      out_ += L" columns ";
      append_integer(block.columns, out_);
      number(L" every ", block.column_spacing);
      out_ += L" rows ";
      append_integer(block.rows, out_);
      number(L" every ", block.row_spacing);
    }
    normal(block.normal);
  }

  void operator()(const HatchShape& hatch) {
    for_each_loop(hatch, [this](const HatchLoop& loop) {
      out_ += L" loop";
      (*this)(loop.outline);
      for (const CurvedEdge& edge : loop.curves) {
        out_ += L" edge ";
        append_integer(static_cast<std::int64_t>(edge.segment), out_);
        std::visit(*this, edge.curve);
      }
    });
  }

  void operator()(const FaceShape& face) { places(L" corners", face.corners); }

 private:
  void place(std::wstring_view label, Point3 point) {
    out_ += label;
    append_point(point, out_);
  }
  void direction(std::wstring_view label, Vector3 vector) {
    place(label, {without_noise(vector.x), without_noise(vector.y), without_noise(vector.z)});
  }
  void number(std::wstring_view label, double value) {
    out_ += label;
    append_number(value, out_);
  }
  void quoted(std::wstring_view label, std::wstring_view text) {
    out_ += label;
    append_quoted(text, out_);
  }
  void closed(bool is_closed) {
    if (is_closed) out_ += L" closed";
  }
  void normal(Vector3 vector) {
    if (vector != Vector3{0, 0, 1}) direction(L" normal ", vector);
  }
  void places(std::wstring_view label, std::span<const Point3> points) {
    if (!points.empty()) out_ += label;
    for (const Point3& point : points)
      place(L" ", point);
  }
  void numbers(std::wstring_view label, std::span<const double> values) {
    if (!values.empty()) out_ += label;
    for (const double value : values)
      number(L" ", value);
  }

  std::wstring& out_;
};

void append_place(const Drawing& drawing, EntityId id, std::wstring& out) {
  switch (drawing.space_of(id)) {
    case Space::Model:
      return;
    case Space::Paper:
      out += L" space=paper";
      return;
    case Space::Block:
      out += L" block=";
      append_name(drawing.block_of(id), out);
      return;
  }
}

void append_true_color(std::int32_t color, std::wstring& out) {
  constexpr std::wstring_view digits = L"0123456789ABCDEF";
  for (int shift = 20; shift >= 0; shift -= 4) {
    out += digits[static_cast<std::size_t>((color >> shift) & 15)];
  }
}

void append_properties(const EntityProperties& properties, std::wstring& out) {
  const EntityProperties usual;
  out += L" layer=";
  append_name(properties.layer, out);
  if (properties.color != usual.color) {
    out += L" color=";
    append_integer(properties.color, out);
  }
  if (properties.true_color) {
    out += L" truecolor=";
    append_true_color(*properties.true_color, out);
  }
  if (properties.linetype != usual.linetype) {
    out += L" linetype=";
    append_name(properties.linetype, out);
  }
  if (properties.linetype_scale != usual.linetype_scale) {
    out += L" ltscale=";
    append_number(properties.linetype_scale, out);
  }
  if (properties.lineweight != usual.lineweight) {
    out += L" lineweight=";
    append_integer(properties.lineweight, out);
  }
}

void append_attributes(const Drawing& drawing, EntityId id, std::wstring& out) {
  const std::vector<BlockAttribute> attributes = drawing.attributes_of(id);
  if (attributes.empty()) return;
  out += L" attributes(";
  bool first = true;
  for (const BlockAttribute& attribute : attributes) {
    if (!first) out += L", ";
    first = false;
    append_name(attribute.tag, out);
    out += L'=';
    append_quoted(attribute.text, out);
  }
  out += L')';
}

void append_records(const OdTables& od, std::uint32_t entity, std::wstring& out) {
  const RecordSpan span = od.records_of(entity);
  for (std::uint32_t i = 0; i < span.count; ++i) {
    const RecordRef record = od.record(span.first + i);
    const OdTable& table = od.tables()[record.table];
    out += L" | ";
    append_name(table.name, out);
    out += L'(';
    for (std::uint32_t column = 0; column < table.columns.size(); ++column) {
      if (column > 0) out += L", ";
      append_name(table.columns[column].definition.name, out);
      out += L'=';
      append_value(od.value(record, column), out);
    }
    out += L')';
  }
}

void append_entity(const Drawing& drawing, EntityId id, std::wstring& out) {
  std::string handle;
  if (const std::uint64_t number = drawing.handle_of(id); number != 0) {
    dxf::append_handle(handle, number);
  } else {
    handle.push_back('-');
  }
  append_ascii(handle, out);
  out += L' ';
  append_ascii(drawing.type_of(id), out);
  append_place(drawing, id, out);
  append_properties(drawing.properties_of(id), out);
  const EntityGeometry geometry = drawing.picture_of(id);
  std::visit(ShapeText(out), geometry.shape);
  if (geometry.thickness != 0) {
    out += L" thickness ";
    append_number(geometry.thickness, out);
  }
  append_attributes(drawing, id, out);
  append_records(drawing.od(), Drawing::index_of(id), out);
}

void append_layer(const Layer& layer, bool is_current, std::wstring& out) {
  out += L"LAYER ";
  append_name(layer.name, out);
  if (is_current) out += L" current";
  if (layer.frozen) out += L" frozen";
  if (layer.off) out += L" off";
  if (layer.locked) out += L" locked";
}

void append_table(const OdTable& table, std::wstring& out) {
  out += L"TABLE ";
  append_name(table.name, out);
  out += L'(';
  bool first = true;
  for (const OdColumn& column : table.columns) {
    if (!first) out += L", ";
    first = false;
    append_name(column.definition.name, out);
    out += L' ';
    out += type_name(column.definition.type);
    out += L' ';
    append_value(view_of(column.definition.default_value), out);
  }
  out += L')';
}

}  // namespace

std::wstring dump_line(const Drawing& drawing, EntityId id) {
  std::wstring line;
  append_entity(drawing, id, line);
  return line;
}

void dump(const Drawing& drawing, const TextSink& sink) {
  std::wstring line;
  const auto hand_out = [&] {
    sink(line);
    line.clear();
  };
  for (const Layer& layer : drawing.layers()) {
    append_layer(layer, layer.id == drawing.current_layer(), line);
    hand_out();
  }
  for (const OdTable& table : drawing.od().tables()) {
    if (table.deleted) continue;
    append_table(table, line);
    hand_out();
  }
  for (const Space space : {Space::Model, Space::Paper, Space::Block}) {
    for (const EntityId id : drawing.entities(space)) {
      append_entity(drawing, id, line);
      hand_out();
    }
  }
}

}  // namespace korvel
