// The environment, through the product's library.
#include <cstring>
#include <memory>

#include "companions/kvenv/kvenv.h"
#include "kvcstat/common/StatGlobal.h"

namespace {

// The library takes texts that it may write to.
std::unique_ptr<char[]> WritableCopy(const char* text) {
    const std::size_t size = std::strlen(text) + 1;
    std::unique_ptr<char[]> copy(new char[size]);
    std::memcpy(copy.get(), text, size);
    return copy;
}

}  // namespace

CString CStatGlobal::GetEnvVar(const char* name) const {
    char value[512] = {};
    if (KVGetEnv(name, value, sizeof value) == 0)
        return {};
    value[sizeof value - 1] = '\0';  // another maker's library may fill the whole buffer
    return value;
}

int CStatGlobal::SetEnvVar(const char* name, const char* value) const {
    return KVSetEnv(WritableCopy(name).get(), WritableCopy(value).get());
}
