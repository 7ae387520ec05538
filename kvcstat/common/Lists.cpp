// Texts and lists.
#include <cstring>

#include "framework/CRuntime.h"
#include "kvcstat/common/StatGlobal.h"

void CStatGlobal::AppendString(CString& list, const char* text, const char* separator) const {
    if (!list.IsEmpty())
        list += separator;
    list += text;
}

void CStatGlobal::AppendNumbered(CString& list, int number, const char* text, const char* separator) const {
    CString item;
    item.Format("%d %s", number, text);
    AppendString(list, item, separator);
}

void CStatGlobal::DeleteObList(CObList& list) const {
    for (POSITION place = list.GetHeadPosition(); place != nullptr;)
        delete list.GetNext(place);
    list.RemoveAll();
}

const char* CStatGlobal::StrStr(const char* text, const char* part) const {
    return std::strstr(text, part);
}

int CStatGlobal::MbsCmp(const unsigned char* left, const unsigned char* right) const {
    return _mbscmp(left, right);
}
