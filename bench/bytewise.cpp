// SPDX-License-Identifier: MIT
#include "coders.h"

void EncodeBytewise(Byte* pText, const Byte* pData, std::size_t uGroups) {
    for (std::size_t u = 0; u < uGroups; ++u, pText += 4, pData += 3) {
        pText[0] = static_cast<Byte>((pData[0] & 0x3F) + 32);
        pText[1] = static_cast<Byte>(((pData[0] >> 6 << 4) | (pData[1] & 0x0F)) + 32);
        pText[2] = static_cast<Byte>(((pData[1] >> 4 << 2) | (pData[2] & 0x03)) + 32);
        pText[3] = static_cast<Byte>((pData[2] >> 2) + 32);
    }
}

void DecodeBytewise(Byte* pData, const Byte* pText, std::size_t uGroups) {
    for (std::size_t u = 0; u < uGroups; ++u, pText += 4, pData += 3) {
        const int iSecond = pText[1] - 32;
        const int iThird = pText[2] - 32;
        pData[0] = static_cast<Byte>((pText[0] - 32) | iSecond >> 4 << 6);
        pData[1] = static_cast<Byte>((iSecond & 0x0F) | iThird >> 2 << 4);
        pData[2] = static_cast<Byte>((iThird & 0x03) | (pText[3] - 32) << 2);
    }
}
