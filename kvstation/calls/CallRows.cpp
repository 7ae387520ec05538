#include "kvstation/calls/CallRows.h"

#include <algorithm>
#include <functional>
#include <unordered_map>
#include <vector>

namespace kvstation {
namespace {

// Some functions are exported by two libraries.
std::vector<const CallRow*> collectRows() {
    std::vector<const CallRow*> rows = {
#define SIMWIN_CALL(library, name) &calls::name,
#define SIMWIN_LOOKUP(library, name) &calls::name,
#include "simwin/calls/Calls.inc"
    };
    std::ranges::sort(rows, {}, &CallRow::call);
    rows.erase(std::unique(rows.begin(), rows.end()), rows.end());
    return rows;
}

const std::vector<const CallRow*>& callRows() {
    static const std::vector<const CallRow*> rows = collectRows();
    return rows;
}

bool asksStation(const CallRow* row) {
    return row->asks.purpose == Purpose::Question;
}

}  // namespace

const CallRow* findCallRow(std::string_view call) {
    const std::vector<const CallRow*>& rows = callRows();
    const auto found = std::ranges::lower_bound(rows, call, {}, &CallRow::call);
    return found != rows.end() && (*found)->call == call ? *found : nullptr;
}

const CallRow* findQuestion(std::string_view call) {
    const CallRow* row = findCallRow(call);
    return row != nullptr && asksStation(row) ? row : nullptr;
}

std::span<const CallRow* const> questions() {
    static const std::vector<const CallRow*> found = [] {
        std::vector<const CallRow*> all = callRows();
        std::erase_if(all, std::not_fn(asksStation));
        return all;
    }();
    return found;
}

bool isQuestion(const char* call) {
    static std::unordered_map<const char*, bool> known;
    const auto [place, isNew] = known.try_emplace(call);
    if (isNew)
        place->second = findQuestion(call) != nullptr;
    return place->second;
}

Answer answerOf(const simwin::ObservedCall& call) {
    const CallRow* row = findCallRow(call.name);
    return row != nullptr ? row->tells(call) : Answer{};
}

std::optional<CallError> errorOf(const simwin::ObservedCall& call) {
    const CallRow* row = findCallRow(call.name);
    if (row == nullptr || call.succeeded || call.error == 0)
        return std::nullopt;
    return CallError{call.error, std::string(row->errorName(call.error))};
}

}  // namespace kvstation
