#include <algorithm>

#include "framework/ModuleState.h"
#include "framework/String.h"

bool CString::LoadString(unsigned int id) {
    char text[256] = {};
    const int length = LoadStringA(GetModuleState().m_hInstance, id, text, sizeof text);
    Assign(text, static_cast<std::size_t>(std::max(length, 0)));
    return length > 0;
}
