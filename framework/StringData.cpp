#include "framework/StringData.h"

#include <algorithm>
#include <cstring>
#include <new>

#include "framework/Windows.h"

namespace {

// So many that no number of releases by other libraries, which count it, brings the shared empty text to 0.
constexpr int kNeverReleased = 0x40000000;

class ProcessHeapManager final : public IStringManager {
  public:
    StringData* Allocate(int capacity, int characterSize) noexcept override {
        if (capacity < 0 || characterSize < 1)
            return nullptr;
        const std::size_t size = sizeof(StringData) + (std::size_t{1} + static_cast<std::size_t>(capacity)) *
                                                          static_cast<std::size_t>(characterSize);
        void* block = HeapAlloc(GetProcessHeap(), 0, size);
        if (block == nullptr)
            return nullptr;
        auto* data = new (block) StringData{this, 0, capacity, 1};
        std::fill_n(data->Text(), characterSize, '\0');
        return data;
    }

    void Free(StringData* data) noexcept override {
        if (data != GetNilString())
            HeapFree(GetProcessHeap(), 0, data);
    }

    StringData* Reallocate(StringData* data, int capacity, int characterSize) noexcept override {
        StringData* larger = Allocate(capacity, characterSize);
        if (larger == nullptr)
            return nullptr;
        larger->length = std::min(data->length, capacity);
        std::memcpy(
            larger->Text(), data->Text(),
            (std::size_t{1} + static_cast<std::size_t>(larger->length)) * static_cast<std::size_t>(characterSize));
        Free(data);
        return larger;
    }

    StringData* GetNilString() noexcept override { return &g_nilString.data; }
    IStringManager* Clone() noexcept override { return this; }
};

constinit ProcessHeapManager g_manager;

}  // namespace

constinit NilString g_nilString = {{&g_manager, 0, 0, kNeverReleased}, {}};

IStringManager& GetStringManager() noexcept {
    return g_manager;
}
