// Outlines of the format: lists of vertices and of tangents, alone or in keyframes.
#include <algorithm>
#include <array>

#include "standalone/document/frame_clock.h"
#include "standalone/lottie/property_reader.h"

namespace jostle::standalone {

namespace {

struct PathMembers {
    JsonValue vertices, in, out, closed;
};

constexpr std::array pathFields{
    Field<PathMembers>{"v", FieldUse::Read, FieldForm::Raw, &PathMembers::vertices},
    Field<PathMembers>{"i", FieldUse::Read, FieldForm::Raw, &PathMembers::in},
    Field<PathMembers>{"o", FieldUse::Read, FieldForm::Raw, &PathMembers::out},
    Field<PathMembers>{"c", FieldUse::Read, FieldForm::Raw, &PathMembers::closed},
};

struct Place {
    double x = 0, y = 0;
};

/// The two numbers of an entry, kept to what a path can hold; 0 for what is none.
Place placeFrom(const JsonValue& entry) {
    double numbers[2]{};
    entry.numbers(numbers, 2);
    for (double& number : numbers)
        number = std::clamp(number, -transformNumberLimit, transformNumberLimit);
    return {numbers[0], numbers[1]};
}

JsonValue firstEntry(const JsonValue& list) {
    return list.isArray() ? list.firstChild() : JsonValue{};
}

PathValue pathFrom(const JsonValue& object, const FormatRules& rules, std::optional<bool> closedOutside) {
    PathMembers members;
    readFields(pathFields, object, members);
    PathValue path;
    path.closed = closedOutside.value_or(members.closed.flag());
    JsonValue in = firstEntry(members.in), out = firstEntry(members.out);
    for (JsonValue entry = firstEntry(members.vertices); entry; entry = entry.nextSibling(members.vertices)) {
        const Place vertex = placeFrom(entry);
        const Place origin = rules.absoluteTangents ? vertex : Place{};
        const Place arrive = in ? placeFrom(in) : origin, leave = out ? placeFrom(out) : origin;
        path.vertices.push_back(
            {vertex.x, vertex.y, arrive.x - origin.x, arrive.y - origin.y, leave.x - origin.x, leave.y - origin.y});
        in = in ? in.nextSibling(members.in) : in;
        out = out ? out.nextSibling(members.out) : out;
    }
    path.vertices.shrink_to_fit();
    return path;
}

/// The path of a keyframe's value, which stands alone or in an array of one.
JsonValue pathObject(const JsonValue& value) {
    return value.isArray() ? value.firstChild() : value;
}

/// A keyframe as it stands in the file.
struct PathKey {
    double frame = 0;
    KeyframeMembers members;
};

} // namespace

PathStream PropertyReader::path(const JsonValue& property, const FormatRules& rules,
                                std::optional<bool> closedOutside) {
    PathStream stream;
    PropertyMembers members;
    readFields(propertyFields, taken(property), members);
    stream.hasExpression = stream.expressionEnabled = members.expression.type() == JsonType::String;
    if (!members.value.isArray()) {
        stream.value = pathFrom(members.value, rules, closedOutside);
        return stream;
    }
    std::vector<PathKey> keys;
    forEachChild(members.value, [&](const JsonValue& object) {
        PathKey key;
        readFields(keyframeFields, object, key.members);
        key.frame = frameOf(key.members.time);
        if (object.isObject())
            keys.push_back(key);
    });
    std::stable_sort(keys.begin(), keys.end(), [](const PathKey& a, const PathKey& b) { return a.frame < b.frame; });
    for (std::size_t i = 0; i < keys.size(); ++i) {
        JsonValue value = pathObject(keys[i].members.start);
        if (!value.isObject() && i > 0) {
            const KeyframeMembers& before = keys[i - 1].members;
            value = pathObject(before.end);
            if (before.hold.flag() || !value.isObject())
                value = {};
        }
        stream.frames.push_back(keys[i].frame);
        stream.values.push_back(value.isObject() || i == 0 ? pathFrom(value, rules, closedOutside)
                                                           : stream.values.back());
        stream.segments.push_back(segment(keys[i].members, FieldForm::Outline, 1));
    }
    if (!stream.values.empty())
        stream.value = stream.values.front();
    return stream;
}

} // namespace jostle::standalone
