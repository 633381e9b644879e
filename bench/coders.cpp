// SPDX-License-Identifier: MIT
// Rows that code bytes as the text of a block record, and back.
#include "coders.h"
#include "rows.h"

#include <fwlib/fwlib.h>
#include <fwlib/streams/asciize.h>

#include <cstring>
#include <memory>
#include <random>

namespace {

using namespace VESK;

class NoWrite final : public SWrite {
public:
    Byte4Type WriteData(char*, Byte4Type) override { return 0; }
};

// Hands out one line again and again.
class OneLine final : public SRead {
public:
    explicit OneLine(char* pchLine) : m_pchLine(pchLine) {}
    char* ReadLine() override {
        m_pchLine[1] = '='; // which the last reading replaced
        return m_pchLine;
    }

private:
    char* m_pchLine;
};

// Random data in whole groups, its text in a record, and room for either way's result.
struct Buffers {
    explicit Buffers(std::size_t uBytes)
        : uGroups(uBytes / 3), cData(uGroups * 3), cRecord(uGroups * 4 + 3), cResult(uGroups * 5) {
        std::mt19937 cRandom(1);
        for (Byte& b : cData) {
            b = static_cast<Byte>(cRandom());
        }
        cRecord[0] = 'k';
        EncodeBytewise(cRecord.data() + 2, cData.data(), uGroups);
    }

    std::size_t uGroups;
    std::vector<Byte> cData;
    std::vector<Byte> cRecord;
    std::vector<Byte> cResult;
};

using Shared = std::shared_ptr<Buffers>;

template <class Work>
Measured Loop(Work cWork) {
    return [cWork](benchmark::State& cState) {
        for (auto _ : cState) {
            cWork();
            benchmark::ClobberMemory();
        }
    };
}

char* Characters(std::vector<Byte>& cBytes) {
    return reinterpret_cast<char*>(cBytes.data());
}

Measured LibraryEncode(const Shared& p) {
    return Loop([p] {
        NoWrite().AsciizeTriplets(Characters(p->cResult), static_cast<unsigned int>(p->uGroups),
                                  Characters(p->cData));
    });
}

Measured LibraryDecode(const Shared& p) {
    return Loop([p] {
        OneLine(Characters(p->cRecord)).DeserializeBlock(p->cResult.data(), static_cast<int>(p->uGroups * 3));
    });
}

Measured Copy(const Shared& p) {
    return Loop([p] { std::memcpy(p->cResult.data(), p->cData.data(), p->cData.size()); });
}

using Groups = void (*)(Byte*, const Byte*, std::size_t);

Measured Encode(const Shared& p, Groups pEncode) {
    return Loop([p, pEncode] { pEncode(p->cResult.data(), p->cData.data(), p->uGroups); });
}

Measured Decode(const Shared& p, Groups pDecode) {
    return Loop([p, pDecode] { pDecode(p->cResult.data(), p->cRecord.data() + 2, p->uGroups); });
}

void AddBase64Rows(const Shared& p, const Base64Coder& cCoder) {
    std::vector<Byte> cText(p->uGroups * 5);
    cText.resize(cCoder.pEncode(cText.data(), p->cData.data(), p->cData.size()));
    const std::string Name = cCoder.pchName;
    const Measured Encoding =
        Loop([p, cCoder] { cCoder.pEncode(p->cResult.data(), p->cData.data(), p->cData.size()); });
    const Measured Decoding =
        Loop([p, cCoder, cText] { cCoder.pDecode(p->cResult.data(), cText.data(), cText.size()); });
    AddRow("encode 64 KiB, " + Name, 1.00, LibraryEncode(p), Encoding);
    AddRow("encode 64 KiB plainly, " + Name, 1.00, Encode(p, cPlainCoder.pEncode), Encoding);
    AddRow("decode 64 KiB, " + Name, 1.00, LibraryDecode(p), Decoding);
    AddRow("decode 64 KiB plainly, " + Name, 1.00, Decode(p, cPlainCoder.pDecode), Decoding);
}

} // namespace

void AddCoderRows() {
    constexpr double ThreeTimes = 1.0 / 3;
    const auto pSmall = std::make_shared<Buffers>(64 << 10);
    const auto pLarge = std::make_shared<Buffers>(1 << 20);
    const bool bWide = ChooseGroupCoder().pEncode != cPlainCoder.pEncode;
    for (const Shared& p : {pSmall, pLarge}) {
        const std::string Size = p == pSmall ? " 64 KiB" : " 1 MiB";
        AddRow("encode" + Size + ", memcpy", bWide ? 3.00 : NoBar, LibraryEncode(p), Copy(p));
        AddRow("decode" + Size + ", memcpy", bWide ? 4.00 : NoBar, LibraryDecode(p), Copy(p));
        AddRow("encode" + Size + " plainly, byte loop", ThreeTimes, Encode(p, cPlainCoder.pEncode),
               Encode(p, EncodeBytewise));
        AddRow("decode" + Size + " plainly, byte loop", ThreeTimes, Decode(p, cPlainCoder.pDecode),
               Decode(p, DecodeBytewise));
    }
    for (const Base64Coder& cCoder : Base64Coders()) {
        AddBase64Rows(pSmall, cCoder);
    }
}
