#include "faces/LiquidRequest.h"

#include <cmath>

namespace tw {

namespace {

bool near(double a, double b) {
    return std::abs(a - b) <= 0.5;
}

} // namespace

bool operator==(const LiquidRequest& a, const LiquidRequest& b) {
    return a.identity == b.identity && a.params == b.params && near(a.source.x(), b.source.x()) &&
           near(a.source.y(), b.source.y()) && near(a.source.width(), b.source.width()) &&
           near(a.source.height(), b.source.height());
}

} // namespace tw
