// The options that choose a form of rows, and rows given out in it.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "kvstation/rows/StationRow.h"
#include "kvstation/sets/Jobs.h"
#include "kvstation/sets/Sources.h"
#include "kvstation/verbs/ResultOptions.h"

namespace CLI {
class App;
class Option;
}  // namespace CLI

namespace kvstation {

struct RowFormKind;

struct RowOptions {
    const RowFormKind* form = nullptr;  // none: not asked for
    std::string file;                   // of a form that goes into one, else empty

    bool isEmpty() const { return form == nullptr; }
};

struct SetOptions {
    Places places;
    JobOptions jobs;
    RowOptions rows;

    // Of one station or record there is a page, its bytes and more; of a set, or as a row, there is not.
    bool isSet() const { return !rows.isEmpty() || !isOne(places); }
};

// For verbs that have ResultOptions. `options` must live as long as the command. Of one record the forms are those that
// are printed. Gives what chooses a form.
std::vector<CLI::Option*> addRowOptions(CLI::App& command, RowOptions& options);
void addSetOptions(CLI::App& command, SetOptions& options);

// Throws WrongUse for what there is of one record alone.
void refuseWishesOfOne(const ResultOptions& result);

// One row by itself.
void giveOutRow(const StationRow& row, const RowOptions& rows, const ResultOptions& result);

// Each source's row in its form; gives the exit status. Refuses what there is of one record alone.
int giveOutRows(const SetOptions& set, const ResultOptions& result, SourceKind kind, const std::string& what,
                const std::function<StationRow(const Source&)>& rowOf);

}  // namespace kvstation
