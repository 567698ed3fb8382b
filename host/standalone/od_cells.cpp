#include "host/standalone/od_cells.h"

#include <cmath>
#include <type_traits>
#include <utility>

namespace korvel {
namespace {

// Calls visit(std::vector<T>&), unless the column has no type.
template <class Cells, class Visit>
void visit_typed(Cells& cells, Visit&& visit) {
  std::visit(
      [&visit](auto& typed) {
        if constexpr (!std::is_same_v<std::decay_t<decltype(typed)>, std::monostate>) visit(typed);
      },
      cells);
}

template <class Vector>
using ValueOf = typename std::decay_t<Vector>::value_type;

}  // namespace

CellVector cells_for(ODType type) {
  switch (type) {
    case ODType::Integer:
      return std::vector<std::int32_t>{};
    case ODType::Real:
      return std::vector<double>{};
    case ODType::Character:
      return std::vector<TextPool::Id>{};
    case ODType::Point:
      return std::vector<Point3>{};
    case ODType::Unknown:
      break;
  }
  return {};
}

void append(CellVector& cells, const Cell& cell) {
  visit_typed(cells,
              [&](auto& typed) { typed.push_back(std::get<ValueOf<decltype(typed)>>(cell)); });
}

Cell cell_at(const CellVector& cells, std::size_t row) {
  Cell cell;
  visit_typed(cells, [&](const auto& typed) { cell = typed[row]; });
  return cell;
}

void set_cell(CellVector& cells, std::size_t row, const Cell& cell) {
  visit_typed(cells, [&](auto& typed) { typed[row] = std::get<ValueOf<decltype(typed)>>(cell); });
}

void swap_cells(CellVector& cells, std::size_t row, CellVector& others, std::size_t other_row) {
  visit_typed(cells, [&](auto& typed) {
    std::swap(typed[row], std::get<std::decay_t<decltype(typed)>>(others)[other_row]);
  });
}

void resize(CellVector& cells, std::size_t rows) {
  visit_typed(cells, [rows](auto& typed) { typed.resize(rows); });
}

bool same(const Cell& left, const Cell& right) {
  const auto* const number = std::get_if<double>(&left);
  const auto* const other = std::get_if<double>(&right);
  if (number != nullptr && other != nullptr) {
    return *number == *other && std::signbit(*number) == std::signbit(*other);
  }
  return left == right;
}

}  // namespace korvel
