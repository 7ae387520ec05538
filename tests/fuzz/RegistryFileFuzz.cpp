// The reader of registry.reg, and the writer: what was read is written and read again as it was.
#include <cstdint>
#include <span>
#include <string_view>

#include "simwin/station/RegistryReader.h"
#include "simwin/station/RegistryWriter.h"
#include "simwin/text/CodePage.h"
#include "tests/fuzz/ReadOrTell.h"

namespace {

using simwin::KeyId;
using simwin::RegistryTree;

// Each key is found by its path, each value by its name.
void checkKey(const RegistryTree& tree, KeyId key) {
    for (const simwin::RegistryValue& value : tree.values(key))
        kvfuzz::check(tree.findValue(key, value.name) == &value, "a value is found by its name");
    for (const KeyId subKey : tree.subKeys(key)) {
        kvfuzz::check(tree.find(key, tree.name(subKey)) == subKey, "a key is found by its name");
        checkKey(tree, subKey);
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view content(reinterpret_cast<const char*>(data), size);
    // The last byte chooses the code page: a line's end is the default one.
    const std::span<const unsigned> pages = simwin::knownCodePages();
    const unsigned char choice = size != 0 ? data[size - 1] : 0;
    const simwin::CodePageScope scope(choice < 0x80 ? simwin::kDefaultCodePage : pages[choice % pages.size()]);
    RegistryTree tree;
    if (!kvfuzz::readOrTell("registry.reg", [&] { tree = simwin::readRegistry(content, "registry.reg"); }))
        return 0;
    for (const simwin::Hive hive : simwin::kOwnHives)
        checkKey(tree, tree.root(hive));
    // Each key is written with its whole path: of keys within keys that takes longer than all else. Of two names that
    // end in half a character, elsewhere, one would be written.
    constexpr std::size_t kFewKeys = 100;
    if (tree.size() > kFewKeys || simwin::codePageInForce() != simwin::kDefaultCodePage)
        return 0;
    const std::string written = simwin::writeRegistry(tree);
    const RegistryTree again = simwin::readRegistry(written, "written");
    kvfuzz::check(simwin::writeRegistry(again) == written, "a registry reads back as it was written");
    return 0;
}
