#pragma once

#include <string>
#include <vector>

#include "framework/WindowsSockets.h"

namespace simwin {

// What a resolver's answer points to.
struct HostAnswer {
    std::string name;
    std::vector<std::string> addresses;
    std::vector<char*> addressList;  // ends with null
    char* noAliases = nullptr;
    winsock::HostEntry entry{};
};

}  // namespace simwin
