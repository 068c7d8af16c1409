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

/// What a property is that is not there.
void setMissing(Stream& stream, FieldForm form) {
    stream.components = propertyFacts(form).missing;
    stream.value = {};
    std::fill_n(stream.value.begin(), stream.components, propertyFacts(form).fallback);
}

std::string_view rotationMember(const JsonValue& flat, const JsonValue& deep, bool threeD) {
    return deep.isObject() || (threeD && !flat.isObject()) ? "rz" : "r";
}

bool skip(std::string_view& text, std::string_view beginning) {
    if (text.substr(0, beginning.size()) != beginning)
        return false;
    text.remove_prefix(beginning.size());
    return true;
}

/// The numbers of a property that is just `{"a":0,"k":[1,2]}` or `{"a":0,"k":1}`, maybe with the index that one of the
/// exporters adds. Most are, and are read so in a fraction of the time.
/// @param values  in which some may be stored of any other property too
/// @return how many were stored, at most `most`; 0 of any other property and of numbers beyond the limit
std::size_t readPlain(std::string_view text, double* values, std::size_t most) {
    if (!skip(text, R"({"a":0,"k":)"))
        return 0;
    const bool isArray = skip(text, "[");
    std::size_t count = 0;
    do {
        const char next = text.empty() ? '\0' : text.front();
        if (next != '-' && (next < '0' || next > '9'))
            return 0;
        const char* end = nullptr;
        const double number = readJsonNumber(text.data(), text.data() + text.size(), end);
        if (count < most) {
            if (!(std::abs(number) <= transformNumberLimit))
                return 0;
            values[count++] = number;
        }
        text.remove_prefix(static_cast<std::size_t>(end - text.data()));
    } while (isArray && skip(text, ","));
    if (isArray && !skip(text, "]"))
        return 0;
    if (skip(text, R"(,"ix":)"))
        text.remove_prefix(std::min(text.find_first_not_of("0123456789"), text.size()));
    return text == "}" ? count : 0;
}

Components trimmed(Components value, int components) {
    std::fill(value.begin() + components, value.end(), 0.0);
    return value;
}

} // namespace

bool isSeparated(const JsonValue& property) {
    // Nearly all properties have no object in them at all.
    return property.text().find('{', 1) != std::string_view::npos && property["x"].isObject();
}

std::string_view rotationMember(const JsonMembers& transform, bool threeD) {
    return rotationMember(transform["r"], transform["rz"], threeD);
}

PropertyReader::PropertyReader(const JsonValue& slots) {
    if (!slots.isObject())
        return;
    std::map<std::string, JsonValue, std::less<>> found;
    forEachChild(slots, [&](const JsonValue& slot) {
        if (const JsonValue property = slot["p"]; property.isObject())
            found[slot.key()] = property;
    });
    if (found.empty())
        return;
    slotBytes_ = std::make_shared<std::size_t>(0);
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

JsonValue PropertyReader::taken(const JsonValue& property) {
    const JsonValue value = resolved(property);
    if (value.span().begin == property.span().begin)
        return value;
    if (!isOverSlotLimit())
        *slotBytes_ += value.span().end - value.span().begin;
    if (!isOverSlotLimit())
        return value;
    if (!fault_)
        fault_ = property;
    return {};
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

    [[nodiscard]] int components() const { return stream_.components; }

    /// @param start, end  null if the key has none
    void add(double frame, const Components* start, const Components* end, const KeySegment& segment) {
        const Components before = start_;
        if (start)
            start_ = trimmed(*start, stream_.components);
        else if (keys_.empty())
            start_ = trimmed(padding_, stream_.components);
        else if (!hold_ && hasEnd_)
            start_ = end_;
        hasEnd_ = end != nullptr;
        if (end)
            end_ = trimmed(*end, stream_.components);
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
    Components end_{};
    bool hasEnd_ = false;
    bool hold_ = false;
    bool segmented_ = false; ///< linear keys need none
};

void PropertyReader::readKeys(const JsonValue& list, FieldForm form, Stream& stream) {
    std::size_t count = 0, given = 0;
    double unused[3];
    forEachChild(list, [&](const JsonValue& object) {
        if (!object.isObject())
            return;
        if (++count == 1)
            given = std::max(object["s"].numbers(unused, 3), object["e"].numbers(unused, 3));
    });
    stream.components = componentsFor(form, given);
    if (readKeysInOrder(list, form, count, stream))
        return;
    // Keys out of order, or not all with as many components as the first.
    std::vector<std::pair<double, JsonValue>> keys;
    forEachChild(list, [&](const JsonValue& object) {
        if (!object.isObject())
            return;
        keys.emplace_back(frameOf(object["t"]), object);
        given = std::max({given, object["s"].numbers(unused, 3), object["e"].numbers(unused, 3)});
    });
    std::stable_sort(keys.begin(), keys.end(), [](const auto& a, const auto& b) { return a.first < b.first; });
    stream.keys = {};
    stream.components = componentsFor(form, given);
    TrackBuilder track(stream, form, count);
    for (const auto& [frame, object] : keys) {
        KeyframeMembers members;
        readFields(keyframeFields, object, members);
        addKey(members, frame, form, track);
    }
}

bool PropertyReader::readKeysInOrder(const JsonValue& list, FieldForm form, std::size_t count, Stream& stream) {
    TrackBuilder track(stream, form, count);
    double last = -std::numeric_limits<double>::infinity();
    for (JsonValue object = list.firstChild(); object; object = object.nextSibling(list)) {
        if (!object.isObject())
            continue;
        KeyframeMembers members;
        readFields(keyframeFields, object, members);
        const double frame = frameOf(members.time);
        const auto given = static_cast<std::size_t>(addKey(members, frame, form, track));
        if (frame < last || (given > 0 && componentsFor(form, given) > stream.components))
            return false;
        last = frame;
    }
    return true;
}

int PropertyReader::addKey(const KeyframeMembers& members, double frame, FieldForm form, TrackBuilder& track) {
    Components start = defaultValue(form), end = start;
    const std::size_t startCount = take(members.start, start.data(), 3), endCount = take(members.end, end.data(), 3);
    track.add(frame, startCount > 0 ? &start : nullptr, endCount > 0 ? &end : nullptr,
              segment(members, form, track.components()));
    return static_cast<int>(std::max(startCount, endCount));
}

Stream PropertyReader::stream(const JsonValue& property, FieldForm form) {
    Stream stream;
    stream.source = property.span();
    const auto hold = [&](const Components& value, std::size_t given) {
        stream.components = componentsFor(form, given);
        stream.value = trimmed(value, stream.components);
    };
    const auto most = static_cast<std::size_t>(propertyFacts(form).most);
    Components value = defaultValue(form);
    if (const std::size_t given = readPlain(property.text(), value.data(), most); given > 0) {
        hold(value, given);
        return stream;
    }
    value = defaultValue(form);
    hold(value, 0);
    PropertyMembers members;
    readFields(propertyFields, taken(property), members);
    stream.hasExpression = stream.expressionEnabled = members.expression.type() == JsonType::String;

    if (members.value.firstChild().isObject() && members.value.isArray()) {
        readKeys(members.value, form, stream);
        std::copy_n(stream.keys.values.begin(), stream.components, stream.value.begin());
        stream.value = trimmed(stream.value, stream.components);
        return stream;
    }
    if (const std::size_t given = take(members.value, value.data(), most); given > 0)
        hold(value, given);
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
    const auto named = [&](std::string_view name) -> JsonValue& {
        std::size_t i = 0;
        while (transformFields[i].name != name)
            ++i;
        return members[i];
    };
    if (rotationMember(named("r"), named("rz"), threeD) == "rz")
        named("r") = named("rz");
    for (std::size_t i = 0; i < members.size(); ++i) {
        const auto& field = transformFields[i];
        if (field.use == FieldUse::Write && members[i])
            transform.*std::get<Stream Transform::*>(field.member) = stream(members[i], field.form);
        else if (field.use == FieldUse::Write)
            setMissing(transform.*std::get<Stream Transform::*>(field.member), field.form);
    }
    const JsonValue position = named("p");
    if (!isSeparated(resolved(position)))
        return transform;
    const JsonValue looked = taken(position);
    transform.separated = true;
    for (const auto& field : dimensionFields) {
        Stream& target = transform.dimensions.own().*std::get<Stream Dimensions::*>(field.member);
        target = stream(looked[field.name], field.form);
        // What a slot holds is shared, so it is never the place to write one layer's dimension to.
        if (looked.span().begin != position.span().begin)
            target.source = {};
    }
    return transform;
}

} // namespace jostle::standalone
