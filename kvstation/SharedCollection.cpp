#include "kvstation/SharedCollection.h"

#include "kvstation/Errors.h"

namespace kvstation {

MappedCollection::MappedCollection(HANDLE memory)
    : m_shared(static_cast<SharedCollection*>(
          MapViewOfFile(memory, FILE_MAP_READ | FILE_MAP_WRITE, 0, 0, sizeof(SharedCollection)))) {
    if (m_shared == nullptr)
        throw Failure(describeSystemError("MapViewOfFile", "the collection's memory", GetLastError()));
}

MappedCollection::~MappedCollection() {
    UnmapViewOfFile(m_shared);
}

}  // namespace kvstation
