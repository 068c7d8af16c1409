#include "host/import_report.h"

namespace jostle {

std::string_view outcomeText(LayerOutcome outcome) {
    switch (outcome) {
    case LayerOutcome::Body:
        return "a body";
    case LayerOutcome::Camera:
        return "a camera";
    case LayerOutcome::Light:
        return "a light";
    case LayerOutcome::UnknownKind:
        return "a kind of layer that is not known";
    case LayerOutcome::Null:
        return "a null";
    case LayerOutcome::Adjustment:
        return "an adjustment layer";
    case LayerOutcome::Guide:
        return "a guide";
    case LayerOutcome::Hidden:
        return "hidden";
    case LayerOutcome::ThreeD:
        return "3D";
    case LayerOutcome::NotShown:
        return "not shown while another layer is soloed";
    case LayerOutcome::NoSource:
        return "without a source";
    case LayerOutcome::NoPicture:
        return "without a picture (0 by 0 pixels)";
    case LayerOutcome::Unreadable:
        break;
    }
    return "the host gave no answer about it";
}

BodyPieces piecesOf(const BodyRecord& body) {
    BodyPieces pieces;
    if (body.isBox) {
        pieces.boxes = 1;
        return pieces;
    }
    for (const std::vector<ShapeDef>& group : body.outlines) {
        for (const ShapeDef& shape : group) {
            int& count = shape.isCircle ? pieces.circles
                         : shape.isBox  ? pieces.boxes
                         : shape.closed ? pieces.triangles
                                        : pieces.openLines;
            ++count;
        }
    }
    return pieces;
}

} // namespace jostle
