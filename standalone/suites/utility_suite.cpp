#include "standalone/suites/host_state.h"
#include "standalone/suites/tables.h"

namespace jostle::standalone {

namespace {

A_Err reportInfo(AEGP_PluginID, const A_char* text) {
    if (text == nullptr)
        return A_Err_PARAMETER;
    state().reports.emplace_back(text);
    return A_Err_NONE;
}

A_Err startUndoGroup(const A_char* name) {
    if (!state().journal.begin(name == nullptr ? "" : name))
        return state().note(Misuse::UndoGroupNested, A_Err_GENERIC);
    return A_Err_NONE;
}

A_Err endUndoGroup() {
    return state().journal.end() ? A_Err_NONE : state().note(Misuse::UndoGroupNotBegun, A_Err_GENERIC);
}

A_Err getMainWindow(void* mainWindow) {
    if (mainWindow == nullptr)
        return A_Err_PARAMETER;
    *static_cast<void**>(mainWindow) = nullptr; // this host has no window of its own
    return A_Err_NONE;
}

} // namespace

const AEGP_UtilitySuite11 utilitySuite{
    .AEGP_ReportInfo = reportInfo,
    .AEGP_StartUndoGroup = startUndoGroup,
    .AEGP_EndUndoGroup = endUndoGroup,
    .AEGP_GetMainHWND = getMainWindow,
};

} // namespace jostle::standalone
