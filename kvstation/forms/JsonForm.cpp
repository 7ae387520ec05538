#include "kvstation/forms/PrintedForm.h"
#include "kvstation/rows/RowJson.h"

namespace kvstation {
namespace {

std::unique_ptr<RowForm> makeJson(const FieldList& fields, const std::string&) {
    const auto writer = std::make_shared<RowJsonWriter>(fields);
    return std::make_unique<PrintedForm>([writer](const StationRow& row) { return writer->line(row); });
}

}  // namespace

const RowFormKind kJsonForm = {"--ndjson", "Print a JSON object a line for each record", makeJson};

}  // namespace kvstation
