#include "kvstation/sets/Unsteady.h"

#include <algorithm>

#include "kvstation/record/FixedDrives.h"

namespace kvstation {
namespace {

bool isSameDrive(const FixedDrive& left, const FixedDrive& right) {
    return left.letter == right.letter && left.label == right.label && left.fileSystem == right.fileSystem &&
           left.totalMB == right.totalMB;
}

// The field's width cuts the last drive, sooner behind "10% free" than behind "9% free".
bool isSameRest(std::string_view left, std::string_view right) {
    constexpr std::string_view kBeforeFree = " MB ";
    const auto steady = [&](std::string_view rest) { return rest.substr(0, rest.find(kBeforeFree)); };
    left = steady(left);
    right = steady(right);
    return left.starts_with(right) || right.starts_with(left);
}

bool isSameDrives(const std::string& left, const std::string& right) {
    const FixedDriveList old = parseFixedDrives(left);
    const FixedDriveList now = parseFixedDrives(right);
    return std::ranges::equal(old.drives, now.drives, isSameDrive) && isSameRest(old.rest, now.rest);
}

}  // namespace

bool differsByTheMoment(const Record& left, const Record& right, std::size_t field) {
    const std::string_view name = fields()[field].name;
    return name == "dwCurrentMhz" || (name == "szFixedDrives" && isSameDrives(left[field].text, right[field].text));
}

}  // namespace kvstation
