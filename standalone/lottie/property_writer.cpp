#include "standalone/lottie/property_writer.h"

#include <utility>

#include "standalone/lottie/property_text.h"

namespace jostle::standalone {

namespace {

bool sameMotion(const Stream& a, const Stream& b) {
    return a.components == b.components && a.keys == b.keys && (!a.keys.empty() || a.value == b.value);
}

bool sameMotion(const PathStream& a, const PathStream& b) {
    return a.frames == b.frames && a.values == b.values && a.segments == b.segments &&
           (!a.frames.empty() || a.value == b.value);
}

/// Gives a property a value in place of what it has, and of what players would prefer to that.
void replaceValue(ObjectEdit& property, bool animated, TextPrinter value) {
    property.set("a", animated ? "1" : "0");
    property.setPrinted("k", std::move(value));
    for (const auto& field : propertyFields) {
        if (field.use == FieldUse::Remove)
            property.remove(field.name);
    }
}

/// Whether a property's own text rests: neither keys nor a slot that may hold some.
bool isPlainlyAtRest(const ObjectEdit& property) {
    const JsonValue value = property.member("k");
    const bool resting = value.type() == JsonType::Number || (value.isArray() && !value.firstChild());
    return resting && !property.member("sid");
}

/// Whether the property's expression is to go.
bool losesExpression(const ObjectEdit& property, bool had, bool has) {
    return had && !has && property.member("x");
}

} // namespace

PropertyWriter::PropertyWriter(const LottieSource& source)
    : source_{source},
      rules_{formatRules(source.tree.root())},
      style_{styleOf(source.tree.root())},
      properties_{source.tree.root()["slots"]} {}

void PropertyWriter::write(ObjectEdit& owner, std::string_view name, const Stream& stream, FieldForm form,
                           TextEdits& edits) {
    if (!stream.changed)
        return;
    const JsonValue property = owner.member(name);
    if (!property.isObject()) {
        owner.set(name, propertyText(stream, form, owner.style()));
        return;
    }
    ObjectEdit edit(property, style_);
    const bool enabled = stream.hasExpression && stream.expressionEnabled;
    // Of motion that is made for what rested, as most is, the text need not be read to see that it is another.
    const bool isOther = !stream.keys.empty() && isPlainlyAtRest(edit);
    const Stream before = isOther ? Stream{} : properties_.stream(property, form);
    if (!isOther && sameMotion(before, stream) && (!before.hasExpression || enabled || edit.member("x"))) {
        if (losesExpression(edit, before.hasExpression, enabled))
            edit.remove("x");
    } else {
        replaceValue(edit, isAnimated(stream), [this, &stream, form, style = edit.style()](TextSink& out) {
            printValue(stream, form, style, keyTexts_, out);
        });
    }
    edit.commit(edits);
}

void PropertyWriter::write(ObjectEdit& owner, std::string_view name, const PathStream& path,
                           std::string_view closedName, TextEdits& edits) {
    if (!path.changed)
        return;
    const JsonValue property = owner.member(name);
    const bool closed = path.values.empty() ? path.value.closed : path.values.front().closed;
    if (rules_.closedOutside)
        owner.set(closedName, closed ? "true" : "false");
    if (!property.isObject()) {
        owner.set(name, pathPropertyText(path, rules_, owner.style()));
        return;
    }
    ObjectEdit edit(property, style_);
    const JsonValue flag = owner.member(closedName);
    const bool outside = rules_.closedOutside && flag;
    const PathStream before =
        properties_.path(property, rules_, outside ? std::optional<bool>{flag.flag()} : std::optional<bool>{});
    const bool enabled = path.hasExpression && path.expressionEnabled;
    if (sameMotion(before, path) && (!before.hasExpression || enabled || edit.member("x"))) {
        if (losesExpression(edit, before.hasExpression, enabled))
            edit.remove("x");
    } else {
        replaceValue(edit, path.frames.size() > 1,
                     [text = pathValueText(path, rules_, edit.style())](TextSink& out) { out.write(text); });
    }
    edit.commit(edits);
}

} // namespace jostle::standalone
