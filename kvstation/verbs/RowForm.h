// The forms in which rows are given out, and the options that choose one.
#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "kvstation/rows/StationRow.h"
#include "kvstation/sets/Jobs.h"
#include "kvstation/sets/Sources.h"
#include "kvstation/verbs/ResultOptions.h"

namespace CLI {
class App;
class Option;
}  // namespace CLI

namespace kvstation {

struct RowFormKind;  // a row of the source's table

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

// For verbs that have ResultOptions. `options` must live as long as the command. Gives those that choose a form.
std::vector<CLI::Option*> addRowOptions(CLI::App& command, RowOptions& options);
void addSetOptions(CLI::App& command, SetOptions& options);

// Throws WrongUse for what there is of one record alone.
void refuseWishesOfOne(const ResultOptions& result);

class RowForm {
  public:
    RowForm() = default;
    RowForm(const RowForm&) = delete;
    RowForm& operator=(const RowForm&) = delete;
    virtual ~RowForm() = default;

    // What `take` needs of a row. In any process.
    virtual std::string encode(const StationRow& row) = 0;

    // The rest happens in one process: once at first, for each row in its turn, and once at the end.
    virtual void begin() {}
    virtual void take(std::string_view encoded) = 0;
    virtual void finish() = 0;
};

// Refuses the same.
std::unique_ptr<RowForm> rowForm(const RowOptions& rows, const ResultOptions& result);

// One row by itself.
void giveOutRow(const StationRow& row, const RowOptions& rows, const ResultOptions& result);

// Each source's row in its form; gives the exit status.
int giveOutRows(const SetOptions& set, const ResultOptions& result, SourceKind kind, const std::string& what,
                const std::function<StationRow(const Source&)>& rowOf);

}  // namespace kvstation
