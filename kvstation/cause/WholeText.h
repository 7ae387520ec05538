// The text of which a field holds no more than the beginning.
#pragma once

#include <optional>
#include <string>

#include "kvstation/Stage.h"
#include "simwin/Station.h"

namespace kvstation {

struct FieldCauses;

// The whole text of a field that was cut, as the module makes it; none of one that was not. Found by taking from the
// front what is seen already, so that the rest moves into the field; a list of very many names ends in "...".
std::optional<std::string> wholeText(const simwin::Station& station, const Collector& collector,
                                     const FieldCauses& causes);

}  // namespace kvstation
