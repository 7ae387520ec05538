// A folder of the test's own, which goes with it.
#pragma once

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <string>

namespace kvstation {

class TemporaryFolder {
  public:
    TemporaryFolder() : m_path(testing::TempDir() + "kvstation-XXXXXX") {
        if (mkdtemp(m_path.data()) == nullptr)
            throw std::runtime_error("no temporary folder " + m_path);
    }
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;
    ~TemporaryFolder() {
        std::error_code ignored;
        std::filesystem::remove_all(m_path, ignored);
    }

    std::string operator/(const std::string& name) const { return m_path + "/" + name; }

  private:
    std::string m_path;
};

}  // namespace kvstation
