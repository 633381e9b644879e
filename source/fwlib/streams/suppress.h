// SPDX-License-Identifier: MIT
// The block compressor and its inverse, in memory, at any alignment.
//
// A coded block is a bitmap and a list of words. The bitmap's bits are in the order of the scan, which visits the
// block's words forwards or, in the backward layout, backwards. The list is in the order of the block in both layouts.
// The bitmap is before the list, or after it in the backward layout.
#ifndef FWLIB_STREAMS_SUPPRESS_H
#define FWLIB_STREAMS_SUPPRESS_H

#include "fwlib/internal/hidden.h"

#include <cstddef>

namespace FWLIB_HIDDEN VESK {

constexpr std::size_t BlockBytes = 120; // 30 words of 4 bytes

struct BlockCoder {
    // Codes the complete blocks of the source. Returns the number of bytes written, less than uLength. Returns 0 if it
    // would not be less, or if there is no complete block; then only the blocks before the first that did not fit are
    // written. The target has uLength - 1 bytes, and may overlap the source: each block is read before it is written.
    std::size_t (*pCompress)(unsigned char* pTarget, const unsigned char* pSource, std::size_t uLength,
                             bool bBackward);

    // Restores the blocks. Returns the number of bytes written; 0 if the source is not the coding of complete blocks,
    // or if they need more than uRoom bytes.
    std::size_t (*pExpand)(unsigned char* pTarget, std::size_t uRoom, const unsigned char* pSource,
                           std::size_t uLength, bool bBackward);
};

extern const BlockCoder cPlainBlockCoder; // with general registers only
const BlockCoder& ChooseBlockCoder();     // the fastest that this processor supports

} // namespace VESK

#endif
