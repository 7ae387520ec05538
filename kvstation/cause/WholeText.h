// The text of which a field holds no more than the beginning.
#pragma once

#include <optional>
#include <string>

#include "kvstation/collect/Stage.h"
#include "simwin/station/Station.h"

namespace kvstation {

struct FieldCauses;

struct WholeText {
    std::string text;     // in UTF-8
    bool goesOn = false;  // there is more behind it that no run brought into sight
};

// Such as "596" or "more than 8000".
std::string lengthOf(const WholeText& whole);

// The whole text of a field that was cut, as the module makes it; none of one that was not. Found by taking from the
// front what is seen already, so that the rest moves into the field.
std::optional<WholeText> wholeText(const simwin::Station& station, const Collector& collector,
                                   const FieldCauses& causes);

}  // namespace kvstation
