// SPDX-License-Identifier: MIT
// The block compressor and its inverse, on plain memory, at any alignment.
//
// A coded block is a bitmap and a list of words. The bitmap's bits follow the scan, which goes through the block's
// words forwards or, in the backward layout, backwards; in memory the list is in ascending order of the words'
// addresses in both layouts, and the bitmap stands before it, or behind it in the backward one.
#ifndef FWLIB_STREAMS_SUPPRESS_H
#define FWLIB_STREAMS_SUPPRESS_H

#include "fwlib/internal/hidden.h"

#include <cstddef>

namespace FWLIB_HIDDEN VESK {

constexpr std::size_t BlockBytes = 120; // 30 words of 4 bytes

struct BlockCoder {
    // Codes the whole blocks of the source. The bytes written, fewer than uLength; 0 when they would not be fewer, or
    // there is no whole block; then only the blocks before the one that did not fit are written. The target has room
    // for uLength - 1 bytes, and may overlap the source: each block is read before it is written.
    std::size_t (*pCompress)(unsigned char* pTarget, const unsigned char* pSource, std::size_t uLength,
                             bool bBackward);

    // The blocks' bytes again. The bytes written; 0 when the source is not the coding of whole blocks, or they are more
    // than uRoom.
    std::size_t (*pExpand)(unsigned char* pTarget, std::size_t uRoom, const unsigned char* pSource,
                           std::size_t uLength, bool bBackward);
};

extern const BlockCoder cPlainBlockCoder; // with general registers only
const BlockCoder& ChooseBlockCoder();     // the best that this processor runs

} // namespace VESK

#endif
