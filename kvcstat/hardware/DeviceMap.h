#pragma once

#include <memory>

#include "kvcstat/hardware/DeviceInformation.h"

// The devices by description, in the order in which the descriptions were first found. The map owns them.
class CDeviceMap : public CMapStringToOb {
  public:
    ~CDeviceMap() override { DeleteAll(); }

    // Stores the first device of a description, with the count 1. A further one is counted with the first and deleted,
    // whatever its class. Always 0.
    int Add(std::unique_ptr<CDeviceInformation> device);

    // Deletes every device and empties the map.
    void DeleteAll() noexcept;

    // Like GetNextAssoc, for those who want the device alone.
    CDeviceInformation& GetNextDevice(POSITION& place) const;
};
