// SPDX-License-Identifier: MIT
// A data object and a map to which the same is done.
#ifndef FWLIB_FUZZ_LISTMODEL_H
#define FWLIB_FUZZ_LISTMODEL_H

#include "support.h"

#include <map>

namespace fuzz {

class ListModel {
public:
    void Set(char* pchSection, char* pchKey, const std::string& value);
    void SetNumber(char* pchSection, char* pchKey, int iValue, bool wide);
    void PutByHand(char* pchSection,
                   char* pchKey);                  // the entry's texts, if any, again in blocks of their size
    void SetPair(char* pchSection, char* pchPair); // ends the key with a terminator
    void Get(char* pchSection, char* pchKey, std::size_t size) const;
    void CopyOf(const ListModel& other);
    void DuplicateOf(const ListModel& other);
    void Reset();
    void Check() const;

private:
    std::unique_ptr<VESK::QObject> m_pObject = std::make_unique<VESK::QObject>();
    std::map<std::pair<std::string, std::string>, std::string> m_cMap = {
        {{"Standard", "QObjectType"}, "QObject"}};
};

} // namespace fuzz

#endif
