// The readers of registry hives: whatever a file holds, keys and values with names and texts, or one line that says
// what is wrong.
#include <cstdint>
#include <string_view>

#include "kvstation/hives/HiveOpening.h"
#include "kvstation/platform/Errors.h"
#include "tests/fuzz/ReadOrTell.h"

namespace {

using kvstation::Hive;

constexpr int kLevels = 8;
constexpr std::size_t kMostKeys = 1000;

class Reader {
  public:
    explicit Reader(Hive& hive) : m_hive(hive) {}

    void read(Hive::Node key, int level) {
        for (const simwin::RegistryValue& value : m_hive.values(key).all)
            m_bytes += value.name.size() + value.bytes.size();
        for (const Hive::SubKey& subKey : m_hive.subKeys(key).all) {
            kvfuzz::check(kvstation::fitsPath(subKey.name), "the name of a key fits a path");
            if (level < kLevels && ++m_keys < kMostKeys)
                read(subKey.node, level + 1);
        }
    }

  private:
    Hive& m_hive;
    std::size_t m_keys = 0;
    std::size_t m_bytes = 0;
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    kvfuzz::readOrTell<kvstation::Failure>("hive", [&] {
        const kvstation::OpenedHive opened =
            kvstation::openHive("hive", std::string(reinterpret_cast<const char*>(data), size), {});
        Reader(*opened.hive).read(opened.hive->root(), 0);
    });
    return 0;
}
