#include <cmath>

#include "standalone/lottie/number_text.h"
#include "standalone/lottie/property_text.h"

namespace jostle::standalone {

namespace {

class PathPrinter {
public:
    PathPrinter(const PathStream& path, const FormatRules& rules, const TextStyle& style)
        : path_{path}, rules_{rules}, style_{style} {}

    [[nodiscard]] std::string value() const {
        if (path_.frames.size() > 1)
            return keys();
        return outline(path_.frames.empty() ? path_.value : path_.values.front());
    }

private:
    [[nodiscard]] std::string name(std::string_view text) const { return '"' + std::string(text) + '"' + style_.colon; }

    static void appendNumber(std::string& out, double number, bool rounded) {
        char room[numberTextRoom];
        const double finite = std::isfinite(number) ? number : 0;
        const char* end = rounded ? printThousandths(room, finite) : printShortest(room, finite);
        out.append(room, static_cast<std::size_t>(end - room));
    }

    [[nodiscard]] std::string pairs(const PathValue& path, double PathVertex::*x, double PathVertex::*y,
                                    bool relative) const {
        std::string out = "[";
        for (const PathVertex& vertex : path.vertices) {
            const bool shifted = relative && rules_.absoluteTangents;
            out += (out.size() > 1 ? style_.comma : "") + '[';
            appendNumber(out, vertex.*x + (shifted ? vertex.x : 0), path_.frames.size() < 2);
            out += style_.comma;
            appendNumber(out, vertex.*y + (shifted ? vertex.y : 0), path_.frames.size() < 2);
            out += ']';
        }
        return out + ']';
    }

    [[nodiscard]] std::string outline(const PathValue& path) const {
        return '{' + name("i") + pairs(path, &PathVertex::inX, &PathVertex::inY, true) + style_.comma + name("o") +
               pairs(path, &PathVertex::outX, &PathVertex::outY, true) + style_.comma + name("v") +
               pairs(path, &PathVertex::x, &PathVertex::y, false) + style_.comma + name("c") +
               (path.closed ? "true" : "false") + '}';
    }

    [[nodiscard]] std::string handle(std::string_view side, double x, double y) const {
        std::string out = style_.comma + name(side) + '{' + name("x");
        appendNumber(out, x, false);
        out += style_.comma + name("y");
        appendNumber(out, y, false);
        return out + '}';
    }

    [[nodiscard]] std::string easing(std::size_t key) const {
        const KeySegment* segment = path_.segments.empty() ? nullptr : &path_.segments[key];
        if (segment && segment->hold)
            return style_.comma + name("h") + '1';
        if (!segment || segment->linear)
            return handle("o", 0, 0) + handle("i", 1, 1);
        return handle("o", segment->outX[0], segment->outY[0]) + handle("i", segment->inX[0], segment->inY[0]);
    }

    [[nodiscard]] std::string keys() const {
        std::string out = "[";
        for (std::size_t key = 0; key < path_.frames.size(); ++key) {
            out += (key > 0 ? style_.comma : "") + '{' + name("t");
            appendNumber(out, path_.frames[key], false);
            out += style_.comma + name("s") + '[' + outline(path_.values[key]) + ']';
            out += (key + 1 < path_.frames.size() ? easing(key) : "") + '}';
        }
        return out + ']';
    }

    const PathStream& path_;
    const FormatRules& rules_;
    const TextStyle& style_;
};

} // namespace

std::string pathValueText(const PathStream& path, const FormatRules& rules, const TextStyle& style) {
    return PathPrinter(path, rules, style).value();
}

std::string pathPropertyText(const PathStream& path, const FormatRules& rules, const TextStyle& style) {
    return "{\"a\"" + style.colon + (path.frames.size() > 1 ? "1" : "0") + style.comma + "\"k\"" + style.colon +
           pathValueText(path, rules, style) + '}';
}

} // namespace jostle::standalone
