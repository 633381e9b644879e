// SPDX-License-Identifier: MIT
#include "model.h"

#include <algorithm>

namespace FwPipe {

std::string Element::Shown() const {
    return bNamed ? '"' + cName + '"' : cType.cText + " without a name";
}

int Pipeline::Find(const std::string& cName) const {
    const auto Found = m_cByName.find(cName);
    return Found == m_cByName.end() || Found->second.empty() ? -1 : Found->second.front();
}

void Pipeline::Rename(int iElement, const std::string& cName) {
    Element& cElement = *cElements[static_cast<std::size_t>(iElement)];
    if (cElement.bNamed) {
        std::vector<int>& cOld = m_cByName[cElement.cName];
        cOld.erase(std::find(cOld.begin(), cOld.end(), iElement));
    }
    std::vector<int>& cNew = m_cByName[cName];
    cNew.insert(std::lower_bound(cNew.begin(), cNew.end(), iElement), iElement);
    cElement.cName = cName;
    cElement.bNamed = true;
}

std::vector<std::string> Pipeline::Names() const {
    std::vector<std::string> cNames;
    for (const auto& pElement : cElements) {
        if (pElement->bNamed) {
            cNames.push_back(pElement->cName);
        }
    }
    return cNames;
}

} // namespace FwPipe
