#include "host/windows/dialog_layout.h"

#include <algorithm>
#include <cstddef>

namespace korvel::windows {
namespace {

// Items that stand side by side: a line with the check behind it, or blocks.
struct Row {
  std::size_t first = 0;
  std::size_t count = 1;
};

class Arrangement {
 public:
  Arrangement(const LayoutRequest& request, int width)
      : request_(request), metrics_(request.metrics), width_(width - 2 * metrics_.margin) {
    make_rows();
  }

  [[nodiscard]] int height(int LayoutItem::*block_height) const {
    int height = 2 * metrics_.margin + buttons_height(ButtonPlace::Top) + bottom_height();
    for (const Row& row : rows_)
      height += row_height(row, block_height) + metrics_.gap;
    return std::max(height - metrics_.gap, 2 * metrics_.margin);
  }

  [[nodiscard]] Layout layout(int inside_height) const {
    Layout layout;
    layout.items.resize(request_.items.size());
    layout.buttons.resize(request_.buttons.size());
    layout.height = std::max(height(&LayoutItem::least_height), inside_height);

    int top = metrics_.margin;
    top = place_buttons(ButtonPlace::Top, top, layout);
    int spare = layout.height - height(&LayoutItem::least_height);
    int weights = 0;
    for (const Row& row : rows_)
      weights += weight(row);
    for (const Row& row : rows_) {
      const int share = weight(row) == 0 ? 0 : spare * weight(row) / weights;
      spare -= share;
      weights -= weight(row);
      const int row_height = this->row_height(row, &LayoutItem::least_height) + share;
      place_row(row, top, row_height, layout);
      top += row_height + metrics_.gap;
    }
    top = std::max(top, layout.height - metrics_.margin - bottom_height() + metrics_.gap);
    if (bottom_is_one_row()) {
      place_buttons(ButtonPlace::Bottom, top, layout);
    } else {
      top = place_buttons(ButtonPlace::Bottom, top, layout);
    }
    place_buttons(ButtonPlace::Corner, top, layout);
    return layout;
  }

  [[nodiscard]] static int preferred_width(const LayoutRequest& request) {
    const Arrangement all(request, 1 << 24);
    int width = std::max(all.buttons_width(ButtonPlace::Top), all.bottom_width());
    for (const Row& row : all.rows_) {
      const LayoutItem& item = request.items[row.first];
      const int in_front = item.shape == Shape::Line ? all.label_column() : 0;
      width = std::max(width, in_front + all.wanted_width(row));
    }
    return width + 2 * request.metrics.margin;
  }

 private:
  [[nodiscard]] const LayoutItem& item(std::size_t index) const { return request_.items[index]; }
  [[nodiscard]] bool is(std::size_t index, Shape shape) const {
    return index < request_.items.size() && item(index).shape == shape;
  }

  void make_rows() {
    for (std::size_t i = 0; i < request_.items.size(); i += rows_.back().count) {
      Row row{i, 1};
      if (is(i, Shape::Line) && is(i + 1, Shape::Check)) row.count = 2;
      while (is(i, Shape::Block) && is(i + row.count, Shape::Block))
        ++row.count;
      const int in_front = is(i, Shape::Line) ? label_column() : 0;
      if (in_front + wanted_width(row) > width_) row.count = 1;
      rows_.push_back(row);
    }
  }

  // --- Widths ---

  // The labels of lines stand below each other, the bodies too.
  [[nodiscard]] int label_column() const {
    int widest = 0;
    for (const LayoutItem& one : request_.items) {
      if (one.shape == Shape::Line) widest = std::max(widest, one.label_width);
    }
    return widest == 0 ? 0 : std::min(widest, width_ / 2) + metrics_.gap;
  }

  // Checks that stand behind lines begin below each other.
  [[nodiscard]] int check_column() const {
    int widest = 0;
    for (std::size_t i = 1; i < request_.items.size(); ++i) {
      if (is(i, Shape::Check) && is(i - 1, Shape::Line)) widest = std::max(widest, item(i).width);
    }
    return widest;
  }

  [[nodiscard]] int wanted_width(const Row& row) const {
    if (is(row.first, Shape::Line) && row.count == 2) {
      return item(row.first).width + metrics_.gap + check_column();
    }
    int width = -metrics_.gap;
    for (std::size_t i = 0; i < row.count; ++i)
      width += std::max(item(row.first + i).width, block_label_width(row.first + i)) + metrics_.gap;
    return width;
  }

  [[nodiscard]] int block_label_width(std::size_t index) const {
    return is(index, Shape::Block) ? item(index).label_width : 0;
  }

  // --- Heights ---

  [[nodiscard]] int weight(const Row& row) const {
    int most = 0;
    for (std::size_t i = 0; i < row.count; ++i) {
      if (is(row.first + i, Shape::Block)) most = std::max(most, item(row.first + i).weight);
    }
    return most;
  }

  [[nodiscard]] int row_height(const Row& row, int LayoutItem::*block_height) const {
    if (!is(row.first, Shape::Block)) return metrics_.line_height;
    int height = 0;
    for (std::size_t i = 0; i < row.count; ++i)
      height = std::max(height, item(row.first + i).*block_height);
    return label_height(row) + height;
  }

  // Above the blocks of the row, which begin below each other's labels.
  [[nodiscard]] int label_height(const Row& row) const {
    for (std::size_t i = 0; i < row.count; ++i) {
      if (block_label_width(row.first + i) > 0) return metrics_.label_height;
    }
    return 0;
  }

  // --- Items ---

  void place_row(const Row& row, int top, int height, Layout& layout) const {
    if (is(row.first, Shape::Block)) {
      place_blocks(row, top, height, layout);
    } else if (is(row.first, Shape::Check)) {
      layout.items[row.first].body = {metrics_.margin, top, std::min(item(row.first).width, width_),
                                      height};
    } else {
      place_line(row, top, height, layout);
    }
  }

  void place_line(const Row& row, int top, int height, Layout& layout) const {
    const LayoutItem& line = item(row.first);
    const int label = label_column();
    int width = width_ - label;
    if (row.count == 2) {
      width -= check_column() + metrics_.gap;
      layout.items[row.first + 1].body = {metrics_.margin + width_ - check_column(), top,
                                          check_column(), height};
    }
    if (!line.stretches) width = std::min(width, line.width);
    layout.items[row.first].label = {metrics_.margin, top, std::max(label - metrics_.gap, 0),
                                     height};
    layout.items[row.first].body = {metrics_.margin + label, top, std::max(width, 0), height};
  }

  void place_blocks(const Row& row, int top, int height, Layout& layout) const {
    int left = metrics_.margin;
    int spare = width_ - wanted_width(row);
    int wanted = wanted_width(row) - static_cast<int>(row.count - 1) * metrics_.gap;
    const int label = label_height(row);
    for (std::size_t i = row.first; i < row.first + row.count; ++i) {
      const int own = std::max(item(i).width, block_label_width(i));
      const bool is_last = i + 1 == row.first + row.count;
      const int share = is_last ? spare : spare * own / std::max(wanted, 1);
      const int width = std::max(own + share, 0);
      spare -= share;
      wanted -= own;
      layout.items[i].label = {left, top, width, label};
      layout.items[i].body = {left, top + label, width, height - label};
      left += width + metrics_.gap;
    }
  }

  // --- Buttons ---

  // The buttons of the place, in as many rows as they need.
  [[nodiscard]] std::vector<std::vector<std::size_t>> button_rows(ButtonPlace place) const {
    std::vector<std::vector<std::size_t>> rows;
    int used = 0;
    for (std::size_t i = 0; i < request_.buttons.size(); ++i) {
      if (request_.buttons[i].place != place) continue;
      const int width = request_.buttons[i].width + metrics_.gap;
      if (rows.empty() || used + width - metrics_.gap > width_) {
        rows.emplace_back();
        used = 0;
      }
      rows.back().push_back(i);
      used += width;
    }
    return rows;
  }

  // Of one row, without the gap behind it.
  [[nodiscard]] int buttons_width(ButtonPlace place) const {
    int width = 0;
    for (const LayoutButton& button : request_.buttons) {
      if (button.place == place) width += button.width + metrics_.gap;
    }
    return std::max(width - metrics_.gap, 0);
  }

  [[nodiscard]] int bottom_width() const {
    const int left = buttons_width(ButtonPlace::Bottom);
    const int right = buttons_width(ButtonPlace::Corner);
    return left + right + (left > 0 && right > 0 ? metrics_.gap : 0);
  }

  [[nodiscard]] bool bottom_is_one_row() const { return bottom_width() <= width_; }

  // With a gap for every row.
  [[nodiscard]] int buttons_height(ButtonPlace place) const {
    return static_cast<int>(button_rows(place).size()) * (metrics_.button_height + metrics_.gap);
  }

  [[nodiscard]] int bottom_height() const {
    const int left = buttons_height(ButtonPlace::Bottom);
    const int right = buttons_height(ButtonPlace::Corner);
    return bottom_is_one_row() ? std::max(left, right) : left + right;
  }

  // The top of what comes below them.
  int place_buttons(ButtonPlace place, int top, Layout& layout) const {
    for (const std::vector<std::size_t>& row : button_rows(place)) {
      int left = metrics_.margin;
      if (place == ButtonPlace::Corner) {
        left += width_;
        for (const std::size_t button : row)
          left -= request_.buttons[button].width + metrics_.gap;
        left = std::max(left + metrics_.gap, metrics_.margin);
      }
      for (const std::size_t button : row) {
        const int width = request_.buttons[button].width;
        layout.buttons[button] = {left, top, width, metrics_.button_height};
        left += width + metrics_.gap;
      }
      top += metrics_.button_height + metrics_.gap;
    }
    return top;
  }

  const LayoutRequest& request_;
  const LayoutMetrics& metrics_;
  int width_;  // between the margins
  std::vector<Row> rows_;
};

}  // namespace

Layout lay_out(const LayoutRequest& request, Size inside) {
  return Arrangement(request, inside.width).layout(inside.height);
}

Size preferred_size(const LayoutRequest& request) {
  const int width = Arrangement::preferred_width(request);
  return {width, Arrangement(request, width).height(&LayoutItem::wanted_height)};
}

}  // namespace korvel::windows
