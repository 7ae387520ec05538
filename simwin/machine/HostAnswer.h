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

// The addresses that an answer names, as raw bytes: at most 64, each as long as it says and at most 16 bytes.
std::vector<std::string> addressesOf(const winsock::HostEntry& answer);

}  // namespace simwin
