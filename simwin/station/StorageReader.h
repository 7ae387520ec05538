#pragma once

#include <map>
#include <vector>

#include "simwin/station/JsonView.h"
#include "simwin/station/Station.h"

namespace simwin {

void readDrives(const JsonView& view, std::map<char, Drive>& drives);
void readFiles(const JsonView& view, std::vector<File>& files);

}  // namespace simwin
