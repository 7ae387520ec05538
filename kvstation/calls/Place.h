// Where the files of a described station hold the answer to a question, or would hold it.
#pragma once

#include <string>

#include "simwin/station/Station.h"

namespace kvstation {

struct Place {
    enum class Kind {
        None,         // neither file can hold it
        Member,       // of station.json, at `member`
        Item,         // `value` as an item of the list `member` of station.json
        Key,          // of registry.reg: `key` by its full path
        Value,        // of registry.reg: the value `value` of `key`
        EndOfKeys,    // behind the last sub-key of `key`
        EndOfValues,  // behind the last value of `key`
    };
    Kind kind = Kind::None;
    simwin::MemberPath member{};
    std::string key{};  // texts of the registry are bytes of the ANSI code page
    std::string value{};
    bool isListed = false;  // a key or value that an enumeration told, whose answer is its name

    bool isInRegistry() const { return kind >= Kind::Key; }
    // The same for two places that are one: names of keys, values and variables have no letter case.
    std::string id() const;
};

inline Place memberPlace(simwin::MemberPath path) {
    return {.kind = Place::Kind::Member, .member = std::move(path)};
}

// The place as people write it, in UTF-8: "environment.KVUser", "HKEY_LOCAL_MACHINE\SOFTWARE\ProductName".
std::string nameOf(const Place& place);

// True for the place itself and for what lies below it, when `root` is an entry of station.json's "unknown".
bool isBelow(const Place& place, const std::string& root);

}  // namespace kvstation
