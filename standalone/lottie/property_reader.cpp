#include "standalone/lottie/property_reader.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "standalone/document/frame_clock.h"

namespace jostle::standalone {

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

std::vector<JsonValue> PropertyReader::keysInOrder(const JsonValue& list) {
    std::vector<std::pair<double, JsonValue>> found;
    forEachChild(list, [&](const JsonValue& object) {
        if (object.isObject())
            found.emplace_back(frameOf(object["t"]), object);
    });
    std::stable_sort(found.begin(), found.end(), [](const auto& a, const auto& b) { return a.first < b.first; });
    std::vector<JsonValue> order;
    for (const auto& [frame, object] : found)
        order.push_back(object);
    return order;
}

double PropertyReader::frameOf(const JsonValue& time) {
    double frame = 0;
    take(time, &frame, time.isArray() ? 0 : 1);
    return FrameClock::snap(frame);
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
    segment.hold = members.hold.flag();
    if (propertyFacts(form).spatial) {
        const auto count = static_cast<std::size_t>(components);
        take(members.tangentOut, segment.outTangent.data(), count);
        take(members.tangentIn, segment.inTangent.data(), count);
        segment.spatial = segment.outTangent != Components{} || segment.inTangent != Components{};
    }
    return segment;
}

/// Builds the track of a stream key by key, in order of time. What a key leaves out comes from the one before it.
class PropertyReader::TrackBuilder {
public:
    TrackBuilder(Stream& stream, FieldForm form, std::size_t count)
        : stream_{stream}, keys_{stream.keys}, padding_{defaultValue(form)}, count_{count} {
        keys_.frames.reserve(count);
        keys_.values.reserve(count * static_cast<std::size_t>(stream.components));
    }

    void add(double frame, std::optional<Components> start, const std::optional<Components>& end,
             const KeySegment& segment) {
        if (!start)
            start = keys_.empty() ? padding_ : hold_ || !end_ ? start_ : *end_;
        const Components before = start_;
        start_ = trimmed(*start, stream_.components);
        end_ = end;
        if (end_)
            end_ = trimmed(*end_, stream_.components);
        hold_ = segment.hold;
        // Keys at one frame are one key: the last of them, but the segment before it ends at the value of the first.
        if (!keys_.empty() && keys_.frames.back() == frame) {
            takeBack();
            if (!keys_.empty() && before != start_) {
                needSegments();
                if (!keys_.segments.back().hasEnd) {
                    keys_.segments.back().hasEnd = true;
                    keys_.segments.back().end = before;
                }
            }
        }
        if (!segment.linear || segment.hold || segment.spatial)
            needSegments();
        keys_.frames.push_back(frame);
        keys_.values.insert(keys_.values.end(), start_.begin(), start_.begin() + stream_.components);
        if (segmented_)
            keys_.segments.push_back(segment);
    }

private:
    void takeBack() {
        keys_.frames.pop_back();
        keys_.values.resize(keys_.values.size() - static_cast<std::size_t>(stream_.components));
        if (segmented_)
            keys_.segments.pop_back();
    }

    void needSegments() {
        if (segmented_)
            return;
        segmented_ = true;
        keys_.segments.reserve(count_);
        keys_.segments.resize(keys_.size());
    }

    Stream& stream_;
    KeyTrack& keys_;
    Components padding_;
    std::size_t count_;
    Components start_{};
    std::optional<Components> end_;
    bool hold_ = false;
    bool segmented_ = false; ///< linear keys need none
};

std::optional<Components> PropertyReader::keyValue(const JsonValue& value, FieldForm form) {
    Components numbers = defaultValue(form);
    return take(value, numbers.data(), 3) > 0 ? std::optional{numbers} : std::nullopt;
}

void PropertyReader::readKeys(const JsonValue& list, FieldForm form, Stream& stream) {
    double last = -std::numeric_limits<double>::infinity();
    double unused[3];
    std::size_t given = 0, count = 0;
    bool sorted = true;
    forEachChild(list, [&](const JsonValue& object) {
        if (!object.isObject())
            return;
        KeyframeMembers members;
        readFields(keyframeFields, object, members);
        const double frame = frameOf(members.time);
        sorted = sorted && last <= frame;
        last = frame;
        given = std::max({given, members.start.numbers(unused, 3), members.end.numbers(unused, 3)});
        ++count;
    });
    stream.components = componentsFor(form, given);
    TrackBuilder track(stream, form, count);
    const auto add = [&](const JsonValue& object) {
        if (!object.isObject())
            return;
        KeyframeMembers members;
        readFields(keyframeFields, object, members);
        const auto start = keyValue(members.start, form), end = keyValue(members.end, form);
        track.add(frameOf(members.time), start, end, segment(members, form, stream.components));
    };
    if (sorted) {
        forEachChild(list, add);
    } else {
        for (const JsonValue& object : keysInOrder(list))
            add(object);
    }
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
        readKeys(members.value, form, stream);
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
    std::array<JsonValue, transformFields.size()> members;
    if (object.isObject()) {
        forEachChild(object, [&](const JsonValue& member) {
            if (const auto* field = findField(transformFields, member))
                members[static_cast<std::size_t>(field - transformFields.data())] = member;
        });
    }
    JsonValue position;
    for (std::size_t i = 0; i < members.size(); ++i) {
        const auto& field = transformFields[i];
        if (field.use != FieldUse::Write)
            continue;
        if (field.name == "p")
            position = members[i];
        auto& target = transform.*std::get<Stream Transform::*>(field.member);
        target = stream(field.name == "r" ? object[rotationMember(object, threeD)] : members[i], field.form);
    }
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
