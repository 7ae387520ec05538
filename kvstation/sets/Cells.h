// A row as a list of cells on its way between two of the tool's processes.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace kvstation {

struct Cell {
    enum class Kind : char { Nothing, Text, Number, Bytes };
    Kind kind = Kind::Nothing;
    std::string value;  // of a number in decimal
};

std::string cellBytes(const std::vector<Cell>& cells);
std::vector<Cell> cellsFrom(std::string_view bytes);

}  // namespace kvstation
