#include "custom/CustomSourceState.h"

#include <algorithm>

namespace tw {

std::optional<CustomSourceState> CustomSourceState::merged(const QList<CustomSourceState>& states) {
    if (states.isEmpty()) {
        return std::nullopt;
    }
    if (states.size() == 1) {
        return states.first();
    }
    CustomSourceState merged;
    for (const CustomSourceState& state : states) {
        if (!merged.json) {
            merged.json = state.json;
        }
        if (!merged.error) {
            merged.error = state.error;
        }
        merged.loading = merged.loading || state.loading;
        if (state.fetchedAt && (!merged.fetchedAt || *state.fetchedAt > *merged.fetchedAt)) {
            merged.fetchedAt = state.fetchedAt;
        }
    }
    return merged;
}

} // namespace tw
