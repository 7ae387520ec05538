// Stations and records on disk as a set.
#pragma once

#include <map>

#include "kvstation/sets/RecordSet.h"

namespace kvstation {

class FolderSet : public RecordSet {
  public:
    // Those whose name an earlier one has, and those that are wrong already, are left out.
    void add(std::vector<Source> sources, const std::function<Record(const Source&)>& read);

    Record record(const std::string& name) override;

  private:
    struct Entry {
        Source source;
        std::function<Record(const Source&)> read;
    };
    std::map<std::string, Entry, std::less<>> m_entries;
};

}  // namespace kvstation
