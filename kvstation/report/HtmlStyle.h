// The looks of the page: light and dark, phone and paper.
#pragma once

namespace kvstation {

extern const char* const kPageStyle;

}  // namespace kvstation
