#include "standalone/suites/host_state.h"
#include "standalone/suites/path_edits.h"
#include "standalone/suites/tables.h"

// The two suites that read outlines: of masks and elements, and of glyphs. They differ in what handles are relative to.

namespace jostle::standalone {

namespace {

const PathValue* outlineOf(AEGP_MaskOutlineValH handle) {
    const PathValue* outline = state().maskOutlines.find(handle);
    if (outline == nullptr)
        state().noteUnknown(state().maskOutlines, handle);
    return outline;
}

A_Err isMaskOutlineOpen(AEGP_MaskOutlineValH handle, A_Boolean* open) {
    const PathValue* outline = outlineOf(handle);
    if (outline == nullptr || open == nullptr)
        return A_Err_PARAMETER;
    *open = !outline->closed;
    return A_Err_NONE;
}

A_Err getMaskOutlineNumSegments(AEGP_MaskOutlineValH handle, A_long* count) {
    const PathValue* outline = outlineOf(handle);
    if (outline == nullptr || count == nullptr)
        return A_Err_PARAMETER;
    *count = segmentCount(*outline);
    return A_Err_NONE;
}

A_Err getMaskOutlineVertexInfo(AEGP_MaskOutlineValH handle, AEGP_VertexIndex index, AEGP_MaskVertex* vertex) {
    const PathValue* outline = outlineOf(handle);
    const std::optional<PathVertex> found = outline == nullptr ? std::nullopt : vertexAt(*outline, index);
    if (!found || vertex == nullptr)
        return A_Err_PARAMETER;
    *vertex = {found->x, found->y, found->inX, found->inY, found->outX, found->outY};
    return A_Err_NONE;
}

const PathValue* glyphOf(PF_PathOutlinePtr handle) {
    const PathValue* outline = state().textPaths.find(handle);
    if (outline == nullptr)
        state().noteUnknown(state().textPaths, handle);
    return outline;
}

PF_Err pathIsOpen(PF_ProgPtr, PF_PathOutlinePtr path, PF_Boolean* open) {
    const PathValue* outline = glyphOf(path);
    if (outline == nullptr || open == nullptr)
        return A_Err_PARAMETER;
    *open = !outline->closed;
    return A_Err_NONE;
}

PF_Err pathNumSegments(PF_ProgPtr, PF_PathOutlinePtr path, A_long* count) {
    const PathValue* outline = glyphOf(path);
    if (outline == nullptr || count == nullptr)
        return A_Err_PARAMETER;
    *count = segmentCount(*outline);
    return A_Err_NONE;
}

PF_Err pathVertexInfo(PF_ProgPtr, PF_PathOutlinePtr path, A_long index, PF_PathVertex* vertex) {
    const PathValue* outline = glyphOf(path);
    const std::optional<PathVertex> found = outline == nullptr ? std::nullopt : vertexAt(*outline, index);
    if (!found || vertex == nullptr)
        return A_Err_PARAMETER;
    *vertex = {found->x,
               found->y,
               found->x + found->inX,
               found->y + found->inY,
               found->x + found->outX,
               found->y + found->outY};
    return A_Err_NONE;
}

} // namespace

const AEGP_MaskOutlineSuite3 maskOutlineSuite{
    .AEGP_IsMaskOutlineOpen = isMaskOutlineOpen,
    .AEGP_GetMaskOutlineNumSegments = getMaskOutlineNumSegments,
    .AEGP_GetMaskOutlineVertexInfo = getMaskOutlineVertexInfo,
};

const PF_PathDataSuite1 pathDataSuite{
    .PF_PathIsOpen = pathIsOpen,
    .PF_PathNumSegments = pathNumSegments,
    .PF_PathVertexInfo = pathVertexInfo,
};

} // namespace jostle::standalone
