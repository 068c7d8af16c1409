#include "editing/selection_model.h"

#include <algorithm>

namespace jostle {

bool SelectionModel::contains(std::int32_t body) const {
    return std::find(bodies_.begin(), bodies_.end(), body) != bodies_.end();
}

void SelectionModel::setBodies(const std::vector<std::int32_t>& bodies) {
    std::vector<std::int32_t> chosen;
    for (const std::int32_t body : bodies) {
        const bool isNew = std::find(chosen.begin(), chosen.end(), body) == chosen.end();
        if (isNew && body >= 0 && body < scene_.bodyCount()) {
            chosen.push_back(body);
        }
    }
    if (chosen != bodies_) {
        bodies_ = std::move(chosen);
        markBodies();
        emit changed();
    }
}

void SelectionModel::toggle(std::int32_t body) {
    std::vector<std::int32_t> chosen = bodies_;
    const auto found = std::find(chosen.begin(), chosen.end(), body);
    if (found != chosen.end()) {
        chosen.erase(found);
    } else {
        chosen.push_back(body);
    }
    setBodies(chosen);
}

void SelectionModel::markBodies() {
    for (const BodyRecord& record : scene_.bodies) {
        record.userData->selected = false;
    }
    for (const std::int32_t body : bodies_) {
        scene_.bodies[static_cast<std::size_t>(body)].userData->selected = true;
    }
}

} // namespace jostle
