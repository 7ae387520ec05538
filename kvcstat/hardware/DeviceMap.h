#pragma once

#include "framework/Collections.h"

class CDeviceMap : public CMapStringToOb {
  public:
    CDeviceMap() : CMapStringToOb(10) {}
    ~CDeviceMap() override = default;
};
