#pragma once

#include <gmock/gmock.h>

#include <fstream>
#include <string>
#include <vector>

#include "companions/zrtrc/ZRtrc.h"
#include "framework/Windows.h"

constexpr char kComponent[] = "KelVor - Station registration (client)";

// Each test has a trace file of its own.
class Trace : public testing::Test {
  protected:
    Trace() {
        char folder[MAX_PATH] = {};
        GetTempPathA(MAX_PATH, folder);
        m_file = std::string(folder) + "kvtrace-" + std::to_string(GetCurrentProcessId()) + ".log";
        DeleteFileA(m_file.c_str());
        SetEnvironmentVariableA("KVTraceFile", m_file.c_str());
        SetEnvironmentVariableA("KVTraceLevel", nullptr);
    }
    ~Trace() override {
        SetEnvironmentVariableA("KVTraceFile", nullptr);
        SetEnvironmentVariableA("KVTraceLevel", nullptr);
        DeleteFileA(m_file.c_str());
    }

    // The lines of the file, each with its carriage return but without the newline.
    std::vector<std::string> Lines() const {
        std::ifstream file(m_file, std::ios::binary);
        std::vector<std::string> lines;
        for (std::string line; std::getline(file, line);)
            lines.push_back(line);
        return lines;
    }

    // What the lines say behind the component.
    std::vector<std::string> Texts() const {
        std::vector<std::string> texts;
        for (const std::string& line : Lines())
            texts.push_back(line.substr(line.find("): ") + 3));
        return texts;
    }

    bool HasFile() const { return GetFileAttributesA(m_file.c_str()) != INVALID_FILE_ATTRIBUTES; }

    std::string m_file;
};
