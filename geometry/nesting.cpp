// Outlines within outlines.
//
// A place inside a part, away from all outlines, lies in an odd number of the larger parts if the
// number of their edges to its right is odd. The places of the smaller half of the parts count the
// edges of the larger half, then each half is divided likewise; so an edge is looked at as often as
// the parts can be halved.
#include "geometry/nesting.h"

#include <algorithm>
#include <cstddef>
#include <iterator>
#include <numeric>
#include <optional>
#include <span>

namespace korvel {
namespace {

struct Edge {
  Point3 low;  // low.y < high.y
  Point3 high;

  [[nodiscard]] double x_at(double y) const {
    const double share = (y - low.y) / (high.y - low.y);
    return low.x + share * (high.x - low.x);
  }
};

struct Place {
  double x = 0;
  double y = 0;
  bool odd = false;  // the number of edges to the right, so far
};

struct Part {
  double size = 0;
  std::vector<Edge> edges{};  // but level ones
  std::optional<Place> inside{};
};

// Half way between the two neighbours among the values that are farthest apart.
std::optional<double> middle_of_widest_gap(std::vector<double>& values, std::size_t step) {
  std::ranges::sort(values);
  double widest = 0;
  std::optional<double> middle;
  for (std::size_t i = 1; i < values.size(); i += step) {
    const double gap = values[i] - values[i - 1];
    if (!(gap > widest)) continue;
    widest = gap;
    middle = std::midpoint(values[i - 1], values[i]);
  }
  return middle;
}

// None for a part that encloses nothing.
std::optional<Place> place_inside(const std::vector<Edge>& edges) {
  std::vector<double> heights;
  for (const Edge& edge : edges)
    heights.insert(heights.end(), {edge.low.y, edge.high.y});
  const std::optional<double> y = middle_of_widest_gap(heights, 1);
  if (!y) return std::nullopt;
  std::vector<double> crossings;
  for (const Edge& edge : edges) {
    if (edge.low.y <= *y && *y < edge.high.y) crossings.push_back(edge.x_at(*y));
  }
  const std::optional<double> x = middle_of_widest_gap(crossings, 2);  // from inside to outside
  return x ? std::optional(Place{*x, *y}) : std::nullopt;
}

std::vector<Part> parts_of(const Path& outlines, const std::vector<double>& sizes) {
  std::vector<Part> parts;
  parts.reserve(sizes.size());
  std::size_t first = 0;
  for (std::size_t i = 0; i < sizes.size(); ++i) {
    const bool is_last = i == outlines.later_parts.size();
    const std::size_t end = is_last ? outlines.points.size() : outlines.later_parts[i];
    Part& part = parts.emplace_back(Part{sizes[i]});
    for (std::size_t at = first; at < end; ++at) {
      const Point3& from = outlines.points[at];
      const Point3& to = outlines.points[at + 1 == end ? first : at + 1];
      if (from.y < to.y) part.edges.push_back({from, to});
      if (from.y > to.y) part.edges.push_back({to, from});
    }
    part.inside = place_inside(part.edges);
    first = end;
  }
  return parts;
}

// Counts, for places by rising y, the edges to their right. An edge that passes all of the places
// is sorted in among those that do, any other goes to the half of the places that it passes.
void count_to_the_right(std::span<Place* const> places, std::vector<const Edge*> edges) {
  if (places.empty() || edges.empty()) return;
  const double lowest = places.front()->y;
  const double highest = places.back()->y;
  const auto passes_all = [&](const Edge* edge) {
    return edge->low.y <= lowest && highest < edge->high.y;
  };
  const auto partial = std::partition(edges.begin(), edges.end(), passes_all);

  std::vector<double> crossings;
  for (auto edge = edges.begin(); edge != partial; ++edge)
    crossings.push_back((*edge)->x_at(std::midpoint(lowest, highest)));
  std::vector<std::size_t> order(crossings.size());
  std::iota(order.begin(), order.end(), std::size_t{0});
  std::ranges::sort(order, {}, [&](std::size_t i) { return crossings[i]; });
  for (Place* const place : places) {
    const auto is_left = [&](std::size_t i) { return !(edges[i]->x_at(place->y) > place->x); };
    const auto right = std::ranges::partition_point(order, is_left);
    if ((order.end() - right) % 2 != 0) place->odd = !place->odd;
  }

  if (places.size() == 1) return;
  edges.erase(edges.begin(), partial);
  const std::size_t half = places.size() / 2;
  for (const std::span<Place* const> some : {places.first(half), places.subspan(half)}) {
    std::vector<const Edge*> passing;
    std::ranges::copy_if(edges, std::back_inserter(passing), [&](const Edge* edge) {
      return edge->low.y <= some.back()->y && some.front()->y < edge->high.y;
    });
    count_to_the_right(some, std::move(passing));
  }
}

// The parts by falling size.
void count_larger(std::span<Part* const> parts) {
  if (parts.size() < 2) return;
  const std::size_t half = parts.size() / 2;
  const std::span<Part* const> larger = parts.first(half);
  const std::span<Part* const> smaller = parts.subspan(half);
  count_larger(larger);
  count_larger(smaller);

  std::vector<Place*> places;
  for (Part* const part : smaller) {
    if (part->inside) places.push_back(&*part->inside);
  }
  std::ranges::sort(places, {}, &Place::y);
  std::vector<const Edge*> edges;
  for (const Part* const part : larger) {
    for (const Edge& edge : part->edges)
      edges.push_back(&edge);
  }
  count_to_the_right(places, std::move(edges));
}

}  // namespace

std::vector<bool> parts_within_others(const Path& outlines, const std::vector<double>& sizes) {
  std::vector<Part> parts = parts_of(outlines, sizes);
  std::vector<Part*> by_size;
  for (Part& part : parts)
    by_size.push_back(&part);
  std::ranges::stable_sort(by_size, std::ranges::greater{}, &Part::size);
  count_larger(by_size);
  std::vector<bool> within;
  for (const Part& part : parts)
    within.push_back(part.inside && part.inside->odd);
  return within;
}

}  // namespace korvel
