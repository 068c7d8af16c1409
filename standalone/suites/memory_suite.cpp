#include "standalone/suites/host_state.h"
#include "standalone/suites/tables.h"

namespace jostle::standalone {

namespace {

MemoryBlock* blockOf(AEGP_MemHandle handle) {
    MemoryBlock* block = state().memory.find(handle);
    if (block == nullptr)
        state().noteUnknown(state().memory, handle);
    return block;
}

A_Err newMemHandle(AEGP_PluginID, const A_char*, AEGP_MemSize size, AEGP_MemFlag, AEGP_MemHandle* handle) {
    if (handle == nullptr)
        return A_Err_PARAMETER;
    *handle = state().giveMemory(size); // cleared whatever the flag says
    return A_Err_NONE;
}

A_Err freeMemHandle(AEGP_MemHandle handle) {
    const MemoryBlock* block = state().memory.find(handle);
    if (block == nullptr) {
        state().noteUnknown(state().memory, handle, Misuse::DisposedTwice);
        return A_Err_PARAMETER;
    }
    if (block->locks != 0)
        return state().note(Misuse::UnbalancedLock);
    state().memory.remove(handle);
    return A_Err_NONE;
}

A_Err lockMemHandle(AEGP_MemHandle handle, void** content) {
    MemoryBlock* block = blockOf(handle);
    if (block == nullptr || content == nullptr)
        return A_Err_PARAMETER;
    ++block->locks;
    *content = block->bytes.get();
    return A_Err_NONE;
}

A_Err unlockMemHandle(AEGP_MemHandle handle) {
    MemoryBlock* block = blockOf(handle);
    if (block == nullptr)
        return A_Err_PARAMETER;
    if (block->locks == 0)
        return state().note(Misuse::UnbalancedLock);
    --block->locks;
    return A_Err_NONE;
}

A_Err getMemHandleSize(AEGP_MemHandle handle, AEGP_MemSize* size) {
    const MemoryBlock* block = blockOf(handle);
    if (block == nullptr || size == nullptr)
        return A_Err_PARAMETER;
    *size = static_cast<AEGP_MemSize>(block->size);
    return A_Err_NONE;
}

} // namespace

const AEGP_MemorySuite1 memorySuite{
    .AEGP_NewMemHandle = newMemHandle,
    .AEGP_FreeMemHandle = freeMemHandle,
    .AEGP_LockMemHandle = lockMemHandle,
    .AEGP_UnlockMemHandle = unlockMemHandle,
    .AEGP_GetMemHandleSize = getMemHandleSize,
};

} // namespace jostle::standalone
