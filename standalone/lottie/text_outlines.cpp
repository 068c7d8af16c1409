#include "standalone/lottie/text_outlines.h"

#include <algorithm>
#include <cmath>

#include "standalone/document/frame_clock.h"
#include "standalone/document/printable.h"
#include "standalone/lottie/glyphs_in_file.h"
#include "standalone/lottie/glyphs_of_font.h"

namespace jostle::standalone {

namespace {

/// A number of a text, no farther from 0 than the limit.
double bounded(const JsonValue& value, double fallback) {
    return std::clamp(value.number(fallback), -textNumberLimit, textNumberLimit);
}

JsonValue throughSlot(const JsonValue& slots, const JsonValue& property) {
    const JsonValue name = property["sid"];
    if (name.type() != JsonType::String)
        return property;
    const JsonValue slotted = slots[name.string()]["p"];
    return slotted.isObject() ? slotted : property;
}

/// The object with the members of the text document. Old files have it in place of the list of its keys.
JsonValue documentAt(const JsonValue& property, double frame) {
    const JsonValue keys = property["k"];
    if (!keys.isArray())
        return keys["s"].isObject() ? keys["s"] : keys.isObject() ? keys : property;
    JsonValue first, found;
    double firstFrame = 0, foundFrame = 0;
    forEachChild(keys, [&](const JsonValue& key) {
        if (!key["s"].isObject())
            return;
        const double start = FrameClock::snap(key["t"].number(0));
        if (!first || start < firstFrame) {
            first = key["s"];
            firstFrame = start;
        }
        // Of several at one frame the later counts.
        if (start <= frame && (!found || start >= foundFrame)) {
            found = key["s"];
            foundFrame = start;
        }
    });
    return found ? found : first;
}

TextDocument::Justification justificationFrom(int number) {
    switch (number) {
    case 1:
        return TextDocument::Justification::Right;
    case 2:
        return TextDocument::Justification::Centre;
    default:
        return TextDocument::Justification::Left; // justified ones too
    }
}

/// Cuts a text of valid UTF-8 to so many bytes, at a character's end.
void cut(std::string& text, std::size_t most) {
    if (text.size() <= most)
        return;
    while (most > 0 && (static_cast<unsigned char>(text[most]) & 0xC0U) == 0x80U)
        --most;
    text.resize(most);
}

JsonValue fontNamed(const JsonValue& list, std::string_view name) {
    JsonValue first, found;
    if (!list.isArray())
        return first;
    forEachChild(list, [&](const JsonValue& font) {
        if (!first)
            first = font;
        if (!found && font["fName"].string() == name)
            found = font;
    });
    return found ? found : first;
}

/// How messages name a layer: by its place from 1, and its name if it has one.
std::string titleOf(const JsonValue& root, const JsonValue& layerObject) {
    std::size_t number = 0, place = 0;
    forEachChild(root["layers"], [&](const JsonValue& layer) {
        ++place;
        if (layer.span().begin == layerObject.span().begin)
            number = place;
    });
    std::string title = number > 0 ? "layer " + std::to_string(number) : "layer";
    const std::string name = layerObject["nm"].string();
    return name.empty() ? title : title + " \"" + printable(name) + '"';
}

std::string quoted(std::string_view name) {
    return '"' + printable(name) + '"';
}

/// What a person calls the font of a request.
std::string titleOf(const FontRequest& request) {
    if (request.family.empty())
        return request.name;
    return request.family + (request.style.empty() ? "" : " ") + request.style;
}

/// One reading of a layer's outlines.
class OutlineReader {
public:
    OutlineReader(const JsonValue& root, const JsonValue& layerObject) : root_{root}, layer_{layerObject} {}

    [[nodiscard]] TextOutlines read(double frame, FontLibrary* fonts) {
        const JsonValue text = layer_["t"]["d"];
        const std::size_t written = documentAt(throughSlot(root_["slots"], text), frame)["t"].text().size();
        document_ = readTextDocument(root_["slots"], layer_, frame);
        if (document_.text.empty() || !(document_.size > 0))
            return std::move(result_);
        if (document_.text.size() + 4 > mostTextBytes && written > mostTextBytes)
            note("only the first " + std::to_string(document_.text.size()) + " bytes are laid out");
        const JsonValue font = fontNamed(root_["fonts"]["list"], document_.font);
        if (root_["chars"].firstChild()) {
            GlyphsInFile glyphs(root_, font);
            result_.outlines = layOut(document_, glyphs);
        } else {
            readFromFont(font, fonts ? *fonts : FontLibrary::installed());
        }
        return std::move(result_);
    }

private:
    void readFromFont(const JsonValue& font, FontLibrary& fonts) {
        FontRequest request{font["fFamily"].string(), font["fStyle"].string(), font["fName"].string()};
        if (!font)
            request.family = document_.font;
        FontChoice& choice = fonts.choose(request);
        if (!choice) {
            note("no font is installed, so it has no outlines; install one, or export the file with glyphs");
            return;
        }
        const std::string asked = titleOf(request), taken = choice.title(0);
        if (asked.empty())
            note("the file names no font; " + quoted(taken) + " is used");
        else if (!choice.isExact())
            note("font " + quoted(asked) + " is not installed; " + quoted(taken) + " is used in its place");
        const ShapingStyle style{document_.tracking == 0, document_.smallCapitals};
        GlyphsOfFont glyphs(choice, style, bounded(font["ascent"], 0));
        result_.outlines = layOut(document_, glyphs);
        for (const std::size_t place : glyphs.borrowed())
            note("font " + quoted(taken) + " lacks some of its characters; " + quoted(choice.title(place)) +
                 " is used for them");
        if (glyphs.lacksCharacters())
            note("some of its characters are in no installed font and have no outline");
    }

    void note(const std::string& message) {
        result_.notes.push_back("Text of " + titleOf(root_, layer_) + ": " + message);
    }

    const JsonValue& root_;
    const JsonValue& layer_;
    TextDocument document_;
    TextOutlines result_;
};

} // namespace

TextDocument readTextDocument(const JsonValue& slots, const JsonValue& layerObject, double frame) {
    const JsonValue object = documentAt(throughSlot(slots, layerObject["t"]["d"]), frame);
    TextDocument document;
    document.text = object["t"].string();
    cut(document.text, mostTextBytes);
    document.font = object["f"].string();
    document.size = bounded(object["s"], 0);
    document.justification = justificationFrom(object["j"].integer(0));
    document.tracking = bounded(object["tr"], 0) * document.size / 1000;
    document.lineHeight = bounded(object["lh"], 0);
    if (document.lineHeight == 0)
        document.lineHeight = 1.2 * document.size;
    document.baselineShift = bounded(object["ls"], 0);
    document.smallCapitals = object["ca"].integer(0) == 2;
    double size[2], place[2] = {0, 0};
    if (object["sz"].numbers(size, 2) == 2) {
        object["ps"].numbers(place, 2);
        for (double* number : {&size[0], &place[0], &place[1]})
            *number = std::clamp(*number, -textNumberLimit, textNumberLimit);
        document.box = TextBox{place[0], place[1], size[0]};
    }
    return document;
}

TextOutlines readTextOutlines(const JsonValue& root, const JsonValue& layerObject, double frame) {
    return OutlineReader(root, layerObject).read(frame, nullptr);
}

TextOutlines readTextOutlines(const JsonValue& root, const JsonValue& layerObject, double frame, FontLibrary& fonts) {
    return OutlineReader(root, layerObject).read(frame, &fonts);
}

} // namespace jostle::standalone
