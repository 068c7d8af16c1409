#include "standalone/lottie/transform_writer.h"

#include <algorithm>

#include "standalone/lottie/fields.h"
#include "standalone/lottie/property_reader.h"
#include "standalone/lottie/property_text.h"

namespace jostle::standalone {

namespace {

template<class Record>
const Stream& streamOf(const Record& record, const Field<Record>& field) {
    return record.*std::get<Stream Record::*>(field.member);
}

std::string_view memberName(const Field<Transform>& field, const JsonMembers& members, bool threeD) {
    return field.name == "r" ? rotationMember(members, threeD) : field.name;
}

bool dimensionsChanged(const Transform& transform) {
    return transform.dimensions->x.changed || transform.dimensions->y.changed || transform.dimensions->z.changed;
}

std::string separatedText(const Transform& transform, const TextStyle& style) {
    std::string text = "{\"s\"" + style.colon + "true";
    for (const auto& field : dimensionFields) {
        const Stream& stream = streamOf(*transform.dimensions, field);
        if (field.name != "z" || stream.changed)
            text += style.comma + '"' + std::string(field.name) + '"' + style.colon +
                    propertyText(stream, field.form, style);
    }
    return text + '}';
}

void writePosition(PropertyWriter& properties, const Transform& transform, ObjectEdit& owner, TextEdits& edits) {
    const JsonValue position = owner.member("p");
    if (!transform.separated) {
        if (transform.position.changed && isSeparated(position))
            owner.set("p", propertyText(transform.position, FieldForm::Point, owner.style()));
        else
            properties.write(owner, "p", transform.position, FieldForm::Point, edits);
        return;
    }
    if (!dimensionsChanged(transform))
        return;
    if (!isSeparated(position)) {
        owner.set("p", separatedText(transform, owner.style()));
        return;
    }
    ObjectEdit inner(position, properties.style());
    inner.set("s", "true"); // some players refuse a 1
    inner.remove("sid");
    for (const auto& field : dimensionFields)
        properties.write(inner, field.name, streamOf(*transform.dimensions, field), field.form, edits);
    inner.commit(edits);
}

/// The members of a transform that is not there yet: all, or those changed.
ObjectText membersOf(const Layer& layer, const TextStyle& style, bool all) {
    const Transform& transform = layer.transform;
    ObjectText text(style);
    for (const auto& field : transformFields) {
        if (field.use != FieldUse::Write)
            continue;
        const Stream& stream = streamOf(transform, field);
        const bool skew = field.form == FieldForm::Single && field.name.front() == 's';
        if (field.name == "p" && transform.separated) {
            if (all || dimensionsChanged(transform))
                text.add("p", separatedText(transform, style));
        } else if (stream.changed || (all && !skew)) {
            text.add(memberName(field, JsonMembers({}), layer.threeD), propertyText(stream, field.form, style));
        }
    }
    return text;
}

} // namespace

bool isChanged(const Transform& transform) {
    const auto changed = [&](const auto& field) {
        return field.use == FieldUse::Write && streamOf(transform, field).changed;
    };
    return std::any_of(transformFields.begin(), transformFields.end(), changed) || dimensionsChanged(transform);
}

void writeTransform(PropertyWriter& properties, const Layer& layer, ObjectEdit& layerEdit, TextEdits& edits) {
    const Transform& transform = layer.transform;
    if (!isChanged(transform))
        return;
    const JsonValue object = layerEdit.member("ks");
    if (!object.isObject()) {
        TextStyle plain = layerEdit.style();
        plain.newline.clear();
        if (const ObjectText text = membersOf(layer, plain, false); !text.empty())
            layerEdit.set("ks", text.text());
        return;
    }
    ObjectEdit inner(object, properties.style());
    for (const auto& field : transformFields) {
        if (field.use != FieldUse::Write)
            continue;
        if (field.name == "p")
            writePosition(properties, transform, inner, edits);
        else
            properties.write(inner, memberName(field, inner.members(), layer.threeD), streamOf(transform, field),
                             field.form, edits);
    }
    inner.commit(edits);
}

std::string newTransformText(const Layer& layer, const TextStyle& style) {
    return membersOf(layer, style, true).text();
}

} // namespace jostle::standalone
