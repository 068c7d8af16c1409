#include "standalone/suites/path_edits.h"

#include <algorithm>
#include <cmath>

namespace jostle::standalone {

namespace {

void insertKey(PathStream& path, double frame, const PathValue& value) {
    const auto at = std::lower_bound(path.frames.begin(), path.frames.end(), frame);
    const auto place = at - path.frames.begin();
    if (at != path.frames.end() && *at == frame) {
        path.values[static_cast<std::size_t>(place)] = value;
        return;
    }
    path.frames.insert(at, frame);
    path.values.insert(path.values.begin() + place, value);
    if (path.segments.empty())
        return;
    // The segment that is cut in two becomes linear unless it holds: its handles were made for the whole.
    if (place > 0 && !path.segments[static_cast<std::size_t>(place - 1)].hold)
        path.segments[static_cast<std::size_t>(place - 1)] = KeySegment{};
    path.segments.insert(path.segments.begin() + place, KeySegment{});
}

} // namespace

A_long segmentCount(const PathValue& outline) {
    const auto vertices = static_cast<A_long>(outline.vertices.size());
    return outline.closed ? vertices : std::max(vertices - 1, 0);
}

std::optional<PathVertex> vertexAt(const PathValue& outline, A_long index) {
    const auto vertices = static_cast<A_long>(outline.vertices.size());
    if (vertices == 0 || index < 0 || index > segmentCount(outline))
        return std::nullopt;
    return outline.vertices[static_cast<std::size_t>(index % vertices)];
}

bool isFinite(const PathValue& outline) {
    return std::all_of(outline.vertices.begin(), outline.vertices.end(), [](const PathVertex& v) {
        return std::isfinite(v.x) && std::isfinite(v.y) && std::isfinite(v.inX) && std::isfinite(v.inY) &&
               std::isfinite(v.outX) && std::isfinite(v.outY);
    });
}

void setStaticPath(LayerEntry& entry, PathStream& path, const PathValue& value) {
    if (path.value == value)
        return;
    state().journal.touchPath(entry, path);
    path.value = value;
    path.changed = true;
}

void deleteKey(LayerEntry& entry, PathStream& path, std::size_t index) {
    state().journal.touchPath(entry, path);
    const auto place = static_cast<std::ptrdiff_t>(index);
    if (path.frames.size() == 1)
        path.value = path.values[index];
    path.frames.erase(path.frames.begin() + place);
    path.values.erase(path.values.begin() + place);
    if (!path.segments.empty())
        path.segments.erase(path.segments.begin() + place);
    path.changed = true;
}

void addKeys(LayerEntry& entry, PathStream& path, const std::vector<NewKey>& keys,
             const std::vector<PathValue>& values) {
    if (keys.empty())
        return;
    state().journal.touchPath(entry, path);
    for (std::size_t i = 0; i < keys.size(); ++i)
        insertKey(path, keys[i].frame, values[i]);
    path.changed = true;
}

} // namespace jostle::standalone
