// SPDX-License-Identifier: MIT
// Block records: binary data as one line of a text stream.
#include "fwlib/stdc/stdc/fwstdcstring.h"
#include "fwlib/streams/asciize.h"
#include "fwlib/streams/objectfilewrite.h"
#include "fwlib/streams/record.h"
#include "fwlib/streams/sread.h"
#include "fwlib/streams/suppress.h"
#include "fwlib/streams/swrite.h"
#include "fwlib/text.h"

namespace VESK {

namespace {

using Byte = unsigned char;

Byte* BytesOf(char* pchText) {
    return reinterpret_cast<Byte*>(pchText);
}

// Encodes a last group of uCount bytes, 1 or 2, padded with zeros.
void EncodeRest(const GroupCoder& cCoder, char* pchText, const Byte* pData, std::size_t uCount) {
    Byte abGroup[GroupBytes] = {};
    std::memcpy(abGroup, pData, uCount);
    cCoder.pEncode(BytesOf(pchText), abGroup, 1);
}

// Decodes uCount bytes, 1 or 2, of a last group. Its text may end after the characters that these need.
void DecodeRest(const GroupCoder& cCoder, Byte* pData, char* pchText, std::size_t uCount) {
    Byte abText[GroupCharacters] = {};
    Byte abGroup[GroupBytes];
    std::memcpy(abText, pchText, uCount + 1);
    cCoder.pDecode(abGroup, abText, 1);
    std::memcpy(pData, abGroup, uCount);
}

// Tells a recorder not to store the object as a complete one. Results do not change.
void TellLoss(SWrite& cWriter) {
    if (auto* const pWriter = OwnClass<ObjectFileWrite>::Of(&cWriter)) {
        pWriter->LoseBlock();
    }
}

constexpr Byte BackwardFlag = 2; // other values select the forward layout

} // namespace

void SWrite::AsciizeTriplets(char* pchText, unsigned int uGroups, char* pchData) {
    ChooseGroupCoder().pEncode(BytesOf(pchText), BytesOf(pchData), uGroups);
}

Byte4Type SWrite::WriteAsciized(char* pchData, unsigned int uCount) {
    const std::size_t uGroups = uCount / GroupBytes;
    const std::size_t uRest = uCount % GroupBytes;
    if (uGroups + (uRest > 0) > UINT32_MAX / GroupCharacters) {
        return 0;
    }
    const std::size_t uSize = (uGroups + (uRest > 0)) * GroupCharacters;
    char* const pchText = static_cast<char*>(fwmalloc(static_cast<unsigned int>(uSize > 0 ? uSize : 1)));
    if (!pchText) {
        return 0;
    }
    const GroupCoder& cCoder = ChooseGroupCoder();
    cCoder.pEncode(BytesOf(pchText), BytesOf(pchData), uGroups);
    if (uRest > 0) {
        EncodeRest(cCoder, pchText + uGroups * GroupCharacters, BytesOf(pchData) + uGroups * GroupBytes,
                   uRest);
    }
    const Byte4Type b4Written = WriteData(pchText, static_cast<Byte4Type>(uSize));
    fwfree(pchText);
    return b4Written;
}

int SWrite::SerializeBlock(char* pchKey, unsigned char* pData, int iCount) {
    if (!pchKey) {
        return 1;
    }
    WriteData(pchKey, static_cast<Byte4Type>(fwstrlen(pchKey)));
    WriteData(Text("="), 1);
    const auto uCount = static_cast<unsigned int>(iCount > 0 ? iCount : 0);
    if (pData && WriteAsciized(reinterpret_cast<char*>(pData), uCount) == 0 && uCount > 0) {
        TellLoss(*this);
    }
    WriteData(Text("\n"), 1);
    return 1;
}

int SRead::DeserializeBlock(unsigned char* pData, int iCount) {
    char* const pchLine = ReadLine();
    char* const pchText = pchLine && pData ? SplitRecord(pchLine) : nullptr;
    if (!pchText) {
        return 0;
    }
    const GroupCoder& cCoder = ChooseGroupCoder();
    const std::size_t uCount = static_cast<std::size_t>(iCount > 0 ? iCount : 0);
    const std::size_t uLength = fwstrlen(pchText);
    std::size_t uGroups = uLength / GroupCharacters;
    if (uGroups > uCount / GroupBytes) {
        uGroups = uCount / GroupBytes;
    }
    cCoder.pDecode(pData, BytesOf(pchText), uGroups);
    const std::size_t uRest = uCount - uGroups * GroupBytes;
    const bool bRest = uRest > 0 && uRest < GroupBytes && uLength - uGroups * GroupCharacters > uRest;
    if (bRest) {
        DecodeRest(cCoder, pData + uGroups * GroupBytes, pchText + uGroups * GroupCharacters, uRest);
    }
    return uRest == 0 || bRest; // whether all iCount bytes were decoded
}

Byte2Type SWrite::Compress(unsigned char* pTarget, unsigned char* pSource, Byte2Type b2Length,
                           unsigned char bFlag) {
    return static_cast<Byte2Type>(
        ChooseBlockCoder().pCompress(pTarget, pSource, b2Length, bFlag == BackwardFlag));
}

Byte4Type SRead::Decompress(unsigned char* pTarget, Byte4Type b4Room, unsigned char* pSource,
                            Byte4Type b4Length, unsigned char bFlag) {
    return static_cast<Byte4Type>(
        ChooseBlockCoder().pExpand(pTarget, b4Room, pSource, b4Length, bFlag == BackwardFlag));
}

} // namespace VESK
