// Stations that would register under one name.
#pragma once

#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace kvstation {

class Collisions {
  public:
    // A station's szStation as it is and as it would be.
    void add(const std::string& name, std::string_view before, std::string_view after);

    struct Collision {
        std::string station;             // the szStation of them all
        std::vector<std::string> names;  // of the stations, in the order of their adding
        bool isNew;                      // not all of them have it today
    };
    // In the order of their szStation.
    std::vector<Collision> found() const;

  private:
    struct Member {
        std::string name;
        bool isRenamed;
    };
    std::map<std::string, std::vector<Member>, std::less<>> m_members;  // by szStation as it would be
};

}  // namespace kvstation
