#include "standalone/commands/body_text.h"

namespace jostle::standalone {

std::string shapeText(const BodyRecord& body) {
    const BodyPieces pieces = piecesOf(body);
    struct Kind {
        int count;
        const char* one;
        const char* several;
    };
    const Kind kinds[] = {
        {pieces.circles, "circle", "circles"},
        {pieces.boxes, "box", "boxes"},
        {pieces.triangles, "triangle", "triangles"},
        {pieces.openLines, "open line", "open lines"},
    };
    const int all = pieces.circles + pieces.boxes + pieces.triangles + pieces.openLines;
    if (all == 0) {
        return "no shape";
    }
    std::string text;
    for (const Kind& kind : kinds) {
        if (kind.count == 0) {
            continue;
        }
        text += text.empty() ? "" : ", ";
        // A body of one piece is that piece.
        text += all == 1 ? kind.one : std::to_string(kind.count) + " " + (kind.count == 1 ? kind.one : kind.several);
    }
    return text;
}

std::string originText(BodyOrigin origin) {
    switch (origin) {
    case BodyOrigin::Bounds:
        return "bounds";
    case BodyOrigin::Masks:
        return "masks";
    case BodyOrigin::Text:
        return "text";
    case BodyOrigin::VectorShapes:
        return "shapes";
    case BodyOrigin::Fallback:
        break;
    }
    return "fallback";
}

std::vector<std::string> warningsOf(const LayerReport& layer, const BodyRecord& body) {
    std::vector<std::string> warnings;
    if (layer.origin == BodyOrigin::Fallback) {
        warnings.emplace_back("fallback: no outline was found, a box of 100 by 100 pixels stands in");
    }
    if (body.isDenseMesh) {
        warnings.emplace_back("dense mesh");
    }
    if (body.triangulationFailed) {
        warnings.emplace_back("self-intersecting");
    }
    const BodyPieces pieces = piecesOf(body);
    if (pieces.circles + pieces.boxes + pieces.triangles + pieces.openLines == 0) {
        warnings.emplace_back("collides with nothing");
    }
    if (layer.numbersReplaced) {
        warnings.emplace_back("defaults for values that are no finite numbers");
    }
    if (layer.error != A_Err_NONE) {
        warnings.emplace_back("defaults for what the host did not tell");
    }
    return warnings;
}

} // namespace jostle::standalone
