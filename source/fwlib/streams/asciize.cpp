// SPDX-License-Identifier: MIT
// A 32-bit lane has a group's three bytes in its low 24 bits, the first one lowest. Two masks and one shift turn them
// into four 6-bit values, one in each byte of the lane; adding a space makes these characters. The same arithmetic runs
// in a general register (one lane, or two in 64 bits) and, if the processor has it, in a wide register (eight lanes).
#include "fwlib/streams/asciize.h"

#include "fwlib/internal/lowestfirst.h"

#include <cstdint>
#include <cstring>

namespace VESK {

namespace {

using Byte = unsigned char;
using Word = std::uintptr_t;

// Bits of a lane that stay in place; bits that are shifted; a space in each byte; bits that no valid value has.
constexpr std::uint32_t Stay = 0x00030F3F;
constexpr std::uint32_t Move = 0x00FCF0C0;
constexpr std::uint32_t Spaces = 0x20202020;
constexpr std::uint32_t Beyond = 0xC0C0C0C0;
constexpr int Shift = 6;

// One group at a time: for the ends, and for characters out of range, which are not rejected.
void EncodeBytes(Byte* pText, const Byte* pData, std::size_t uGroups) {
    for (; uGroups > 0; --uGroups, pText += GroupCharacters, pData += GroupBytes) {
        pText[0] = static_cast<Byte>((pData[0] & 0x3F) + ' ');
        pText[1] = static_cast<Byte>(((pData[1] & 0x0F) | (pData[0] & 0xC0) >> 2) + ' ');
        pText[2] = static_cast<Byte>(((pData[2] & 0x03) | (pData[1] & 0xF0) >> 2) + ' ');
        pText[3] = static_cast<Byte>((pData[2] >> 2) + ' ');
    }
}

void DecodeBytes(Byte* pData, const Byte* pText, std::size_t uGroups) {
    for (; uGroups > 0; --uGroups, pText += GroupCharacters, pData += GroupBytes) {
        const int i0 = pText[0] - ' ';
        const int i1 = pText[1] - ' ';
        const int i2 = pText[2] - ' ';
        const int i3 = pText[3] - ' ';
        pData[0] = static_cast<Byte>(i0 | (i1 & 0x30) * 4);
        pData[1] = static_cast<Byte>((i1 & 0x0F) | (i2 & 0x3C) * 4);
        pData[2] = static_cast<Byte>((i2 & 0x03) | i3 * 4);
    }
}

constexpr std::size_t Lanes = sizeof(Word) / sizeof(std::uint32_t);
constexpr std::size_t EncodeRound = 8; // words in an iteration; more are not faster
constexpr std::size_t DecodeRound = 4; // all stay in registers until they are known to be in range

constexpr Word InLanes(std::uint32_t uValue) {
    return Lanes == 1 ? uValue : static_cast<Word>(uint64_t{uValue} << 32 | uValue);
}

// A word has one group in each lane. In 64 bits, two adjacent groups are first moved to their lanes, and at last moved
// together.
constexpr Word BytesToLanes(Word uGroups) {
    return Lanes == 1 ? uGroups : (uGroups & 0xFFFFFF) | (uGroups << 8 & static_cast<Word>(0xFFFFFF00000000));
}
constexpr Word LanesToBytes(Word uGroups) {
    return Lanes == 1 ? uGroups : (uGroups & 0xFFFFFF) | (uGroups >> 8 & static_cast<Word>(0xFFFFFF000000));
}

// The arithmetic requires that a group's first byte is the lowest, as on little-endian processors. A word is read and
// written completely, one or two bytes beyond its groups, so the last groups are coded one at a time.
void EncodeWords(Byte* pText, const Byte* pData, std::size_t uGroups) {
    for (; LowestFirst && uGroups > Lanes * EncodeRound; uGroups -= Lanes * EncodeRound) {
        for (std::size_t u = 0; u < EncodeRound; ++u) {
            Word uGroup;
            std::memcpy(&uGroup, pData + u * Lanes * GroupBytes, sizeof(Word));
            uGroup = BytesToLanes(uGroup);
            const Word uText =
                ((uGroup & InLanes(Stay)) | (uGroup & InLanes(Move)) << Shift) + InLanes(Spaces);
            std::memcpy(pText + u * sizeof uText, &uText, sizeof uText);
        }
        pText += EncodeRound * sizeof(Word);
        pData += EncodeRound * Lanes * GroupBytes;
    }
    EncodeBytes(pText, pData, uGroups);
}

void DecodeWords(Byte* pData, const Byte* pText, std::size_t uGroups) {
    for (; LowestFirst && uGroups > Lanes * DecodeRound; uGroups -= Lanes * DecodeRound) {
        Word auValues[DecodeRound];
        Word uAll = 0;
        for (std::size_t u = 0; u < DecodeRound; ++u) {
            std::memcpy(&auValues[u], pText + u * sizeof(Word), sizeof(Word));
            auValues[u] -= InLanes(Spaces); // a character below a space borrows, which sets a bit of Beyond
            uAll |= auValues[u];
        }
        if ((uAll & InLanes(Beyond)) != 0) {
            DecodeBytes(pData, pText, Lanes * DecodeRound);
        } else {
            for (std::size_t u = 0; u < DecodeRound; ++u) {
                const Word uValue = auValues[u];
                const Word uGroup =
                    LanesToBytes((uValue & InLanes(Stay)) | (uValue >> Shift & InLanes(Move)));
                std::memcpy(pData + u * Lanes * GroupBytes, &uGroup, sizeof uGroup);
            }
        }
        pText += DecodeRound * sizeof(Word);
        pData += DecodeRound * Lanes * GroupBytes;
    }
    DecodeBytes(pData, pText, uGroups);
}

#if defined(__x86_64__) || defined(__i386__)

using Bytes = Byte __attribute__((vector_size(32)));
using WideLanes = std::uint32_t __attribute__((vector_size(32)));

constexpr std::size_t Wide = 8;                     // groups in a wide register
constexpr std::size_t WideData = Wide * GroupBytes; // their bytes
constexpr std::size_t HalfData = WideData / 2;      // the bytes for each half
constexpr std::size_t Half = sizeof(Bytes) / 2;
constexpr std::size_t Spill =
    Half - HalfData; // bytes that are read before the data, and read or written after it
constexpr std::size_t SpillGroups = Spill / GroupBytes + 1;
constexpr std::size_t Unrolled =
    2; // registers in an iteration; with one, the speed depends on the loop's address

// A register is loaded from Spill bytes before its data, so that each half has the bytes of four complete groups.
__attribute__((target("avx2"))) void EncodeVectors(Byte* pText, const Byte* pData, std::size_t uGroups) {
    const std::size_t uFirst = uGroups < SpillGroups ? uGroups : SpillGroups;
    EncodeBytes(pText, pData, uFirst);
    pText += uFirst * GroupCharacters;
    pData += uFirst * GroupBytes;
    uGroups -= uFirst;
    for (; uGroups >= Unrolled * Wide + SpillGroups; uGroups -= Unrolled * Wide) {
        for (std::size_t u = 0; u < Unrolled; ++u) {
            Bytes cData;
            std::memcpy(&cData, pData + u * WideData - Spill, sizeof cData);
            const auto cGroups = (WideLanes)__builtin_shufflevector(
                cData, cData, 4, 5, 6, 6, 7, 8, 9, 9, 10, 11, 12, 12, 13, 14, 15, 15, //
                16, 17, 18, 18, 19, 20, 21, 21, 22, 23, 24, 24, 25, 26, 27, 27);
            const WideLanes cText = ((cGroups & Stay) | (cGroups & Move) << Shift) + Spaces;
            std::memcpy(pText + u * sizeof cText, &cText, sizeof cText);
        }
        pText += Unrolled * sizeof(Bytes);
        pData += Unrolled * WideData;
    }
    EncodeWords(pText, pData, uGroups);
}

__attribute__((target("avx2"))) void DecodeVectors(Byte* pData, const Byte* pText, std::size_t uGroups) {
    for (; uGroups >= Unrolled * Wide + SpillGroups; uGroups -= Unrolled * Wide) {
        for (std::size_t u = 0; u < Unrolled; ++u) {
            Bytes cText;
            std::memcpy(&cText, pText + u * sizeof cText, sizeof cText);
            const auto cValues = (WideLanes)(cText - Byte{' '});
            // The first value of a lane keeps its upper bits: they count if the character is out of range.
            const auto cGroups = (Bytes)((cValues & (Stay | 0xFF)) | (cValues >> Shift & Move));
            const Bytes cData = __builtin_shufflevector(
                cGroups, cGroups, 0, 1, 2, 4, 5, 6, 8, 9, 10, 12, 13, 14, -1, -1, -1, -1, //
                16, 17, 18, 20, 21, 22, 24, 25, 26, 28, 29, 30, -1, -1, -1, -1);
            Byte* const pHalves = pData + u * WideData;
            std::memcpy(pHalves, &cData, Half);
            std::memcpy(pHalves + HalfData, reinterpret_cast<const Byte*>(&cData) + Half, Half);
        }
        pText += Unrolled * sizeof(Bytes);
        pData += Unrolled * WideData;
    }
    DecodeWords(pData, pText, uGroups);
}

constexpr GroupCoder cWideCoder = {EncodeVectors, DecodeVectors};

bool RunsWide() {
    return __builtin_cpu_supports("avx2");
}

#else

constexpr GroupCoder cWideCoder = {EncodeWords, DecodeWords};

bool RunsWide() {
    return false;
}

#endif

} // namespace

const GroupCoder cPlainCoder = {EncodeWords, DecodeWords};

const GroupCoder& ChooseGroupCoder() {
    return RunsWide() ? cWideCoder : cPlainCoder;
}

} // namespace VESK
