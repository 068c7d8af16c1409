#include <cmath>
#include <cstring>

#include "standalone/suites/host_state.h"
#include "standalone/suites/tables.h"

namespace jostle::standalone {

namespace {

// The one store there is. Never read through, as any handle.
AEGP_PersistentBlobH theStore() {
    return reinterpret_cast<AEGP_PersistentBlobH>(static_cast<std::uintptr_t>(0x20));
}

bool names(AEGP_PersistentBlobH store, const A_char* section, const A_char* key) {
    return store == theStore() && section != nullptr && key != nullptr;
}

A_Err getApplicationBlob(AEGP_PersistentBlobH* store) {
    if (store == nullptr)
        return A_Err_PARAMETER;
    *store = theStore();
    return A_Err_NONE;
}

A_Err doesKeyExist(AEGP_PersistentBlobH store, const A_char* section, const A_char* key, A_Boolean* exists) {
    if (!names(store, section, key) || exists == nullptr)
        return A_Err_PARAMETER;
    *exists = state().preferences.has(section, key);
    return A_Err_NONE;
}

A_Err getString(AEGP_PersistentBlobH store, const A_char* section, const A_char* key, const A_char* byDefault,
                A_u_long bufferSize, A_char* buffer, A_u_long* actualSize) {
    if (!names(store, section, key) || buffer == nullptr || bufferSize == 0)
        return A_Err_PARAMETER;
    Preferences& preferences = state().preferences;
    std::string text;
    if (byDefault != nullptr || preferences.has(section, key))
        text = preferences.get<std::string>(section, key, byDefault == nullptr ? "" : byDefault);
    const std::size_t size = text.size() + 1;
    if (actualSize != nullptr)
        *actualSize = static_cast<A_u_long>(size);
    if (size > bufferSize) {
        buffer[0] = '\0';
        return actualSize == nullptr ? A_Err_PARAMETER : A_Err_NONE;
    }
    std::memcpy(buffer, text.c_str(), size);
    return A_Err_NONE;
}

A_Err getLong(AEGP_PersistentBlobH store, const A_char* section, const A_char* key, A_long byDefault, A_long* value) {
    if (!names(store, section, key) || value == nullptr)
        return A_Err_PARAMETER;
    *value = state().preferences.get<std::int32_t>(section, key, byDefault);
    return A_Err_NONE;
}

A_Err getFpLong(AEGP_PersistentBlobH store, const A_char* section, const A_char* key, A_FpLong byDefault,
                A_FpLong* value) {
    if (!names(store, section, key) || !std::isfinite(byDefault) || value == nullptr)
        return A_Err_PARAMETER;
    *value = state().preferences.get<double>(section, key, byDefault);
    return A_Err_NONE;
}

A_Err setString(AEGP_PersistentBlobH store, const A_char* section, const A_char* key, const A_char* text) {
    if (!names(store, section, key) || text == nullptr)
        return A_Err_PARAMETER;
    state().preferences.set(section, key, std::string(text));
    return A_Err_NONE;
}

A_Err setLong(AEGP_PersistentBlobH store, const A_char* section, const A_char* key, A_long value) {
    if (!names(store, section, key))
        return A_Err_PARAMETER;
    state().preferences.set(section, key, value);
    return A_Err_NONE;
}

A_Err setFpLong(AEGP_PersistentBlobH store, const A_char* section, const A_char* key, A_FpLong value) {
    return names(store, section, key) && state().preferences.set(section, key, value) ? A_Err_NONE : A_Err_PARAMETER;
}

A_Err deleteEntry(AEGP_PersistentBlobH store, const A_char* section, const A_char* key) {
    if (!names(store, section, key))
        return A_Err_PARAMETER;
    state().preferences.erase(section, key);
    return A_Err_NONE;
}

} // namespace

const AEGP_PersistentDataSuite3 persistentDataSuite{
    .AEGP_GetApplicationBlob = getApplicationBlob,
    .AEGP_DoesKeyExist = doesKeyExist,
    .AEGP_GetString = getString,
    .AEGP_GetLong = getLong,
    .AEGP_GetFpLong = getFpLong,
    .AEGP_SetString = setString,
    .AEGP_SetLong = setLong,
    .AEGP_SetFpLong = setFpLong,
    .AEGP_DeleteEntry = deleteEntry,
};

} // namespace jostle::standalone
