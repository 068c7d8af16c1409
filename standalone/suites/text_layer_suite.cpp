#include <cmath>
#include <utility>

#include "standalone/document/evaluate.h"
#include "standalone/suites/host_state.h"
#include "standalone/suites/tables.h"

namespace jostle::standalone {

namespace {

struct Point {
    double x, y;
};

Point projected(const Matrix4d& matrix, double x, double y) {
    return {x * matrix.m[0][0] + y * matrix.m[1][0] + matrix.m[3][0],
            x * matrix.m[0][1] + y * matrix.m[1][1] + matrix.m[3][1]};
}

/// Takes layer pixels to composition pixels, and the layer's turn out again about its anchor: the body that is made of
/// the outlines is given the layer's angle, and would turn them twice.
class Upright {
public:
    Upright(const Layer& layer, double frame) : world_(worldMatrix(layer, frame)) {
        const Components anchor = valueAt(layer.transform.anchor, frame);
        centre_ = projected(world_, anchor[0], anchor[1]);
        const double turn = std::atan2(world_.m[0][1], world_.m[0][0]);
        cosine_ = std::cos(turn);
        sine_ = std::sin(turn);
    }

    [[nodiscard]] Point operator()(double x, double y) const {
        const Point there = projected(world_, x, y);
        const double dx = there.x - centre_.x;
        const double dy = there.y - centre_.y;
        return {centre_.x + dx * cosine_ + dy * sine_, centre_.y - dx * sine_ + dy * cosine_};
    }

    void apply(PathValue& outline) const {
        for (PathVertex& v : outline.vertices) {
            const Point at = (*this)(v.x, v.y);
            const Point in = (*this)(v.x + v.inX, v.y + v.inY);
            const Point out = (*this)(v.x + v.outX, v.y + v.outY);
            v = {at.x, at.y, in.x - at.x, in.y - at.y, out.x - at.x, out.y - at.y};
        }
    }

private:
    Matrix4d world_;
    Point centre_{};
    double cosine_ = 1, sine_ = 0;
};

A_Err getNewTextOutlines(AEGP_LayerH handle, const A_Time* time, AEGP_TextOutlinesH* outlines) {
    const LayerEntry* entry = state().layerOf(handle);
    if (entry == nullptr || !state().isValid(time) || outlines == nullptr)
        return A_Err_PARAMETER;
    *outlines = nullptr;
    if (entry->layer->kind != LayerKind::Text)
        return A_Err_NONE;
    const Composition& composition = *entry->comp->composition;
    const double frame = frameAt(*entry->comp, *time);
    TextOutlines text;
    if (composition.details != nullptr)
        text = composition.details->textOutlines(*entry->layer, frame);
    for (std::string& note : text.notes)
        state().reportOnce(std::move(note));
    const Upright upright(*entry->layer, frame);
    TextOutlineSet set;
    for (PathValue& outline : text.outlines) {
        upright.apply(outline);
        set.outlines.push_back(state().textPaths.add(std::move(outline)));
    }
    *outlines = state().textOutlines.add(std::move(set));
    return A_Err_NONE;
}

A_Err disposeTextOutlines(AEGP_TextOutlinesH handle) {
    const TextOutlineSet* set = state().textOutlines.find(handle);
    if (set == nullptr) {
        state().noteUnknown(state().textOutlines, handle, Misuse::DisposedTwice);
        return A_Err_PARAMETER;
    }
    for (const PF_PathOutlinePtr outline : set->outlines)
        state().textPaths.remove(outline);
    state().textOutlines.remove(handle);
    return A_Err_NONE;
}

const TextOutlineSet* setOf(AEGP_TextOutlinesH handle) {
    const TextOutlineSet* set = state().textOutlines.find(handle);
    if (set == nullptr)
        state().noteUnknown(state().textOutlines, handle);
    return set;
}

A_Err getNumTextOutlines(AEGP_TextOutlinesH handle, A_long* count) {
    const TextOutlineSet* set = setOf(handle);
    if (set == nullptr || count == nullptr)
        return A_Err_PARAMETER;
    *count = static_cast<A_long>(set->outlines.size());
    return A_Err_NONE;
}

A_Err getIndexedTextOutline(AEGP_TextOutlinesH handle, A_long index, PF_PathOutlinePtr* outline) {
    const TextOutlineSet* set = setOf(handle);
    const auto place = static_cast<std::size_t>(index);
    if (set == nullptr || place >= set->outlines.size() || outline == nullptr)
        return A_Err_PARAMETER;
    *outline = set->outlines[place];
    return A_Err_NONE;
}

} // namespace

const AEGP_TextLayerSuite1 textLayerSuite{
    .AEGP_GetNewTextOutlines = getNewTextOutlines,
    .AEGP_DisposeTextOutlines = disposeTextOutlines,
    .AEGP_GetNumTextOutlines = getNumTextOutlines,
    .AEGP_GetIndexedTextOutline = getIndexedTextOutline,
};

} // namespace jostle::standalone
