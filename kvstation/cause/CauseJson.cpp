#include "kvstation/cause/CauseJson.h"

#include <nlohmann/json.hpp>

#include "kvstation/cause/CauseText.h"
#include "kvstation/record/FieldTable.h"
#include "simwin/text/CodePage.h"

namespace kvstation {
namespace {

using nlohmann::ordered_json;

ordered_json valueJson(std::size_t field, const std::string& value) {
    if (fields()[field].type == FieldType::Text)
        return value;
    return ordered_json::parse(value);
}

// A list is one text with its items behind each other, as in the explanation for people.
ordered_json answerJson(const Cause& cause) {
    if (!cause.answer)
        return nullptr;
    if (cause.answer->items.size() == 1)
        return cause.answer->items.front();
    return cause.answer->items.empty() && !cause.answer->isText ? "there" : shown(*cause.answer);
}

ordered_json errorJson(const Cause& cause) {
    if (!cause.error)
        return nullptr;
    ordered_json error{{"code", cause.error->code}, {"name", nullptr}};
    if (!cause.error->name.empty())
        error["name"] = cause.error->name;
    return error;
}

ordered_json causeJson(const Cause& cause) {
    ordered_json json{{"role", wordOf(cause.role)},
                      {"question", cause.question},
                      {"answer", answerJson(cause)},
                      {"error", errorJson(cause)},
                      {"where", placeJson(cause.place)}};
    if (cause.isUnknown)
        json["answer"] = "not written down in this station";
    return json;
}

ordered_json causesList(const std::vector<Cause>& causes) {
    ordered_json list = ordered_json::array();
    for (const Cause& cause : causes)
        list.push_back(causeJson(cause));
    return list;
}

}  // namespace

ordered_json placeJson(const Place& place) {
    switch (place.kind) {
        case Place::Kind::None:
            break;
        case Place::Kind::Member:
        case Place::Kind::Item:
            return {{"file", "station.json"}, {"path", place.member}};
        case Place::Kind::Value:
            return {
                {"file", "registry.reg"}, {"key", simwin::toUtf8(place.key)}, {"value", simwin::toUtf8(place.value)}};
        case Place::Kind::Key:
        case Place::Kind::EndOfKeys:
        case Place::Kind::EndOfValues:
            return {{"file", "registry.reg"}, {"key", simwin::toUtf8(place.key)}, {"value", nullptr}};
    }
    return nullptr;
}

ordered_json causesJson(const FieldCauses& causes) {
    ordered_json json{{"field", fields()[causes.field].name},
                      {"value", valueJson(causes.field, causes.value)},
                      {"cut", nullptr},
                      {"causes", causesList(causes.causes)},
                      {"unknown", causes.unknown},
                      {"open", causes.isOpen},
                      {"next", ordered_json::array()}};
    if (causes.cut)
        json["cut"] = causes.cut->text + (causes.cut->goesOn ? "..." : "");
    for (const NextValue& next : causes.next)
        json["next"].push_back({{"value", valueJson(causes.field, next.value)}, {"causes", causesList(next.causes)}});
    return json;
}

}  // namespace kvstation
