// The forms in which rows are given out, and the options that choose one.
#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "kvstation/ResultOptions.h"
#include "kvstation/sets/Jobs.h"
#include "kvstation/sets/Sources.h"
#include "kvstation/sets/StationRow.h"

namespace kvstation {

struct SetOptions {
    Places places;
    JobOptions jobs;
    bool ndjson = false;
    bool csv = false;
    std::string database;  // a file's name; empty: not asked for

    // Of one station or record there is a page, its bytes and more; of a set, or as a row, there is not.
    bool isSet() const { return ndjson || csv || !database.empty() || !isOne(places); }
};

// For a verb that has ResultOptions. `options` must live as long as the command.
void addSetOptions(CLI::App& command, SetOptions& options);

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

// Throws WrongUse for what there is of one record alone.
std::unique_ptr<RowForm> rowForm(const SetOptions& set, const ResultOptions& result);

// Each source's row in its form; gives the exit status.
int giveOutRows(const SetOptions& set, const ResultOptions& result, SourceKind kind, const std::string& what,
                const std::function<StationRow(const Source&)>& rowOf);

}  // namespace kvstation
