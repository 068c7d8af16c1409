#include "standalone/lottie/key_texts.h"

#include "standalone/lottie/number_text.h"

namespace jostle::standalone {

namespace {

std::string indentText(const TextStyle& style) {
    return style.newline.empty() ? "" : style.newline + style.indent + style.unit;
}

/// What stands between two keys.
std::string betweenText(const TextStyle& style) {
    return style.newline.empty() ? style.comma : ',' + indentText(style);
}

std::string linearEasing(const TextStyle& style, bool plainHandles, std::size_t components) {
    const auto side = [&](std::string_view name, std::string_view number) {
        std::string numbers = plainHandles ? "" : "[";
        for (std::size_t c = 0; c < (plainHandles ? 1 : components); ++c)
            numbers.append(c > 0 ? style.comma : "").append(number);
        numbers += plainHandles ? "" : "]";
        return style.comma + nameText(name, style) + '{' + nameText("x", style) + numbers + style.comma +
               nameText("y", style) + numbers + '}';
    };
    return side("o", "0") + side("i", "1");
}

} // namespace

std::string nameText(std::string_view name, const TextStyle& style) {
    return '"' + std::string(name) + '"' + style.colon;
}

KeyTexts::KeyTexts(const TextStyle& style, bool plainHandles, std::size_t components)
    : easing{linearEasing(style, plainHandles, components)},
      begin{'[' + indentText(style) + '{' + nameText("t", style)},
      next{betweenText(style) + '{' + nameText("t", style)},
      middle{style.comma + nameText("s", style) + '['},
      comma{style.comma},
      linear{']' + easing + '}'},
      linearAndNext{']' + easing + '}' + betweenText(style) + '{' + nameText("t", style)},
      end{(style.newline.empty() ? "" : style.newline + style.indent) + ']'},
      most{begin.size() + next.size() + middle.size() + components * comma.size() + linearAndNext.size() +
           (components + 1) * numberTextRoom + FixedText::slack} {}

const KeyTexts& KeyTextsStore::find(const TextStyle& style, bool plainHandles, std::size_t components) {
    std::unique_ptr<Kept>& kept = kept_[plainHandles ? 1 : 0][components - 1];
    if (!kept || kept->style != style)
        kept = std::make_unique<Kept>(Kept{style, KeyTexts(style, plainHandles, components)});
    return kept->texts;
}

} // namespace jostle::standalone
