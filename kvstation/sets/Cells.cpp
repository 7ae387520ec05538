#include "kvstation/sets/Cells.h"

#include "kvstation/rows/Frames.h"

namespace kvstation {

std::string cellBytes(const std::vector<Cell>& cells) {
    std::string bytes;
    for (const Cell& cell : cells)
        appendFrame(bytes, static_cast<char>(cell.kind) + cell.value);
    return bytes;
}

std::vector<Cell> cellsFrom(std::string_view bytes) {
    std::vector<Cell> cells;
    for (const std::string_view frame : framesIn(bytes))
        cells.push_back({static_cast<Cell::Kind>(frame.front()), std::string(frame.substr(1))});
    return cells;
}

}  // namespace kvstation
