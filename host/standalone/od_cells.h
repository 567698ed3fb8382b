// The values of a column of object data, kept by type.
#pragma once

#include <cstdint>
#include <variant>
#include <vector>

#include "frame/od_value.h"
#include "host/standalone/text_pool.h"

namespace korvel {

using CellVector = std::variant<std::monostate, std::vector<std::int32_t>, std::vector<double>,
                                std::vector<TextPool::Id>, std::vector<Point3>>;
using Cell = std::variant<std::monostate, std::int32_t, double, TextPool::Id, Point3>;

[[nodiscard]] CellVector cells_for(ODType type);

// The cell must be of the vector's type.
void append(CellVector& cells, const Cell& cell);

[[nodiscard]] Cell cell_at(const CellVector& cells, std::size_t row);
void set_cell(CellVector& cells, std::size_t row, const Cell& cell);

// Exchanges cells of two vectors of one type.
void swap_cells(CellVector& cells, std::size_t row, CellVector& others, std::size_t other_row);

// Makes the vector so many cells long: cuts it, or fills it with zeros.
void resize(CellVector& cells, std::size_t rows);

// Bitwise for reals: a negative zero is not a zero.
[[nodiscard]] bool same(const Cell& left, const Cell& right);

}  // namespace korvel
