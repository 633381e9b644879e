// SPDX-License-Identifier: MIT
#include "listmodel.h"

namespace fuzz {

void ListModel::Set(char* pchSection, char* pchKey, const std::string& value) {
    const ExactText text(value);
    CLAIM(m_pObject->m_cProperties.SetProperty(pchKey, text.Chars(), pchSection));
    m_cMap[{pchSection, pchKey}] = value;
}

void ListModel::SetNumber(char* pchSection, char* pchKey, int iValue, bool wide) {
    VESK::PROPERTIES& list = m_pObject->m_cProperties;
    CLAIM(wide ? list.SetProperty(pchKey, iValue * 1000000000LL, pchSection)
               : list.SetProperty(pchKey, iValue, pchSection));
    m_cMap[{pchSection, pchKey}] = std::to_string(iValue) + (wide && iValue != 0 ? "000000000" : "");
}

void ListModel::PutByHand(char* pchSection, char* pchKey) {
    VESK::PROPERTIES& list = m_pObject->m_cProperties;
    VESK::Byte2Type index;
    if (!list.FindProperty(pchKey, &index, pchSection)) {
        return;
    }
    std::string& value = m_cMap[{pchSection, pchKey}];
    value.resize((value.size() + 1) / 2);
    list.m_pachValues[index][value.size()] = '\0'; // a text may end within its block
    for (char** const table : {list.m_pachSections, list.m_pachKeys, list.m_pachValues}) {
        char* const text = table[index];
        if (table != list.m_pachValues || value.size() % 2 == 0) {
            table[index] = strdup(text);
            std::free(text);
        }
    }
}

void ListModel::SetPair(char* pchSection, char* pchPair) {
    const std::string pair = pchPair;
    const std::size_t equals = pair.find('=');
    CLAIM(m_pObject->m_cProperties.AddKeyValuePair(pchSection, pchPair));
    if (equals != std::string::npos) {
        m_cMap[{pchSection, pair.substr(0, equals)}] = pair.substr(equals + 1);
    }
}

void ListModel::Get(char* pchSection, char* pchKey, std::size_t size) const {
    VESK::PROPERTIES& list = m_pObject->m_cProperties;
    const auto at = m_cMap.find({pchSection, pchKey});
    const bool found = at != m_cMap.end();
    const std::string expected = found ? at->second : "none";
    const Exact buffer(size);
    VESK::Byte2Type b2Length = 0;
    CLAIM(list.GetProperty(pchKey, buffer.Chars(), static_cast<VESK::Byte2Type>(size), VESK::Text("none"),
                           pchSection) == found);
    CLAIM(buffer.Chars() == expected.substr(0, size - 1));
    CLAIM(list.GetPropertyLength(pchKey, &b2Length, pchSection) == found);
    CLAIM(!found || b2Length == expected.size());
}

void ListModel::CopyOf(const ListModel& other) {
    CLAIM(m_pObject->Copy(other.m_pObject.get()));
    for (const auto& [place, value] : other.m_cMap) {
        m_cMap[place] = value;
    }
}

void ListModel::DuplicateOf(const ListModel& other) {
    m_pObject.reset(other.m_pObject->Duplicate());
    m_cMap = decltype(m_cMap)(other.m_cMap);
    m_cMap.insert({{"Standard", "QObjectType"}, "QObject"}); // a new object has a type in any case
}

void ListModel::Reset() {
    CLAIM(m_pObject->m_cProperties.Reset());
    m_cMap.clear();
}

void ListModel::Check() const {
    const VESK::PROPERTIES& list = m_pObject->m_cProperties;
    CLAIM(list.m_b2PropertyCount == m_cMap.size());
    for (unsigned int u = 0; u < list.m_b2PropertyCount; ++u) {
        const auto at = m_cMap.find({list.m_pachSections[u], list.m_pachKeys[u]});
        CLAIM(at != m_cMap.end() && at->second == list.m_pachValues[u]);
    }
}

} // namespace fuzz
