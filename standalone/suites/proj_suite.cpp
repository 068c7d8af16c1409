#include <cstring>

#include "standalone/suites/host_state.h"
#include "standalone/suites/tables.h"
#include "standalone/suites/text.h"

namespace jostle::standalone {

namespace {

// The one project there is. Never read through, as any handle.
AEGP_ProjectH theProject() {
    return reinterpret_cast<AEGP_ProjectH>(static_cast<std::uintptr_t>(0x10));
}

A_Err getNumProjects(A_long* count) {
    if (count == nullptr)
        return A_Err_PARAMETER;
    *count = 1;
    return A_Err_NONE;
}

A_Err getProjectByIndex(A_long index, AEGP_ProjectH* project) {
    if (index != 0 || project == nullptr)
        return A_Err_PARAMETER;
    *project = theProject();
    return A_Err_NONE;
}

A_Err getProjectName(AEGP_ProjectH project, A_char* name) {
    if (project != theProject() || name == nullptr)
        return A_Err_PARAMETER;
    const std::string_view start = startOf(state().projectName, AEGP_MAX_PROJ_NAME_SIZE - 1);
    std::memcpy(name, start.data(), start.size());
    name[start.size()] = '\0';
    return A_Err_NONE;
}

A_Err getProjectPath(AEGP_ProjectH project, AEGP_MemHandle* path) {
    if (project != theProject() || path == nullptr)
        return A_Err_PARAMETER;
    *path = state().giveText(state().projectPath);
    return A_Err_NONE;
}

} // namespace

const AEGP_ProjSuite8 projSuite{
    .AEGP_GetNumProjects = getNumProjects,
    .AEGP_GetProjectByIndex = getProjectByIndex,
    .AEGP_GetProjectName = getProjectName,
    .AEGP_GetProjectPath = getProjectPath,
};

} // namespace jostle::standalone
