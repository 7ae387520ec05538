// What is given out when no option asks for a form.
#include "kvstation/forms/PrintedForm.h"
#include "kvstation/forms/RowTable.h"
#include "kvstation/rows/Frames.h"
#include "kvstation/text/VisibleText.h"

namespace kvstation {
namespace {

class TableForm : public RowForm {
  public:
    explicit TableForm(FieldList fields) : m_fields(std::move(fields)), m_table(m_fields) {}

    std::string encode(const StationRow& row) override {
        std::string bytes;
        for (const std::string& cell : tableCells(row, m_fields))
            appendFrame(bytes, cell);
        return bytes;
    }
    void take(std::string_view encoded) override {
        std::vector<std::string> cells;
        for (const std::string_view cell : framesIn(encoded))
            cells.emplace_back(cell);
        m_output.add(m_table.add(std::move(cells)));
    }
    void finish() override {
        m_output.add(m_table.finish());
        m_output.flush();
    }

  private:
    FieldList m_fields;
    TableWriter m_table;
    ResultBuffer m_output;
};

}  // namespace

std::unique_ptr<RowForm> makeTable(const FieldList& fields) {
    return std::make_unique<TableForm>(fields);
}

std::unique_ptr<RowForm> makeViews(const TextOptions& options) {
    return std::make_unique<PrintedForm>(
        [options](const StationRow& row) { return visible(row.name) + ":\n" + textView(row.report, options) + "\n"; });
}

}  // namespace kvstation
