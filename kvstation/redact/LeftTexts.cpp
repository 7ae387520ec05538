#include "kvstation/redact/LeftTexts.h"

#include <algorithm>
#include <cstdio>
#include <map>
#include <nlohmann/json.hpp>

#include "kvstation/redact/BinaryTexts.h"
#include "kvstation/redact/NamedParts.h"
#include "kvstation/redact/WindowsWords.h"
#include "kvstation/text/VisibleText.h"
#include "simwin/station/StationMembers.h"
#include "simwin/station/StationWriter.h"
#include "simwin/station/TextForms.h"
#include "simwin/text/CodePage.h"

namespace kvstation {
namespace {

using Json = nlohmann::ordered_json;
using simwin::KeyId;
using simwin::MemberPath;
using simwin::RegistryTree;
using simwin::RegistryValue;
using simwin::Tells;

TextPlace placeOf(Tells tells, std::string_view name) {
    if (tells == Tells::Setting)
        return placeIn(name);
    return tells == Tells::Version || tells == Tells::VersionBytes ? TextPlace::Version : TextPlace::Anywhere;
}

bool holdsLeftWordOf(PageTextView before, PageTextView after, TextPlace place) {
    for (std::size_t i = 0; i < before.size();) {
        if (!isWordCharacter(before[i])) {
            ++i;
            continue;
        }
        const PageTextView word = runOf(before.substr(i), isWordCharacter);
        if (i < after.size() && after.substr(i, word.size()) == word && isTelling(before, word, place))
            return true;
        i += word.size();
    }
    return false;
}

// Whether a word that could tell something stands at the same place in both. Of what has a form its kind may, such as
// an address', which tells nobody's.
bool holdsLeftWord(PageTextView before, PageTextView after, TextPlace place) {
    for (const NamedPart& part : namedPartsOf(before)) {
        if (part.form != nullptr)
            continue;
        const auto start = static_cast<std::size_t>(part.text.data() - before.data());
        const PageTextView made = after.substr(std::min(start, after.size()), part.text.size());
        if (holdsLeftWordOf(part.text, made, place))
            return true;
    }
    return false;
}

bool holdsLeftWord(std::string_view before, std::string_view after, TextPlace place) {
    return holdsLeftWord(pageText(before), pageText(after), place);
}

// The same of a key's path, whose names keep their lengths.
bool holdsLeftKeyName(std::string_view before, std::string_view after) {
    bool holds = false;
    eachKeyName(before, [&](std::string_view name, TextPlace place) {
        const auto start = static_cast<std::size_t>(name.data() - before.data());
        const std::string_view made = after.substr(std::min(start, after.size()), name.size());
        holds = holds || holdsLeftWord(name, made, place);
    });
    return holds;
}

// Whether something is left of a text of that kind, which stands under that name.
bool isLeft(std::string_view before, std::string_view after, Tells tells, std::string_view name) {
    if (tells == Tells::Key || (tells == Tells::Unknown && simwin::splitHive(before)))
        return holdsLeftKeyName(before, after);
    // Of an unknown member's path the form's own is what leads to the name of a variable or a file.
    const std::size_t own = tells == Tells::Unknown ? simwin::ownNameIn(before) : 0;
    return holdsLeftWord(before.substr(own), after.substr(own), placeOf(tells, name));
}

class LeftTextFinder {
  public:
    std::vector<LeftText> texts() && { return std::move(m_texts); }

    // The name is the one before, which tells what stands there.
    void visit(const Json& before, const Json& after, const MemberPath& path, const std::string& name = {}) {
        const simwin::ToldAt told = simwin::toldAt(path);
        if (told.text != Tells::Nothing && isText(before) && isText(after))
            compareAt(before, after, told.text, path, name);
        else if (before.is_structured() && after.is_structured())
            visitMembers(before, after, told.names != Tells::Nothing, path);
    }

    // The place is that of the names of the keys below.
    void visit(const RegistryTree& before, KeyId key, const RegistryTree& after, KeyId made, TextPlace keysPlace) {
        const std::string place = "registry.reg [" + simwin::toUtf8(after.path(made)) + "]";
        const auto& values = before.values(key);
        const auto& madeValues = after.values(made);
        for (std::size_t i = 0; i < std::min(values.size(), madeValues.size()); ++i) {
            compare(values[i].name, madeValues[i].name, place);
            if (!simwin::isNumber(values[i]))
                compareBytes(values[i].bytes, madeValues[i].bytes, simwin::isText(values[i]),
                             place + " " + nameOf(madeValues[i]), placeIn(values[i].name));
        }
        const auto& keys = before.subKeys(key);
        const auto& madeKeys = after.subKeys(made);
        for (std::size_t i = 0; i < std::min(keys.size(), madeKeys.size()); ++i) {
            compare(before.name(keys[i]), after.name(madeKeys[i]), place, keysPlace);
            visit(before, keys[i], after, madeKeys[i], placeBelow(before.name(keys[i]), keysPlace));
        }
    }

  private:
    static std::string nameOf(const RegistryValue& value) {
        return value.name.empty() ? "@" : "\"" + simwin::toUtf8(value.name) + "\"";
    }
    static std::string textIn(const Json& json) {
        return json.is_string() ? simwin::fromUtf8Leniently(json.get<std::string>())
                                : simwin::readHex({json.at(simwin::kHex), "", ""});
    }
    static bool isHex(const Json& json) { return json.is_object() && json.size() == 1 && json.contains(simwin::kHex); }

    static bool isText(const Json& json) { return json.is_string() || isHex(json); }

    static std::string placeAt(const MemberPath& path) {
        std::string place = "station.json ";
        for (const std::string& name : path)
            place += "/" + name;
        return place;
    }

    void compareAt(const Json& before, const Json& after, Tells tells, const MemberPath& path,
                   const std::string& name) {
        const bool isPath = tells == Tells::Key || tells == Tells::Unknown;
        if (isHex(before) && isHex(after) && !isPath)
            compareBytes(textIn(before), textIn(after), tells != Tells::VersionBytes, placeAt(path),
                         placeOf(tells, name));
        else if (isLeft(textIn(before), textIn(after), tells, name))
            note(textIn(after), placeAt(path));
    }

    void visitMembers(const Json& before, const Json& after, bool namesAreTexts, MemberPath path) {
        const std::string place = placeAt(path);
        path.emplace_back();
        if (before.is_object() && !namesAreTexts) {
            for (const auto& [name, value] : before.items())
                if (after.contains(name)) {
                    path.back() = name;
                    visit(value, after.at(name), path, name);
                }
            return;
        }
        auto made = after.items().begin();
        for (const auto& [name, value] : before.items()) {
            if (made == after.items().end())
                return;
            if (before.is_object())
                compare(simwin::fromUtf8Leniently(name), simwin::fromUtf8Leniently(made.key()), place);
            path.back() = made.key();
            visit(value, made.value(), path, name);
            ++made;
        }
    }

    void compareBytes(const std::string& before, const std::string& after, bool isText, const std::string& place,
                      TextPlace kind) {
        if (before.size() != after.size())
            return;
        for (const BinaryText& one : textsIn(before, isText))
            compare(one.text, textAt(after, one), place, kind);
    }

    void compare(std::string_view before, std::string_view after, const std::string& place,
                 TextPlace kind = TextPlace::Anywhere) {
        if (holdsLeftWord(before, after, kind))
            note(after, place);
    }

    void note(std::string_view text, const std::string& place) {
        const auto [known, isNew] = m_known.emplace(simwin::lowerCase(text), m_texts.size());
        if (isNew)
            m_texts.push_back({simwin::toUtf8(text), place, 0});
        else
            ++m_texts[known->second].others;
    }

    std::vector<LeftText> m_texts;
    std::map<std::string, std::size_t> m_known;
};

std::string lineOf(const LeftText& left) {
    std::string line = "  " + left.text + "   " + left.place;
    if (left.others != 0)
        line += " and " + std::to_string(left.others) + (left.others == 1 ? " other place" : " other places");
    return visible(line) + "\n";
}

}  // namespace

std::vector<LeftText> leftTexts(const simwin::Station& station, const simwin::Station& redacted) {
    const simwin::CodePageScope scope(station.codePages.ansi);
    LeftTextFinder finder;
    finder.visit(simwin::stationJson(station), simwin::stationJson(redacted), {});
    for (const simwin::Hive hive : simwin::kOwnHives)
        finder.visit(station.registry, station.registry.root(hive), redacted.registry, redacted.registry.root(hive),
                     TextPlace::Anywhere);
    return std::move(finder).texts();
}

void tellLeftTexts(const std::vector<LeftText>& texts) {
    if (texts.empty())
        return;
    std::string told =
        "kvstation: left as they were, since nothing shows that they are somebody's; read them, or have "
        "all replaced:\n";
    for (const LeftText& left : texts)
        told += lineOf(left);
    std::fwrite(told.data(), 1, told.size(), stderr);
}

}  // namespace kvstation
