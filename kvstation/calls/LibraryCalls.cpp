// Libraries and their functions.
#include <algorithm>

#include "kvstation/calls/CallFacts.h"
#include "kvstation/calls/CallRow.h"
#include "kvstation/calls/StationDraft.h"

namespace kvstation {
namespace {

using simwin::ObservedCall;

constexpr std::string_view kLibrarySamples = R"([{"clientName": "ANOTHER7"}, 7])";

// A library that a machine has only where a product is installed: a station describes that product.
struct ProductLibrary {
    std::string_view library;
    const char* member;
    void (*describe)(simwin::Station& station);
};
constexpr ProductLibrary kProductLibraries[] = {{"wfapi64.dll", "citrix",
                                                 [](simwin::Station& station) {
                                                     if (!station.citrix)
                                                         station.citrix.emplace();
                                                 }},
                                                {"KVVCD32.dll", "vcdVersion", [](simwin::Station& station) {
                                                     if (!station.vcdVersion)
                                                         station.vcdVersion = 0;
                                                 }}};

const ProductLibrary* productLibrary(std::string_view name) {
    const auto* found = std::ranges::find_if(
        kProductLibraries, [&](const ProductLibrary& one) { return simwin::equalNoCase(one.library, name); });
    return found != std::end(kProductLibraries) ? found : nullptr;
}

Place placeOfMissing(std::string item) {
    return {.kind = Place::Kind::Item, .member = {"missing"}, .value = std::move(item)};
}

Place placeOfLibrary(const ObservedCall& call) {
    const std::string name = utf8At(call, 0);
    const ProductLibrary* product = productLibrary(name);
    return product != nullptr ? memberPlace({product->member}) : placeOfMissing(name);
}

Place placeOfFunction(const ObservedCall& call) {
    return call.subject.empty() ? Place{} : placeOfMissing(call.subject + "!" + utf8At(call, 1));
}

void addMissing(simwin::Station& station, const std::string& item) {
    if (std::ranges::find(station.missing, item) == station.missing.end())
        station.missing.push_back(item);
}

void keepLibrary(StationDraft& draft, const ObservedCall& call) {
    const std::string name = textAt(call, 0);
    const ProductLibrary* product = productLibrary(name);
    if (call.succeeded)
        draft.libraries[simwin::numberOf(call.result)] = name;
    if (call.succeeded && product != nullptr)
        product->describe(draft.station);
    if (!call.succeeded && product == nullptr)
        addMissing(draft.station, name);
}

void keepFunction(StationDraft& draft, const ObservedCall& call) {
    const auto library = draft.libraries.find(numberAt(call, 0));
    if (!call.succeeded && library != draft.libraries.end())
        addMissing(draft.station, library->second + "!" + textAt(call, 1));
}

}  // namespace

KV_CALL(GetModuleHandleA, asks("whether the library is loaded", placeOfLibrary, kLibrarySamples), kTellsNothing,
        keepLibrary);
KV_CALL(LoadLibraryA, asks("whether the library is there", placeOfLibrary, kLibrarySamples), kTellsNothing,
        keepLibrary);
KV_CALL(GetProcAddress, asks("whether the library has the function", placeOfFunction), kTellsNothing, keepFunction);
KV_CALL(FreeLibrary, kClearance, kTellsNothing, kKeepsNothing);

}  // namespace kvstation
