#include <algorithm>

#include "standalone/suites/host_state.h"
#include "standalone/suites/structure_edits.h"
#include "standalone/suites/tables.h"

namespace jostle::standalone {

namespace {

A_Err getUniqueCommand(AEGP_Command* command) {
    if (command == nullptr)
        return A_Err_PARAMETER;
    *command = ++state().lastCommand;
    return A_Err_NONE;
}

A_Err insertMenuCommand(AEGP_Command command, const A_char* name, AEGP_MenuID menu, A_long) {
    if (name == nullptr)
        return A_Err_PARAMETER;
    state().menuItems.push_back({command, name, menu, false});
    return A_Err_NONE;
}

A_Err setEnabled(AEGP_Command command, bool enabled) {
    auto& items = state().menuItems;
    const auto item =
        std::find_if(items.begin(), items.end(), [&](const MenuItem& entry) { return entry.command == command; });
    if (item == items.end())
        return A_Err_PARAMETER;
    item->enabled = enabled;
    return A_Err_NONE;
}

A_Err enableCommand(AEGP_Command command) {
    return setEnabled(command, true);
}

A_Err disableCommand(AEGP_Command command) {
    return setEnabled(command, false);
}

A_Err undo() {
    std::vector<AEGP_CompH> dropped;
    if (!state().journal.undo(dropped))
        return A_Err_GENERIC;
    for (const AEGP_CompH comp : dropped)
        state().drop(comp);
    return A_Err_NONE;
}

A_Err doCommand(AEGP_Command command) {
    if (command == hostCommandUndo)
        return undo();
    CompEntry& active = *state().comps.find(state().openComps.front());
    if (command == hostCommandCopy)
        return copySelection(active) ? A_Err_NONE : A_Err_GENERIC;
    if (command == hostCommandPaste)
        return pasteAtSelection(active) ? A_Err_NONE : A_Err_GENERIC;
    return state().dispatch(command) ? A_Err_NONE : A_Err_GENERIC;
}

} // namespace

const AEGP_CommandSuite1 commandSuite{
    .AEGP_GetUniqueCommand = getUniqueCommand,
    .AEGP_InsertMenuCommand = insertMenuCommand,
    .AEGP_EnableCommand = enableCommand,
    .AEGP_DisableCommand = disableCommand,
    .AEGP_DoCommand = doCommand,
};

} // namespace jostle::standalone
