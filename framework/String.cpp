#include "framework/String.h"

#include <algorithm>
#include <cstdarg>
#include <cstdio>
#include <cstring>
#include <new>
#include <utility>

#include "framework/CRuntime.h"
#include "framework/StringData.h"

namespace {

// Most formatted texts are shorter.
constexpr std::size_t kShortFormatted = 256;
constexpr std::size_t kLongest = 0x7FFFFFFF - sizeof(StringData) - 1;

const char* OrEmpty(const char* text) noexcept {
    return text != nullptr ? text : "";
}

char* EmptyText() noexcept {
    return g_nilString.data.Text();
}

bool IsEmptyText(const char* text) noexcept {
    return text == EmptyText();
}

char* Allocate(std::size_t capacity) {
    StringData* data =
        capacity <= kLongest ? GetStringManager().Allocate(static_cast<int>(capacity), sizeof(char)) : nullptr;
    if (data == nullptr)
        throw std::bad_alloc();
    return data->Text();
}

void SetLength(char* text, std::size_t length) noexcept {
    StringData::Of(text)->length = static_cast<int>(length);
    text[length] = '\0';
}

std::size_t CapacityOf(char* text) noexcept {
    return static_cast<std::size_t>(StringData::Of(text)->capacity);
}

bool IsWhiteSpace(char character) noexcept {
    return std::strchr(" \t\n\v\f\r", character) != nullptr;
}

const unsigned char* Bytes(const char* text) noexcept {
    return reinterpret_cast<const unsigned char*>(text);
}

}  // namespace

CString::CString() noexcept : m_pszData(EmptyText()) {}

CString::CString(const char* text) : CString() {
    *this = text;
}

CString::CString(const char* text, int length) : CString() {
    if (length > 0)
        Assign(text, static_cast<std::size_t>(length));
}

CString::CString(const CString& other) noexcept : m_pszData(other.m_pszData) {
    if (!IsEmptyText(m_pszData))
        ++StringData::Of(m_pszData)->references;
}

CString::CString(CString&& other) noexcept : CString() {
    std::swap(m_pszData, other.m_pszData);
}

CString::~CString() {
    Release();
}

CString& CString::operator=(const CString& other) noexcept {
    CString copy(other);
    std::swap(m_pszData, copy.m_pszData);
    return *this;
}

CString& CString::operator=(CString&& other) noexcept {
    std::swap(m_pszData, other.m_pszData);
    return *this;
}

CString& CString::operator=(const char* text) {
    Assign(OrEmpty(text), std::strlen(OrEmpty(text)));
    return *this;
}

int CString::GetLength() const noexcept {
    return StringData::Of(m_pszData)->length;
}

void CString::Empty() noexcept {
    Release();
    m_pszData = EmptyText();
}

CString& CString::operator+=(const char* text) {
    Append(OrEmpty(text), std::strlen(OrEmpty(text)));
    return *this;
}

CString& CString::operator+=(char character) {
    Append(&character, 1);
    return *this;
}

void CString::Format(const char* format, ...) {
    va_list arguments;
    va_start(arguments, format);
    va_list again;
    va_copy(again, arguments);
    char text[kShortFormatted];
    const int result = std::vsnprintf(text, sizeof text, format, arguments);
    va_end(arguments);
    const auto length = static_cast<std::size_t>(std::max(result, 0));
    if (length < sizeof text) {
        Assign(text, length);
    } else {
        // A new buffer, because the arguments may point into this one.
        CString formatted;
        formatted.m_pszData = Allocate(length);
        std::vsnprintf(formatted.m_pszData, length + 1, format, again);
        SetLength(formatted.m_pszData, length);
        *this = std::move(formatted);
    }
    va_end(again);
}

int CString::Find(char character) const noexcept {
    return character != '\0' ? PositionOf(_mbschr(Bytes(m_pszData), static_cast<unsigned char>(character))) : -1;
}

int CString::Find(const char* part) const noexcept {
    return PositionOf(_mbsstr(Bytes(m_pszData), Bytes(part)));
}

int CString::ReverseFind(char character) const noexcept {
    return character != '\0' ? PositionOf(_mbsrchr(Bytes(m_pszData), static_cast<unsigned char>(character))) : -1;
}

int CString::PositionOf(const unsigned char* found) const noexcept {
    return found != nullptr ? static_cast<int>(found - Bytes(m_pszData)) : -1;
}

CString CString::Left(int count) const {
    return Mid(0, count);
}

CString CString::Right(int count) const {
    return Mid(GetLength() - std::max(count, 0));
}

CString CString::Mid(int first) const {
    return Mid(first, GetLength());
}

CString CString::Mid(int first, int count) const {
    first = std::clamp(first, 0, GetLength());
    count = std::min(count, GetLength() - first);
    if (count == GetLength())
        return *this;
    return CString(m_pszData + first, count);
}

CString& CString::MakeUpper() {
    _mbsupr(reinterpret_cast<unsigned char*>(Unshare()));
    return *this;
}

CString& CString::MakeLower() {
    _mbslwr(reinterpret_cast<unsigned char*>(Unshare()));
    return *this;
}

CString& CString::Trim() {
    int first = 0;
    int end = GetLength();
    while (first < end && IsWhiteSpace(m_pszData[first]))
        ++first;
    while (end > first && IsWhiteSpace(m_pszData[end - 1]))
        --end;
    // A lead byte takes the first of them for its second byte.
    if (end < GetLength() && Left(end + 1).ReverseFind(m_pszData[end]) != end)
        ++end;
    return *this = Mid(first, end - first);
}

int CString::Compare(const char* text) const noexcept {
    return _mbscmp(Bytes(m_pszData), Bytes(OrEmpty(text)));
}

int CString::CompareNoCase(const char* text) const {
    CString left(*this);
    CString right(text);
    return left.MakeLower().Compare(right.MakeLower());
}

void CString::Assign(const char* text, std::size_t length) {
    if (length == 0) {
        Empty();
        return;
    }
    if (StringData::Of(m_pszData)->references != 1 || CapacityOf(m_pszData) < length) {
        char* data = Allocate(length);
        std::memcpy(data, text, length);
        Release();
        m_pszData = data;
    } else {
        std::memmove(m_pszData, text, length);
    }
    SetLength(m_pszData, length);
}

void CString::Append(const char* text, std::size_t length) {
    if (length == 0)
        return;
    const std::size_t before = static_cast<std::size_t>(GetLength());
    if (StringData::Of(m_pszData)->references != 1 || CapacityOf(m_pszData) - before < length) {
        // Half as much again, so that a list built item by item is not copied for every item.
        char* data = Allocate(before + length + (before + length) / 2);
        std::memcpy(data, m_pszData, before);
        std::memcpy(data + before, text, length);
        Release();
        m_pszData = data;
    } else {
        std::memmove(m_pszData + before, text, length);
    }
    SetLength(m_pszData, before + length);
}

char* CString::Unshare() {
    if (!IsEmptyText(m_pszData) && StringData::Of(m_pszData)->references > 1) {
        const std::size_t length = static_cast<std::size_t>(GetLength());
        char* data = Allocate(length);
        std::memcpy(data, m_pszData, length);
        SetLength(data, length);
        Release();
        m_pszData = data;
    }
    return m_pszData;
}

void CString::Release() noexcept {
    StringData* data = StringData::Of(m_pszData);
    // By the block's own manager: another library may have filled the string.
    if (!IsEmptyText(m_pszData) && --data->references <= 0)
        data->manager->Free(data);
}

CString CString::Join(const char* left, std::size_t leftLength, const char* right, std::size_t rightLength) {
    CString result;
    if (leftLength + rightLength == 0)
        return result;
    result.m_pszData = Allocate(leftLength + rightLength);
    std::memcpy(result.m_pszData, left, leftLength);
    std::memcpy(result.m_pszData + leftLength, right, rightLength);
    SetLength(result.m_pszData, leftLength + rightLength);
    return result;
}

CString operator+(const CString& left, const char* right) {
    return CString::Join(left, static_cast<std::size_t>(left.GetLength()), OrEmpty(right), std::strlen(OrEmpty(right)));
}

CString operator+(const char* left, const CString& right) {
    return CString::Join(OrEmpty(left), std::strlen(OrEmpty(left)), right, static_cast<std::size_t>(right.GetLength()));
}
