#include "host/persistent_store.h"

#include <array>

namespace jostle {

PersistentStore::PersistentStore(HostChain& chain) : chain_(chain) {
    chain_.call<&AEGP_PersistentDataSuite3::AEGP_GetApplicationBlob>(&blob_);
}

// A host that is asked for a value keeps the default that comes with the question.
bool PersistentStore::has(const char* key) {
    A_Boolean exists = 0;
    return chain_.call<&AEGP_PersistentDataSuite3::AEGP_DoesKeyExist>(blob_, section, key, &exists) && exists != 0;
}

std::int32_t PersistentStore::read(const char* key, std::int32_t byDefault) {
    A_long value = byDefault;
    return has(key) && chain_.call<&AEGP_PersistentDataSuite3::AEGP_GetLong>(blob_, section, key, value, &value)
               ? value
               : byDefault;
}

double PersistentStore::read(const char* key, double byDefault) {
    A_FpLong value = byDefault;
    return has(key) && chain_.call<&AEGP_PersistentDataSuite3::AEGP_GetFpLong>(blob_, section, key, value, &value)
               ? value
               : byDefault;
}

std::string PersistentStore::read(const char* key, const std::string& byDefault) {
    std::array<A_char, longestText> buffer{};
    A_u_long size = 0;
    const bool done = has(key) && chain_.call<&AEGP_PersistentDataSuite3::AEGP_GetString>(
                                      blob_, section, key, byDefault.c_str(), static_cast<A_u_long>(buffer.size()),
                                      buffer.data(), &size);
    return done ? std::string(buffer.data()) : byDefault;
}

void PersistentStore::write(const char* key, std::int32_t value) {
    chain_.call<&AEGP_PersistentDataSuite3::AEGP_SetLong>(blob_, section, key, A_long{value});
}

void PersistentStore::write(const char* key, double value) {
    chain_.call<&AEGP_PersistentDataSuite3::AEGP_SetFpLong>(blob_, section, key, value);
}

void PersistentStore::write(const char* key, const std::string& value) {
    chain_.call<&AEGP_PersistentDataSuite3::AEGP_SetString>(blob_, section, key, value.c_str());
}

} // namespace jostle
