// SPDX-License-Identifier: MIT
// Input: a layout, the room, then any bytes as compressed blocks. Each coder of the library returns what a
// reader returns that follows the format word by word, and touches nothing outside.
#include "../models.h"
#include "../targets.h"

#include "fwlib/streams/suppress.h"

#include <algorithm>

void fuzz::Decompress(Input& in) {
    const bool backward = in.Byte() & 1;
    const std::size_t room = in.Short() % 2048;
    const Exact source(in.Rest());
    const std::size_t size = source.Size();
    Words coded(size / 4 + 1); // one more, so that there are data
    std::memcpy(coded.data(), source.Data(), size / 4 * 4);
    coded.pop_back();
    coded = InFileOrder(coded);
    if (backward) {
        std::reverse(coded.begin(), coded.end());
    }
    Words words = size % 4 ? Words() : ExpandedBlocks(coded);
    if (backward) {
        std::reverse(words.begin(), words.end());
    }
    words = InFileOrder(words);
    const std::size_t answer = words.size() * 4 <= room ? words.size() * 4 : 0;
    for (const VESK::BlockCoder* coder : {&VESK::cPlainBlockCoder, &VESK::ChooseBlockCoder()}) {
        const Exact target(room);
        CLAIM(coder->pExpand(target.Data(), room, source.Data(), size, backward) == answer);
        CLAIM(answer == 0 || std::memcmp(target.Data(), words.data(), answer) == 0);
    }
}
