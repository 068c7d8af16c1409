#include "standalone/lottie/writer.h"

#include <algorithm>
#include <set>

#include "standalone/lottie/fields.h"
#include "standalone/lottie/json_string.h"
#include "standalone/lottie/number_text.h"
#include "standalone/lottie/property_reader.h"
#include "standalone/lottie/property_text.h"
#include "standalone/lottie/splice.h"

namespace jostle::standalone {

namespace {

std::string numberText(double number) {
    std::string text;
    appendShortest(text, number);
    return text;
}

bool sameMotion(const Stream& a, const Stream& b) {
    return a.components == b.components && a.keys == b.keys && (!a.keys.empty() || a.value == b.value);
}

class DocumentWriter {
public:
    DocumentWriter(const LottieSource& source, const Composition& composition)
        : source_{source},
          composition_{composition},
          root_{source.tree.root()},
          style_{styleOf(root_)},
          properties_{root_["slots"]} {
        for (const auto& layer : composition.layers) {
            if (layer->changed && layer->parent && !layer->parent->idInFile)
                needsId_.insert(layer->parent);
        }
    }

    [[nodiscard]] std::string write() {
        if (composition_.changed)
            writeComposition();
        for (const auto& layer : composition_.layers) {
            const JsonValue object = source_.tree.valueAt(layer->source);
            if (object.isObject())
                writeLayer(*layer, object);
        }
        return edits_.empty() ? source_.text : edits_.applied(source_.text);
    }

private:
    void writeComposition() {
        ObjectEdit root(root_, style_);
        DocumentMembers members;
        readFields(documentFields, root_, members);
        if (composition_.item && composition_.item->name != members.name.string())
            root.set("nm", quoted(composition_.item->name));
        if (composition_.inFrame != FrameClock::snap(members.inFrame.number(0)))
            root.set("ip", numberText(composition_.inFrame));
        if (composition_.outFrame != FrameClock::snap(members.outFrame.number(0)))
            root.set("op", numberText(composition_.outFrame));
        writeDuration(root, members.extension);
        root.commit(edits_);
    }

    // The format knows no end but that of what is shown: a length is told where it goes on after that.
    void writeDuration(ObjectEdit& root, const JsonValue& extension) {
        const double present = FrameClock::snap(extension["duration"].number(0));
        if (composition_.durationFrames <= composition_.outFrame || composition_.durationFrames == present)
            return;
        const std::string duration = numberText(composition_.durationFrames);
        if (extension.isObject()) {
            ObjectEdit edit(extension, style_);
            edit.set("duration", duration);
            edit.commit(edits_);
        } else {
            root.set("jostle", "{\"version\"" + style_.colon + '1' + style_.comma + "\"duration\"" + style_.colon +
                                   duration + '}');
        }
    }

    void writeLayer(const Layer& layer, const JsonValue& object) {
        ObjectEdit edit(object, style_);
        if (layer.changed)
            writeFlags(layer, edit);
        if (layer.changed || motionChanged(layer.transform))
            writeParent(layer, edit);
        if (needsId_.count(&layer) > 0)
            edit.set("ind", std::to_string(layer.id));
        writeTransform(layer, edit);
        edit.commit(edits_);
    }

    static bool motionChanged(const Transform& transform) {
        const auto changed = [&](const auto& field) {
            return field.use == FieldUse::Write && (transform.*std::get<Stream Transform::*>(field.member)).changed;
        };
        return std::any_of(transformFields.begin(), transformFields.end(), changed) ||
               std::any_of(dimensionFields.begin(), dimensionFields.end(), changed);
    }

    static void writeFlags(const Layer& layer, ObjectEdit& edit) {
        Layer before;
        readFields(layerFields, edit.object(), before);
        for (const auto& field : layerFields) {
            if (field.use != FieldUse::Write)
                continue;
            const bool value = layer.*std::get<bool Layer::*>(field.member);
            if (value == before.*std::get<bool Layer::*>(field.member))
                continue;
            const bool digit = field.form == FieldForm::ZeroOne;
            edit.set(field.name, digit ? (value ? "1" : "0") : (value ? "true" : "false"));
        }
    }

    // Also of a layer whose motion alone has changed: that was made without the parent which the file names but the
    // reader dropped, as one of a ring or one that is not there.
    static void writeParent(const Layer& layer, ObjectEdit& edit) {
        if (!layer.parent)
            edit.remove("parent");
        else if (edit.object()["parent"].integer(noParent) != layer.parent->id)
            edit.set("parent", std::to_string(layer.parent->id));
    }

    void writeTransform(const Layer& layer, ObjectEdit& edit) {
        const Transform& transform = layer.transform;
        const JsonValue object = edit.object()["ks"];
        if (!object.isObject()) {
            const std::string members = newTransform(layer, edit.style());
            if (!members.empty())
                edit.set("ks", '{' + members + '}');
            return;
        }
        ObjectEdit inner(object, style_);
        for (const auto& field : transformFields) {
            if (field.use != FieldUse::Write)
                continue;
            if (field.name == "p")
                writePosition(transform, inner);
            else
                writeStream(inner, memberName(field, object, layer.threeD),
                            transform.*std::get<Stream Transform::*>(field.member), field.form);
        }
        inner.commit(edits_);
    }

    static std::string_view memberName(const Field<Transform>& field, const JsonValue& object, bool threeD) {
        return field.name == "r" ? rotationMember(object, threeD) : field.name;
    }

    static bool dimensionsChanged(const Transform& transform) {
        return transform.positionX.changed || transform.positionY.changed || transform.positionZ.changed;
    }

    void writePosition(const Transform& transform, ObjectEdit& edit) {
        const JsonValue position = edit.object()["p"];
        if (!transform.separated) {
            if (transform.position.changed && isSeparated(position))
                edit.set("p", propertyText(transform.position, FieldForm::Point, edit.style()));
            else
                writeStream(edit, "p", transform.position, FieldForm::Point);
            return;
        }
        if (!dimensionsChanged(transform))
            return;
        if (!isSeparated(position)) {
            edit.set("p", separatedText(transform, edit.style()));
            return;
        }
        ObjectEdit inner(position, style_);
        inner.set("s", "true"); // some players refuse a 1
        inner.remove("sid");
        for (const auto& field : dimensionFields)
            writeStream(inner, field.name, transform.*std::get<Stream Transform::*>(field.member), field.form);
        inner.commit(edits_);
    }

    static std::string separatedText(const Transform& transform, const TextStyle& style) {
        std::string text = "{\"s\"" + style.colon + "true";
        for (const auto& field : dimensionFields) {
            const Stream& stream = transform.*std::get<Stream Transform::*>(field.member);
            if (field.name != "z" || stream.changed)
                text += style.comma + '"' + std::string(field.name) + '"' + style.colon +
                        propertyText(stream, field.form, style);
        }
        return text + '}';
    }

    /// The members of a transform that the layer does not have yet: those changed.
    static std::string newTransform(const Layer& layer, const TextStyle& style) {
        std::string text;
        const auto add = [&](std::string_view name, const std::string& value) {
            text += (text.empty() ? "" : style.comma) + '"' + std::string(name) + '"' + style.colon + value;
        };
        for (const auto& field : transformFields) {
            if (field.use != FieldUse::Write)
                continue;
            const Stream& stream = layer.transform.*std::get<Stream Transform::*>(field.member);
            if (field.name == "p" && layer.transform.separated) {
                if (dimensionsChanged(layer.transform))
                    add("p", separatedText(layer.transform, style));
            } else if (stream.changed) {
                add(memberName(field, {}, layer.threeD), propertyText(stream, field.form, style));
            }
        }
        return text;
    }

    void writeStream(ObjectEdit& owner, std::string_view name, const Stream& stream, FieldForm form) {
        if (!stream.changed)
            return;
        const JsonValue property = owner.object()[name];
        if (!property.isObject()) {
            owner.set(name, propertyText(stream, form, owner.style()));
            return;
        }
        ObjectEdit edit(property, style_);
        const Stream before = properties_.stream(property, form);
        const bool disabled = before.hasExpression && !(stream.hasExpression && stream.expressionEnabled);
        if (sameMotion(before, stream) && (!disabled || property["x"])) {
            if (disabled)
                edit.remove("x");
        } else {
            edit.set("a", isAnimated(stream) ? "1" : "0");
            edit.set("k", valueText(stream, form, edit.style()));
            for (const auto& field : propertyFields) {
                if (field.use == FieldUse::Remove)
                    edit.remove(field.name);
            }
        }
        edit.commit(edits_);
    }

    static std::string quoted(const std::string& text) {
        std::string out;
        appendQuoted(out, text);
        return out;
    }

    const LottieSource& source_;
    const Composition& composition_;
    JsonValue root_;
    TextStyle style_;
    PropertyReader properties_;
    TextEdits edits_;
    std::set<const Layer*> needsId_;
};

} // namespace

std::string writeLottie(const LottieSource& source, const Composition& composition) {
    return DocumentWriter(source, composition).write();
}

} // namespace jostle::standalone
