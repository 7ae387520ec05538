#include "kvstation/sets/Collisions.h"

#include <algorithm>

namespace kvstation {

void Collisions::add(const std::string& name, std::string_view before, std::string_view after) {
    m_members[std::string(after)].push_back({name, before != after});
}

std::vector<Collisions::Collision> Collisions::found() const {
    std::vector<Collision> collisions;
    for (const auto& [station, members] : m_members) {
        if (members.size() < 2)
            continue;
        Collision& collision = collisions.emplace_back(Collision{station, {}, false});
        for (const Member& member : members)
            collision.names.push_back(member.name);
        collision.isNew = std::ranges::any_of(members, &Member::isRenamed);
    }
    return collisions;
}

}  // namespace kvstation
