// The calls of Windows that end a process, as the library and those beside it make them. Windows only.
#pragma once

#include <list>

#include "kvstation/collect/Library.h"
#include "redirect/Redirection.h"

namespace kvstation {

// For its life they go to EndingHandlers::exitBy, whichever thread makes them.
class EndingCalls {
  public:
    explicit EndingCalls(const Library& library);

  private:
    void watch(HMODULE module);

    std::list<redirect::Redirection> m_watched;
};

}  // namespace kvstation
