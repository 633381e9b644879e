// SPDX-License-Identifier: MIT
// Input: a layout, then numbers that make words: few of them new, as data that the compressor suits. The output is
// as long as the format says and within its room, and reads back.
#include "../targets.h"

#include "fwlib/streams/suppress.h"

#include <algorithm>

void fuzz::Compress(Input& in) {
    const auto flag = static_cast<unsigned char>(in.Byte());
    std::vector<unsigned int> words(1);
    while (!in.Empty() && words.size() < 600) {
        const unsigned int byte = in.Byte();
        words.insert(words.end(), byte & 15, byte & 16 ? words.back() : byte & 32 ? in.Short() : 0);
    }
    std::string source(reinterpret_cast<const char*>(words.data() + 1), (words.size() - 1) * 4);
    source += std::string(words.size() % 4, 'x');
    std::size_t coded = 0;
    for (std::size_t block = 1; block + 30 <= words.size(); block += 30) {
        unsigned int zeros = 0, repeats = 0;
        for (std::size_t u = block; u < block + 30; ++u) {
            zeros += words[u] == 0;
            repeats += u > block && words[u] == words[u - 1];
        }
        coded += 4 * (31 - std::max(zeros, repeats));
    }
    const std::size_t size = source.size(), answer = coded < size ? coded : 0;
    for (const VESK::BlockCoder* coder : {&VESK::cPlainBlockCoder, &VESK::ChooseBlockCoder()}) {
        const Exact from(source), to(size > 0 ? size - 1 : 0);
        CLAIM(coder->pCompress(to.Data(), from.Data(), size, flag == 2) == answer);
        const Exact packed(std::string(to.Chars(), answer)), again(answer > 0 ? size / 120 * 120 : 0);
        CLAIM(coder->pExpand(again.Data(), again.Size(), packed.Data(), answer, flag == 2) == again.Size());
        CLAIM(source.compare(0, again.Size(), again.Chars(), again.Size()) == 0);
    }
}
