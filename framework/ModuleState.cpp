#include "framework/ModuleState.h"

#include <utility>

namespace {

CModuleState g_state;
// Not thread-local: the module runs one call at a time, and a thread-local index would be lost at each unload.
CModuleState* g_inForce = &g_state;

}  // namespace

CModuleState& GetStaticModuleState() noexcept {
    return g_state;
}

CModuleState& GetModuleState() noexcept {
    return *g_inForce;
}

CModuleStateScope::CModuleStateScope(CModuleState& state) noexcept : m_pPrevious(std::exchange(g_inForce, &state)) {}

CModuleStateScope::~CModuleStateScope() {
    g_inForce = m_pPrevious;
}
