// SPDX-License-Identifier: MIT
// Operations on the 30 words of a compressor's block: with general registers, and with wide ones. For these, tables
// list for every value of 8 bits how eight words move.
#ifndef FWLIB_STREAMS_SUPPRESSWORDS_H
#define FWLIB_STREAMS_SUPPRESSWORDS_H

#include "fwlib/internal/hidden.h"

#include <cstddef>
#include <cstdint>
#include <cstring>

#if defined(__x86_64__) || defined(__i386__)
#include <immintrin.h>
#define FWLIB_WIDE __attribute__((target("avx2,popcnt")))
#endif

namespace FWLIB_HIDDEN VESK {

constexpr unsigned int BlockWords = 30;
constexpr std::size_t WordBytes = 4;
constexpr std::uint32_t AllWords = (std::uint32_t{1} << BlockWords) - 1;
constexpr std::uint32_t FirstWord = 1;
constexpr std::uint32_t LastWord = std::uint32_t{1} << (BlockWords - 1);

// Words in memory are little-endian on every host.
inline std::uint32_t LoadWordAt(const unsigned char* p) {
    return p[0] | static_cast<std::uint32_t>(p[1]) << 8 | static_cast<std::uint32_t>(p[2]) << 16 |
           static_cast<std::uint32_t>(p[3]) << 24;
}

inline void StoreWord(unsigned char* p, std::uint32_t uWord) {
    p[0] = static_cast<unsigned char>(uWord);
    p[1] = static_cast<unsigned char>(uWord >> 8);
    p[2] = static_cast<unsigned char>(uWord >> 16);
    p[3] = static_cast<unsigned char>(uWord >> 24);
}

struct PlainWords {
    static unsigned int Count(std::uint32_t uWords) {
        return static_cast<unsigned int>(__builtin_popcount(uWords));
    }

    // Sets the bits of words that are not zero, and of words that differ from the next.
    static void Compare(const unsigned char* pBlock, std::uint32_t& uNonZero, std::uint32_t& uChange) {
        std::uint32_t uWord = LoadWordAt(pBlock);
        std::uint32_t uDiffer = 0;
        uNonZero = uWord != 0;
        for (unsigned int u = 1; u < BlockWords; ++u) {
            const std::uint32_t uNext = LoadWordAt(pBlock + u * WordBytes);
            uNonZero |= std::uint32_t{uNext != 0} << u;
            uDiffer |= std::uint32_t{uNext != uWord} << (u - 1);
            uWord = uNext;
        }
        uChange = uDiffer;
    }

    // Copies the words whose bits are set to the list, and writes nothing else. The list may overlap the block.
    static void Gather(unsigned char* pList, const unsigned char* pBlock, std::uint32_t uWords) {
        unsigned char abBlock[BlockWords * WordBytes];
        const auto uList = reinterpret_cast<std::uintptr_t>(pList);
        const auto uBlock = reinterpret_cast<std::uintptr_t>(pBlock);
        if (uList < uBlock + sizeof abBlock && uBlock < uList + sizeof abBlock) {
            std::memcpy(abBlock, pBlock, sizeof abBlock);
            pBlock = abBlock;
        }
        for (; uWords != 0; uWords &= uWords - 1, pList += WordBytes) {
            std::memcpy(pList, pBlock + static_cast<unsigned int>(__builtin_ctz(uWords)) * WordBytes,
                        WordBytes);
        }
    }

    // Fills the block: a word whose bit is set is the next of the list, the others are zero.
    static void FillZeros(unsigned char* pBlock, const unsigned char* pList, std::size_t,
                          std::uint32_t uWords) {
        std::memset(pBlock, 0, BlockWords * WordBytes);
        for (; uWords != 0; uWords &= uWords - 1, pList += WordBytes) {
            std::memcpy(pBlock + static_cast<unsigned int>(__builtin_ctz(uWords)) * WordBytes, pList,
                        WordBytes);
        }
    }

    // ... the others equal the word before them; the first word's bit is set.
    static void FillForward(unsigned char* pBlock, const unsigned char* pList, std::size_t,
                            std::uint32_t uWords) {
        pList -= WordBytes;
        for (unsigned int u = 0; u < BlockWords; ++u) {
            pList += (uWords >> u & 1) * WordBytes;
            std::memcpy(pBlock + u * WordBytes, pList, WordBytes);
        }
    }

    // ... the others equal the word after them; the last word's bit is set.
    static void FillBackward(unsigned char* pBlock, const unsigned char* pList, std::size_t,
                             std::uint32_t uWords) {
        for (unsigned int u = 0; u < BlockWords; ++u) {
            std::memcpy(pBlock + u * WordBytes, pList, WordBytes);
            pList += (uWords >> u & 1) * WordBytes;
        }
    }
};

#ifdef FWLIB_WIDE

// For every value of 8 bits, the indexes of eight lanes, one byte each.
struct LaneTables {
    constexpr LaneTables() : aGather(), aBefore(), aUpTo() {
        for (unsigned int uBits = 0; uBits < 256; ++uBits) {
            unsigned int uSet = 0;
            for (unsigned int uLane = 0; uLane < 8; ++uLane) {
                aBefore[uBits] |= std::uint64_t{uSet} << 8 * uLane;
                if ((uBits >> uLane & 1) != 0) {
                    aGather[uBits] |= std::uint64_t{uLane} << 8 * uSet;
                    ++uSet;
                }
                aUpTo[uBits] |= std::uint64_t{uSet - (uBits & 1)} << 8 * uLane;
            }
        }
    }

    std::uint64_t aGather[256]; // the lanes whose bits are set
    std::uint64_t aBefore[256]; // how many bits are set before the lane
    std::uint64_t aUpTo[256];   // how many up to the lane, without the first lane
};
inline constexpr LaneTables cLanes;

// The block in four registers of eight words; the last two overlap.
constexpr unsigned int Registers = 4;
constexpr unsigned int FirstOf[Registers] = {0, 8, 16, 22};
constexpr std::size_t RegisterBytes = 32;

struct WideWords {
    FWLIB_WIDE static unsigned int Count(std::uint32_t uWords) {
        return static_cast<unsigned int>(_mm_popcnt_u32(uWords));
    }

    FWLIB_WIDE static void Compare(const unsigned char* pBlock, std::uint32_t& uNonZero,
                                   std::uint32_t& uChange) {
        constexpr unsigned int LastPair = BlockWords - 1 - 8; // the last eight words with a next one
        uNonZero = 0;
        uChange = 0;
        for (unsigned int u : FirstOf) {
            const unsigned int uPair = u < LastPair ? u : LastPair;
            uNonZero |= Differ(Load(pBlock + u * WordBytes), _mm256_setzero_si256()) << u;
            uChange |= Differ(Load(pBlock + uPair * WordBytes), Load(pBlock + (uPair + 1) * WordBytes))
                       << uPair;
        }
    }

    // uRoom: the bytes that may be written at pList; those after the list are undefined. The list must not overlap the
    // block.
    FWLIB_WIDE static void Gather(unsigned char* pList, std::size_t uRoom, const unsigned char* pBlock,
                                  std::uint32_t uWords) {
        if (uRoom < BlockWords * WordBytes + RegisterBytes) {
            PlainWords::Gather(pList, pBlock, uWords);
            return;
        }
        for (unsigned int u : FirstOf) {
            const std::uint32_t uBits =
                Bits(uWords, u) & (u == FirstOf[3] ? ~std::uint32_t{3} : ~std::uint32_t{0});
            const __m256i Words =
                _mm256_permutevar8x32_epi32(Load(pBlock + u * WordBytes), Lanes(cLanes.aGather[uBits]));
            Store(pList, Words);
            pList += Count(uBits) * WordBytes;
        }
    }

    // uReadable: the bytes that may be read at pList.
    FWLIB_WIDE static void FillZeros(unsigned char* pBlock, const unsigned char* pList, std::size_t uReadable,
                                     std::uint32_t uWords) {
        if (uReadable < BlockWords * WordBytes + RegisterBytes) {
            PlainWords::FillZeros(pBlock, pList, uReadable, uWords);
            return;
        }
        const __m256i LaneBits = _mm256_setr_epi32(1, 2, 4, 8, 16, 32, 64, 128);
        for (unsigned int u : FirstOf) {
            const std::uint32_t uBits = Bits(uWords, u);
            const __m256i Listed = Load(pList + Before(uWords, u) * WordBytes);
            const __m256i Set = _mm256_and_si256(_mm256_set1_epi32(static_cast<int>(uBits)), LaneBits);
            Store(pBlock + u * WordBytes,
                  _mm256_and_si256(_mm256_permutevar8x32_epi32(Listed, Lanes(cLanes.aBefore[uBits])),
                                   _mm256_cmpeq_epi32(Set, LaneBits)));
        }
    }

    FWLIB_WIDE static void FillForward(unsigned char* pBlock, const unsigned char* pList,
                                       std::size_t uReadable, std::uint32_t uWords) {
        if (uReadable < BlockWords * WordBytes + RegisterBytes) {
            PlainWords::FillForward(pBlock, pList, uReadable, uWords);
            return;
        }
        for (unsigned int u : FirstOf) {
            const std::uint32_t uBits = Bits(uWords, u);
            const unsigned int uCurrent = Before(uWords, u) + (uBits & 1) - 1; // of the register's first word
            Store(pBlock + u * WordBytes, _mm256_permutevar8x32_epi32(Load(pList + uCurrent * WordBytes),
                                                                      Lanes(cLanes.aUpTo[uBits])));
        }
    }

    FWLIB_WIDE static void FillBackward(unsigned char* pBlock, const unsigned char* pList,
                                        std::size_t uReadable, std::uint32_t uWords) {
        if (uReadable < BlockWords * WordBytes + RegisterBytes) {
            PlainWords::FillBackward(pBlock, pList, uReadable, uWords);
            return;
        }
        for (unsigned int u : FirstOf) {
            const std::uint32_t uBits = Bits(uWords, u);
            Store(pBlock + u * WordBytes,
                  _mm256_permutevar8x32_epi32(Load(pList + Before(uWords, u) * WordBytes),
                                              Lanes(cLanes.aBefore[uBits])));
        }
    }

private:
    FWLIB_WIDE static __m256i Load(const unsigned char* p) {
        return _mm256_loadu_si256(reinterpret_cast<const __m256i*>(p));
    }
    FWLIB_WIDE static void Store(unsigned char* p, __m256i Words) {
        _mm256_storeu_si256(reinterpret_cast<__m256i*>(p), Words);
    }
    FWLIB_WIDE static __m256i Lanes(const std::uint64_t& uIndexes) {
        return _mm256_cvtepu8_epi32(_mm_loadl_epi64(reinterpret_cast<const __m128i*>(&uIndexes)));
    }
    FWLIB_WIDE static std::uint32_t Differ(__m256i Left, __m256i Right) {
        const int iEqual = _mm256_movemask_ps(_mm256_castsi256_ps(_mm256_cmpeq_epi32(Left, Right)));
        return static_cast<std::uint32_t>(iEqual) ^ 0xFF;
    }
    static std::uint32_t Bits(std::uint32_t uWords, unsigned int uFirst) { return uWords >> uFirst & 0xFF; }
    FWLIB_WIDE static unsigned int Before(std::uint32_t uWords, unsigned int uFirst) {
        return Count(uWords & ((std::uint32_t{1} << uFirst) - 1));
    }
};

#endif

} // namespace VESK

#endif
