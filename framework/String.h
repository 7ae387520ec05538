#pragma once

#include <cstddef>

// A narrow text in the ANSI code page, reference-counted: a copy shares the buffer until one of the two changes.
//
// The object is one pointer to the characters, which are always terminated. A header stands before them
// (framework/StringData.h), and both come from the process heap, so that a companion DLL can fill a string of ours and
// either side can release it. Lengths and positions are bytes, without the terminator, also where a character has two:
// Left, Right and Mid can cut one in half.
// Not for use by two threads at once. A failed allocation throws std::bad_alloc; nothing else is thrown.
class CString {
  public:
    CString() noexcept;
    CString(const char* text);  // null reads as empty
    CString(const char* text, int length);
    CString(const CString& other) noexcept;
    CString(CString&& other) noexcept;
    ~CString();

    CString& operator=(const CString& other) noexcept;
    CString& operator=(CString&& other) noexcept;
    CString& operator=(const char* text);  // null reads as empty; `text` may lie inside this string

    operator const char*() const noexcept { return m_pszData; }
    int GetLength() const noexcept;
    bool IsEmpty() const noexcept { return GetLength() == 0; }
    void Empty() noexcept;

    CString& operator+=(const char* text);  // null reads as empty; `text` may lie inside this string
    CString& operator+=(char character);

// Replaces the text by the formatted one. The arguments may be this string's own text.
#ifdef __GNUC__
    __attribute__((format(printf, 2, 3)))
#endif
    void
    Format(const char* format, ...);

    // First (last) position of `character` or `part`; -1 when it does not occur. By characters of the ANSI code page: a
    // backslash is not found in the second byte of another character.
    int Find(char character) const noexcept;
    int Find(const char* part) const noexcept;
    int ReverseFind(char character) const noexcept;

    // The first or last `count` characters, or those from `first` on; counts beyond the text or below 0 are cut.
    CString Left(int count) const;
    CString Right(int count) const;
    CString Mid(int first) const;
    CString Mid(int first, int count) const;

    // Upper and lower case by the ANSI code page.
    CString& MakeUpper();
    CString& MakeLower();

    // Removes blanks, tabs, line ends, vertical tabs and form feeds at both ends.
    CString& Trim();

    // Below 0, 0 or above 0 as this text stands before, with or behind `text`, character by character; NoCase compares
    // the lower-case forms.
    int Compare(const char* text) const noexcept;
    int CompareNoCase(const char* text) const;

    // Replaces the text by the entry of the module's string table; false, and empty, when there is none.
    bool LoadString(unsigned int id);

    friend CString operator+(const CString& left, const char* right);
    friend CString operator+(const char* left, const CString& right);

  private:
    static CString Join(const char* left, std::size_t leftLength, const char* right, std::size_t rightLength);
    int PositionOf(const unsigned char* found) const noexcept;
    void Assign(const char* text, std::size_t length);
    void Append(const char* text, std::size_t length);
    char* Unshare();
    void Release() noexcept;

    char* m_pszData;
};

CString operator+(const CString& left, const char* right);
CString operator+(const char* left, const CString& right);
inline CString operator+(const CString& left, const CString& right) {
    return left + static_cast<const char*>(right);
}

inline bool operator==(const CString& left, const char* right) noexcept {
    return left.Compare(right) == 0;
}
inline bool operator==(const CString& left, const CString& right) noexcept {
    return left.Compare(static_cast<const char*>(right)) == 0;
}
