// What the place of a text tells of the numbers in it.
#pragma once

#include <functional>
#include <string_view>

namespace kvstation {

// A program's version may look like an address, as Firefox 2.0.0.20 does, so the place decides. The module takes its
// way by some versions (the Citrix server's, the first digit of Netscape's) and shows others. A version that stands
// elsewhere, such as in the name of a folder, is taken for an address: to the module it is a text like any. Where an
// address stands, a number that has its form is one for certain, and is replaced wherever it stands.
enum class TextPlace { Anywhere, Version, Address };

// Of what a registry value or a variable of that name holds.
TextPlace placeIn(std::string_view name);

// Of the names of the keys below one that is called so and has that place itself.
TextPlace placeBelow(std::string_view key, TextPlace place);

// Visits the names in a key's full path but the hive's, each with its place. A name is a view into the path.
using KeyNameVisitor = std::function<void(std::string_view name, TextPlace place)>;
void eachKeyName(std::string_view path, const KeyNameVisitor& visit);

}  // namespace kvstation
