// The forms in which rows are given out.
#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "kvstation/report/TextView.h"
#include "kvstation/rows/StationRow.h"

namespace kvstation {

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

// One that an option asks for.
struct RowFormKind {
    const char* option;
    const char* help;
    std::unique_ptr<RowForm> (*make)(const FieldList& fields, const std::string& file);
    // Of a form that goes into one file and has all fields: what is wrong with the file's name. Others are printed.
    std::string (*checkFile)(const std::string& file) = nullptr;
};

extern const RowFormKind kJsonForm;
extern const RowFormKind kCsvForm;
extern const RowFormKind kDatabaseForm;
// In the order of the tool's help.
inline constexpr const RowFormKind* kRowForms[] = {&kJsonForm, &kCsvForm, &kDatabaseForm};

// For people: a table of the fields, and each record as it is shown by itself, below its name.
std::unique_ptr<RowForm> makeTable(const FieldList& fields);
std::unique_ptr<RowForm> makeViews(const TextOptions& options);

}  // namespace kvstation
