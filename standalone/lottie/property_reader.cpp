#include "standalone/lottie/property_reader.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "standalone/document/frame_clock.h"

namespace jostle::standalone {

/// A keyframe as it stands in the file.
struct PropertyReader::Key {
    double frame = 0;
    Components start{}, end{};
    int startCount = 0, endCount = 0; ///< components given, 0 if there is no such value
    bool hold = false;
    KeyframeMembers members;
};

namespace {

Components defaultValue(FieldForm form) {
    const double fallback = propertyFacts(form).fallback;
    return {fallback, fallback, fallback};
}

int componentsFor(FieldForm form, std::size_t given) {
    const PropertyFacts facts = propertyFacts(form);
    return given == 0 ? facts.missing : std::clamp(static_cast<int>(given), facts.least, facts.most);
}

Components trimmed(Components value, int components) {
    std::fill(value.begin() + components, value.end(), 0.0);
    return value;
}

} // namespace

bool isSeparated(const JsonValue& property) {
    return property["x"].isObject();
}

std::string_view rotationMember(const JsonValue& transform, bool threeD) {
    if (transform["rz"].isObject() || (threeD && !transform["r"].isObject()))
        return "rz";
    return "r";
}

PropertyReader::PropertyReader(const JsonValue& slots) {
    if (!slots.isObject())
        return;
    std::map<std::string, JsonValue, std::less<>> found;
    forEachChild(slots, [&](const JsonValue& slot) {
        if (const JsonValue property = slot["p"]; property.isObject())
            found[slot.key()] = property;
    });
    if (!found.empty())
        slots_ = std::make_shared<const decltype(found)>(std::move(found));
}

JsonValue PropertyReader::resolved(const JsonValue& property) const {
    if (!slots_ || !property.isObject())
        return property;
    const JsonValue name = property["sid"];
    if (name.type() != JsonType::String)
        return property;
    const auto found = slots_->find(name.string());
    return found == slots_->end() ? property : found->second;
}

std::size_t PropertyReader::take(const JsonValue& value, double* out, std::size_t most) {
    const std::size_t count = value.numbers(out, most);
    for (std::size_t i = 0; i < count; ++i) {
        if (std::abs(out[i]) <= transformNumberLimit)
            continue;
        if (!fault_)
            fault_ = value;
        out[i] = std::copysign(transformNumberLimit, out[i]);
    }
    return count;
}

bool PropertyReader::takeHandle(const JsonValue& handle, Components& x, Components& y) {
    if (!handle.isObject())
        return false;
    const std::size_t countX = take(handle["x"], x.data(), 3), countY = take(handle["y"], y.data(), 3);
    if (countX == 0 || countY == 0)
        return false;
    std::fill(x.begin() + static_cast<std::ptrdiff_t>(countX), x.end(), x[0]);
    std::fill(y.begin() + static_cast<std::ptrdiff_t>(countY), y.end(), y[0]);
    return true;
}

std::vector<PropertyReader::Key> PropertyReader::keys(const JsonValue& list) {
    std::vector<Key> result;
    forEachChild(list, [&](const JsonValue& object) {
        if (!object.isObject())
            return;
        Key key;
        readFields(keyframeFields, object, key.members);
        take(key.members.time, &key.frame, key.members.time.isArray() ? 0 : 1);
        key.frame = FrameClock::snap(key.frame);
        key.startCount = static_cast<int>(take(key.members.start, key.start.data(), 3));
        key.endCount = static_cast<int>(take(key.members.end, key.end.data(), 3));
        key.hold = key.members.hold.flag();
        result.push_back(key);
    });
    const auto earlier = [](const Key& a, const Key& b) { return a.frame < b.frame; };
    if (!std::is_sorted(result.begin(), result.end(), earlier))
        std::stable_sort(result.begin(), result.end(), earlier);
    return result;
}

KeySegment PropertyReader::segment(const KeyframeMembers& members, FieldForm form, int components) {
    KeySegment segment;
    const bool eased =
        takeHandle(members.easeOut, segment.outX, segment.outY) && takeHandle(members.easeIn, segment.inX, segment.inY);
    if (eased) {
        for (std::size_t c = 0; c < static_cast<std::size_t>(components); ++c) {
            if (segment.outX[c] != segment.outY[c] || segment.inX[c] != segment.inY[c])
                segment.linear = false;
        }
    }
    if (propertyFacts(form).spatial) {
        const auto count = static_cast<std::size_t>(components);
        take(members.tangentOut, segment.outTangent.data(), count);
        take(members.tangentIn, segment.inTangent.data(), count);
        segment.spatial = segment.outTangent != Components{} || segment.inTangent != Components{};
    }
    return segment;
}

// Keys at one frame are one key: the last of them, but the segment before them ends at the value of the first.
void PropertyReader::fillTrack(std::vector<Key>& keys, FieldForm form, Stream& stream) {
    const Components padding = defaultValue(form);
    for (std::size_t i = 0; i < keys.size(); ++i) {
        Key& key = keys[i];
        if (key.startCount > 0)
            std::copy(padding.begin() + key.startCount, padding.end(), key.start.begin() + key.startCount);
        else
            key.start = i == 0                                          ? padding
                        : keys[i - 1].hold || keys[i - 1].endCount == 0 ? keys[i - 1].start
                                                                        : keys[i - 1].end;
        std::copy(padding.begin() + key.endCount, padding.end(), key.end.begin() + key.endCount);
        key.start = trimmed(key.start, stream.components);
        key.end = trimmed(key.end, stream.components);
    }
    bool plain = true;
    for (std::size_t i = 0; i < keys.size(); ++i) {
        const Key& key = keys[i];
        KeySegment segment = this->segment(key.members, form, stream.components);
        segment.hold = key.hold;
        const bool leaps = !stream.keys.empty() && stream.keys.frames.back() == key.frame;
        if (leaps) {
            const Key& before = keys[i - 1];
            stream.keys.values.resize(stream.keys.values.size() - static_cast<std::size_t>(stream.components));
            stream.keys.frames.pop_back();
            stream.keys.segments.pop_back();
            if (!stream.keys.empty() && !stream.keys.segments.back().hasEnd && before.start != key.start) {
                stream.keys.segments.back().hasEnd = true;
                stream.keys.segments.back().end = before.start;
            }
        }
        plain = plain && !leaps && segment.linear && !segment.hold && !segment.spatial;
        stream.keys.frames.push_back(key.frame);
        stream.keys.values.insert(stream.keys.values.end(), key.start.begin(), key.start.begin() + stream.components);
        stream.keys.segments.push_back(segment);
    }
    if (plain)
        stream.keys.segments = {};
}

Stream PropertyReader::stream(const JsonValue& property, FieldForm form) {
    Stream stream;
    stream.source = property.span();
    stream.components = componentsFor(form, 0);
    stream.value = trimmed(defaultValue(form), stream.components);
    PropertyMembers members;
    readFields(propertyFields, resolved(property), members);
    stream.hasExpression = stream.expressionEnabled = members.expression.type() == JsonType::String;

    if (members.value.firstChild().isObject() && members.value.isArray()) {
        std::vector<Key> list = keys(members.value);
        int given = 0;
        for (const Key& key : list)
            given = std::max({given, key.startCount, key.endCount});
        stream.components = componentsFor(form, static_cast<std::size_t>(given));
        fillTrack(list, form, stream);
        std::copy_n(stream.keys.values.begin(), stream.components, stream.value.begin());
        stream.value = trimmed(stream.value, stream.components);
        return stream;
    }
    Components value = defaultValue(form);
    const std::size_t given = take(members.value, value.data(), static_cast<std::size_t>(propertyFacts(form).most));
    if (given > 0) {
        stream.components = componentsFor(form, given);
        stream.value = trimmed(value, stream.components);
    }
    return stream;
}

Transform PropertyReader::transform(const JsonValue& object, bool threeD) {
    Transform transform;
    transform.source = object.span();
    for (const auto& field : transformFields) {
        if (field.use != FieldUse::Write)
            continue;
        auto& target = transform.*std::get<Stream Transform::*>(field.member);
        target = stream(object[field.name == "r" ? rotationMember(object, threeD) : field.name], field.form);
    }
    const JsonValue position = object["p"];
    const JsonValue looked = resolved(position);
    if (!isSeparated(looked))
        return transform;
    transform.separated = true;
    for (const auto& field : dimensionFields) {
        auto& target = transform.*std::get<Stream Transform::*>(field.member);
        target = stream(looked[field.name], field.form);
        // What a slot holds is shared, so it is never the place to write one layer's dimension to.
        if (looked.span().begin != position.span().begin)
            target.source = {};
    }
    return transform;
}

} // namespace jostle::standalone
