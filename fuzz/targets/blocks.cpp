// SPDX-License-Identifier: MIT
// Input: a count, then the characters of a block record. Reading any text follows the formulas of the format and
// writes no byte beyond what it holds; writing the bytes and reading them gives them again.
#include "../models.h"
#include "../targets.h"

#include "fwlib/streams/asciize.h"

void fuzz::Blocks(Input& in) {
    const int count = static_cast<short>(in.Short()) % 4096;
    const std::string text = in.Line();
    const std::size_t wanted = count > 0 ? static_cast<std::size_t>(count) : 0;
    const std::string expected = DecodedBlock(text, wanted);
    const Exact room(wanted);
    const std::string record = "K=" + text + "\n";
    const int iRead = Reader(record).DeserializeBlock(room.Data(), count);
    CLAIM(iRead == (expected.size() == wanted));
    CLAIM(room == Exact(wanted, expected));

    const Exact source(in.Empty() ? expected : in.Rest()), again(source.Size());
    Writer writer;
    writer.SerializeBlock(VESK::Text("K"), source.Data(), static_cast<int>(source.Size()));
    const std::size_t groups = source.Size() / VESK::GroupBytes;
    const Exact plain(groups * VESK::GroupCharacters);
    VESK::cPlainCoder.pEncode(plain.Data(), source.Data(), groups);
    CLAIM(writer.text.compare(2, plain.Size(), plain.Chars(), plain.Size()) == 0);
    const int iAgain = Reader(writer.text).DeserializeBlock(again.Data(), static_cast<int>(again.Size()));
    CLAIM(iAgain == 1 && again == source);
}
