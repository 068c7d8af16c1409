#include "standalone/suites/stream_edits.h"

#include <algorithm>
#include <cstring>

#include "standalone/document/evaluate.h"

namespace jostle::standalone {

namespace {

constexpr double missingDepthScale = 100; // percent

/// Streams that a file gives one component only take their second with the first change.
int storedComponents(const Stream& stream, int count) {
    return count > 1 && stream.keys.empty() ? std::max(stream.components, 2) : stream.components;
}

/// Appends one key of `from` to `to`. `segments` of `to` are kept only where `from` has them or `to` has begun to.
void appendKey(KeyTrack& to, const KeyTrack& from, std::size_t index, std::size_t components, bool withSegments) {
    to.frames.push_back(from.frames[index]);
    const auto first = from.values.begin() + static_cast<std::ptrdiff_t>(index * components);
    to.values.insert(to.values.end(), first, first + static_cast<std::ptrdiff_t>(components));
    if (withSegments)
        to.segments.push_back(from.segments.empty() ? KeySegment{} : from.segments[index]);
}

/// Brings a batch in order of time, of equal frames only the last given.
void putInOrder(std::vector<NewKey>& batch) {
    const auto doesNotRise = [](const NewKey& a, const NewKey& b) { return a.frame >= b.frame; };
    if (std::adjacent_find(batch.begin(), batch.end(), doesNotRise) == batch.end())
        return;
    std::stable_sort(batch.begin(), batch.end(), [](const NewKey& a, const NewKey& b) { return a.frame < b.frame; });
    // From behind, the last given of a frame is the first of its kind.
    const auto isSameFrame = [](const NewKey& a, const NewKey& b) { return a.frame == b.frame; };
    batch.erase(batch.begin(), std::unique(batch.rbegin(), batch.rend(), isSameFrame).base());
}

/// A batch as a track, with just the memory that it needs.
KeyTrack trackOf(const std::vector<NewKey>& batch, std::size_t components) {
    KeyTrack track;
    track.frames.resize(batch.size());
    track.values.resize(batch.size() * components);
    double* frame = track.frames.data();
    double* value = track.values.data();
    for (const NewKey& key : batch) {
        *frame++ = key.frame;
        for (std::size_t c = 0; c < components; ++c)
            *value++ = key.value[c];
    }
    return track;
}

/// Both tracks in one. A segment that a new key cuts in two becomes linear unless it holds: its handles were made
/// for the whole.
KeyTrack merged(const KeyTrack& old, const KeyTrack& added, std::size_t components) {
    const bool withSegments = !old.segments.empty();
    KeyTrack all;
    std::size_t i = 0;
    std::size_t k = 0;
    bool lastIsOld = false;
    while (i < old.size() || k < added.size()) {
        const bool takeOld = k == added.size() || (i < old.size() && old.frames[i] < added.frames[k]);
        if (takeOld) {
            appendKey(all, old, i++, components, withSegments);
        } else {
            if (i < old.size() && old.frames[i] == added.frames[k])
                ++i;
            if (withSegments && lastIsOld && !all.segments.back().hold)
                all.segments.back() = KeySegment{};
            appendKey(all, added, k++, components, withSegments);
        }
        lastIsOld = takeOld;
    }
    return all;
}

} // namespace

int suiteComponents(const TreeNode& leaf) {
    switch (factsOf(leaf).form) {
    case ValueForm::One:
        return 1;
    case ValueForm::Two:
    case ValueForm::TwoSpatial:
        return 2;
    case ValueForm::Three:
    case ValueForm::ThreeSpatial:
    case ValueForm::Color:
        return 3;
    default:
        return 0;
    }
}

Components leafValueAt(const Layer& layer, const TreeNode& leaf, double frame) {
    return leaf.kind == NodeKind::Position ? positionAt(layer.transform, frame) : valueAt(*leaf.stream, frame);
}

AEGP_StreamVal2 toSuiteValue(const TreeNode& leaf, const Components& value) {
    AEGP_StreamVal2 suiteValue{};
    if (factsOf(leaf).form == ValueForm::Color) {
        suiteValue.color = {1, value[0], value[1], value[2]};
        return suiteValue;
    }
    switch (suiteComponents(leaf)) {
    case 1:
        suiteValue.one_d = value[0];
        break;
    case 2:
        suiteValue.two_d = {value[0], value[1]};
        break;
    default: {
        const bool lacksDepth = leaf.kind == NodeKind::Scale && leaf.stream->components < 3;
        suiteValue.three_d = {value[0], value[1], lacksDepth ? missingDepthScale : value[2]};
    }
    }
    return suiteValue;
}

Components fromSuiteValue(const TreeNode& leaf, const AEGP_StreamVal2& value) {
    if (factsOf(leaf).form == ValueForm::Color)
        return {value.color.redF, value.color.greenF, value.color.blueF};
    switch (suiteComponents(leaf)) {
    case 1:
        return {value.one_d, 0, 0};
    case 2:
        return {value.two_d.x, value.two_d.y, 0};
    default:
        return {value.three_d.x, value.three_d.y, value.three_d.z};
    }
}

void setStaticValue(LayerEntry& entry, Stream& stream, int count, const Components& value) {
    const int components = storedComponents(stream, count);
    const int given = std::min(components, count);
    const std::size_t bytes = static_cast<std::size_t>(given) * sizeof(double);
    if (components == stream.components && std::memcmp(stream.value.data(), value.data(), bytes) == 0)
        return;
    state().journal.touchStream(entry, stream);
    stream.components = components;
    std::copy_n(value.begin(), given, stream.value.begin());
    stream.changed = true;
}

std::size_t keyComponents(const TreeNode& leaf) {
    return leaf.stream == nullptr ? 0 : static_cast<std::size_t>(storedComponents(*leaf.stream, suiteComponents(leaf)));
}

void deleteKey(LayerEntry& entry, Stream& stream, std::size_t index) {
    state().journal.touchStream(entry, stream);
    KeyTrack& keys = stream.keys;
    const auto components = static_cast<std::ptrdiff_t>(stream.components);
    const auto place = static_cast<std::ptrdiff_t>(index);
    const auto first = keys.values.begin() + place * components;
    if (keys.size() == 1) {
        stream.value = {};
        std::copy_n(first, components, stream.value.begin());
    }
    keys.values.erase(first, first + components);
    keys.frames.erase(keys.frames.begin() + place);
    if (!keys.segments.empty())
        keys.segments.erase(keys.segments.begin() + place);
    stream.changed = true;
}

void addKeys(LayerEntry& entry, const TreeNode& leaf, std::vector<NewKey>& batch) {
    if (batch.empty())
        return;
    Stream& stream = *leaf.stream;
    state().journal.touchStream(entry, stream);
    stream.components = storedComponents(stream, suiteComponents(leaf));
    const auto components = static_cast<std::size_t>(stream.components);
    putInOrder(batch);
    KeyTrack added = trackOf(batch, components);
    stream.keys = stream.keys.empty() ? std::move(added) : merged(stream.keys, added, components);
    stream.changed = true;
}

} // namespace jostle::standalone
