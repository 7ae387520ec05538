#include "kvstation/sets/FolderSet.h"

#include <algorithm>

namespace kvstation {

void FolderSet::add(std::vector<Source> sources, const std::function<Record(const Source&)>& read) {
    for (Source& source : sources) {
        if (!source.wrong.empty()) {
            if (std::ranges::find(m_wrong, source.wrong) == m_wrong.end())
                m_wrong.push_back(source.wrong);
            continue;
        }
        const auto [entry, isNew] = m_entries.try_emplace(source.name, Entry{source, read});
        if (isNew)
            m_names.push_back(source.name);
        else
            m_wrong.push_back(doubleText(source, entry->second.source));
    }
    std::ranges::sort(m_names);
}

Record FolderSet::record(const std::string& name) {
    const Entry& entry = m_entries.find(name)->second;
    return entry.read(entry.source);
}

}  // namespace kvstation
