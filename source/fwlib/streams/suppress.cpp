// SPDX-License-Identifier: MIT
// One algorithm as templates over the operations on a block's words, which use general or wide registers. Internally,
// bit n is the block's word n; only the stored bitmap of the backward layout is reversed.
#include "fwlib/streams/suppress.h"

#include "fwlib/streams/suppresswords.h"

namespace VESK {

namespace {

using Byte = unsigned char;

constexpr std::uint32_t ZeroForm = 0x80000000; // the bitmap's bit for the form: set if zeros are left out
constexpr std::uint32_t Unused = 0x40000000;

std::uint32_t ReverseWords(std::uint32_t uWords) {
    uWords = __builtin_bswap32(uWords);
    uWords = (uWords >> 4 & 0x0F0F0F0F) | (uWords & 0x0F0F0F0F) << 4;
    uWords = (uWords >> 2 & 0x33333333) | (uWords & 0x33333333) << 2;
    uWords = (uWords >> 1 & 0x55555555) | (uWords & 0x55555555) << 1;
    return uWords >> (32 - BlockWords);
}

// The words of a block that are listed, and the bit for the form.
template <class Words, bool Backward>
inline __attribute__((always_inline)) std::uint32_t Choose(const Byte* pBlock) {
    std::uint32_t uNonZero;
    std::uint32_t uChange;
    Words::Compare(pBlock, uNonZero, uChange);
    // The list contains the first word of the scan and each word that differs from the one scanned before it.
    const std::uint32_t uChanged = Backward ? uChange | LastWord : (uChange << 1 | FirstWord) & AllWords;
    return Words::Count(uChanged) >= Words::Count(uNonZero) ? uNonZero | ZeroForm : uChanged;
}

template <class Words>
inline __attribute__((always_inline)) std::size_t CodedBytes(std::uint32_t uChoice) {
    return (1 + Words::Count(uChoice & AllWords)) * WordBytes;
}

template <bool Backward>
inline __attribute__((always_inline)) std::uint32_t Bitmap(std::uint32_t uChoice) {
    const std::uint32_t uLeftOut = ~uChoice & AllWords;
    return (Backward ? ReverseWords(uLeftOut) : uLeftOut) | (uChoice & ZeroForm);
}

// Each block is coded before the next one is read, so the target may overlap the source.
template <bool Backward>
std::size_t CompressStepwise(Byte* pTarget, const Byte* pSource, std::size_t uLength) {
    std::size_t uTotal = 0;
    for (std::size_t uBlocks = uLength / BlockBytes; uBlocks > 0; --uBlocks, pSource += BlockBytes) {
        const std::uint32_t uChoice = Choose<PlainWords, Backward>(pSource);
        const std::size_t uCoded = CodedBytes<PlainWords>(uChoice);
        uTotal += uCoded;
        if (uTotal >= uLength) {
            return 0;
        }
        PlainWords::Gather(Backward ? pTarget : pTarget + WordBytes, pSource, uChoice & AllWords);
        StoreWord(Backward ? pTarget + uCoded - WordBytes : pTarget, Bitmap<Backward>(uChoice));
        pTarget += uCoded;
    }
    return uTotal;
}

// What the bitmap of a coded block contains.
struct Coded {
    bool bGood;
    bool bZeroForm;
    std::uint32_t uListed;
    std::size_t uListBytes;
};

template <class Words, bool Backward>
inline __attribute__((always_inline)) Coded Decode(std::uint32_t uBitmap) {
    const bool bZeroForm = (uBitmap & ZeroForm) != 0;
    const std::uint32_t uScan = ~uBitmap & AllWords;
    const bool bGood = (uBitmap & Unused) == 0 && (bZeroForm || (uScan & FirstWord) != 0);
    return {bGood, bZeroForm, Backward ? ReverseWords(uScan) : uScan, Words::Count(uScan) * WordBytes};
}

template <class Words, bool Backward>
inline __attribute__((always_inline)) void ExpandBlock(Byte* pBlock, const Byte* pList, std::size_t uReadable,
                                                       const Coded& cCoded) {
    if (cCoded.bZeroForm) {
        Words::FillZeros(pBlock, pList, uReadable, cCoded.uListed);
    } else if constexpr (Backward) {
        Words::FillBackward(pBlock, pList, uReadable, cCoded.uListed);
    } else {
        Words::FillForward(pBlock, pList, uReadable, cCoded.uListed);
    }
}

template <class Words>
inline __attribute__((always_inline)) std::size_t ExpandForward(Byte* pTarget, std::size_t uRoom,
                                                                const Byte* pSource, std::size_t uLength) {
    std::size_t uWritten = 0;
    while (uLength > 0) {
        const Coded cCoded = Decode<Words, false>(uLength >= WordBytes ? LoadWordAt(pSource) : Unused);
        if (!cCoded.bGood || cCoded.uListBytes > uLength - WordBytes || uRoom - uWritten < BlockBytes) {
            return 0;
        }
        pSource += WordBytes;
        uLength -= WordBytes;
        ExpandBlock<Words, false>(pTarget + uWritten, pSource, uLength, cCoded);
        pSource += cCoded.uListBytes;
        uLength -= cCoded.uListBytes;
        uWritten += BlockBytes;
    }
    return uWritten;
}

// The last block is decoded first, so the target is filled from its end; if it is not full, the blocks are moved to its
// start. Counting the blocks first would read every bitmap twice, and reading them is most of the cost.
template <class Words>
inline __attribute__((always_inline)) std::size_t ExpandBackward(Byte* pTarget, std::size_t uRoom,
                                                                 const Byte* pSource, std::size_t uLength) {
    Byte* const pEnd = pTarget + uRoom / BlockBytes * BlockBytes;
    Byte* pBlock = pEnd;
    for (std::size_t uLeft = uLength; uLeft > 0;) {
        const Coded cCoded =
            Decode<Words, true>(uLeft >= WordBytes ? LoadWordAt(pSource + uLeft - WordBytes) : Unused);
        if (!cCoded.bGood || cCoded.uListBytes > uLeft - WordBytes || pBlock == pTarget) {
            return 0;
        }
        uLeft -= WordBytes + cCoded.uListBytes;
        pBlock -= BlockBytes;
        ExpandBlock<Words, true>(pBlock, pSource + uLeft, uLength - uLeft, cCoded);
    }
    const auto uWritten = static_cast<std::size_t>(pEnd - pBlock);
    if (pBlock != pTarget) {
        std::memmove(pTarget, pBlock, uWritten);
    }
    return uWritten;
}

std::size_t CompressWords(Byte* pTarget, const Byte* pSource, std::size_t uLength, bool bBackward) {
    return bBackward ? CompressStepwise<true>(pTarget, pSource, uLength)
                     : CompressStepwise<false>(pTarget, pSource, uLength);
}

std::size_t ExpandWords(Byte* pTarget, std::size_t uRoom, const Byte* pSource, std::size_t uLength,
                        bool bBackward) {
    return bBackward ? ExpandBackward<PlainWords>(pTarget, uRoom, pSource, uLength)
                     : ExpandForward<PlainWords>(pTarget, uRoom, pSource, uLength);
}

#ifdef FWLIB_WIDE

constexpr std::size_t MostBlocks = 65535 / BlockBytes;

// Wide stores write past the end of a list. So all blocks are measured first: then the end of the last one is known,
// and bytes past a list are overwritten by the next block.
template <bool Backward>
FWLIB_WIDE inline __attribute__((always_inline)) std::size_t
CompressSeparate(Byte* pTarget, const Byte* pSource, std::size_t uLength) {
    std::uint32_t auChoices[MostBlocks];
    const std::size_t uBlocks = uLength / BlockBytes;
    std::size_t uTotal = 0;
    std::size_t uFitting = 0; // number of blocks that fit
    for (; uFitting < uBlocks; ++uFitting) {
        auChoices[uFitting] = Choose<WideWords, Backward>(pSource + uFitting * BlockBytes);
        const std::size_t uCoded = CodedBytes<WideWords>(auChoices[uFitting]);
        if (uTotal + uCoded >= uLength) {
            break;
        }
        uTotal += uCoded;
    }
    Byte* const pEnd = pTarget + uTotal;
    for (std::size_t u = 0; u < uFitting; ++u, pSource += BlockBytes) {
        const std::size_t uCoded = CodedBytes<WideWords>(auChoices[u]);
        Byte* const pList = Backward ? pTarget : pTarget + WordBytes;
        WideWords::Gather(pList, static_cast<std::size_t>(pEnd - pList), pSource, auChoices[u] & AllWords);
        StoreWord(Backward ? pTarget + uCoded - WordBytes : pTarget, Bitmap<Backward>(auChoices[u]));
        pTarget += uCoded;
    }
    return uFitting == uBlocks ? uTotal : 0;
}

FWLIB_WIDE __attribute__((flatten)) std::size_t CompressVectors(Byte* pTarget, const Byte* pSource,
                                                                std::size_t uLength, bool bBackward) {
    const auto uTarget = reinterpret_cast<std::uintptr_t>(pTarget);
    const auto uSource = reinterpret_cast<std::uintptr_t>(pSource);
    if (uLength / BlockBytes > MostBlocks || (uTarget < uSource + uLength && uSource < uTarget + uLength)) {
        return CompressWords(pTarget, pSource, uLength, bBackward);
    }
    return bBackward ? CompressSeparate<true>(pTarget, pSource, uLength)
                     : CompressSeparate<false>(pTarget, pSource, uLength);
}

FWLIB_WIDE __attribute__((flatten)) std::size_t
ExpandVectors(Byte* pTarget, std::size_t uRoom, const Byte* pSource, std::size_t uLength, bool bBackward) {
    return bBackward ? ExpandBackward<WideWords>(pTarget, uRoom, pSource, uLength)
                     : ExpandForward<WideWords>(pTarget, uRoom, pSource, uLength);
}

constexpr BlockCoder cWideBlockCoder = {CompressVectors, ExpandVectors};

#endif

} // namespace

const BlockCoder cPlainBlockCoder = {CompressWords, ExpandWords};

const BlockCoder& ChooseBlockCoder() {
#ifdef FWLIB_WIDE
    if (__builtin_cpu_supports("avx2") && __builtin_cpu_supports("popcnt")) {
        return cWideBlockCoder;
    }
#endif
    return cPlainBlockCoder;
}

} // namespace VESK
