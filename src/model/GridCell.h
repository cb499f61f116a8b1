// One cell of the logical page grid, counted from the top-left.
#pragma once

#include <QHashFunctions>

#include <functional>

namespace tw {

struct GridCell {
    int col = 0;
    int row = 0;

    bool operator==(const GridCell&) const = default;
};

inline size_t qHash(const GridCell& cell, size_t seed = 0) noexcept {
    return qHashMulti(seed, cell.col, cell.row);
}

} // namespace tw

template <>
struct std::hash<tw::GridCell> {
    size_t operator()(const tw::GridCell& cell) const noexcept { return tw::qHash(cell); }
};
