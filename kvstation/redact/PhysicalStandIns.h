// Stand-ins for physical addresses: of as many bytes, and as long as texts.
#pragma once

#include <functional>
#include <map>
#include <string>
#include <string_view>

#include "kvstation/redact/Beginnings.h"
#include "kvstation/redact/Chance.h"
#include "kvstation/redact/FormStandIns.h"
#include "kvstation/redact/PageText.h"

namespace kvstation {

// A stand-in says that it was made up by the place itself (is locally administered), and calls one or many as the
// address did. What has all bits clear or set is nobody's and stays.
class PhysicalStandIns : public FormStandIns {
  public:
    // Written as digits, in lower case, an address is a word like any other.
    using AddWord = std::function<void(const PageText& digits, const PageText& standIn)>;

    // Calls addWord for each that has enough bytes to be one, as soon as it is known.
    PhysicalStandIns(FormsByKind& forms, Chance& chance, AddWord addWord)
        : FormStandIns(forms, {PartKind::Physical}), m_chance(chance), m_addWord(std::move(addWord)) {}

    // Pairs of digits with one character between them.
    void learn(std::string_view shown, TextPlace place) override;
    std::string standIn(std::string_view shown, TextPlace place) override;

    void learnBytes(std::string_view bytes) override;
    // The address itself when it is not known.
    std::string ofBytes(std::string_view bytes) override;
    void replaceIn(std::string& data) const override;

  private:
    std::string make(std::string_view bytes);

    Chance& m_chance;
    AddWord m_addWord;
    std::map<std::string, std::string> m_standIns;  // bytes
    Beginnings m_inside;                            // those that are looked for in data
};

}  // namespace kvstation
