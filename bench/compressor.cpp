// SPDX-License-Identifier: MIT
// Rows that compress a buffer of 61,440 bytes, and expand it again.
#include "rows.h"

#include <fwlib/fwlib.h>
#include <fwlib/streams/suppress.h>

#include <cstring>
#include <memory>
#include <random>
#include <vector>

#ifdef BENCH_LZ4
#include <lz4.h>
#endif

namespace {

using namespace VESK;
using Byte = unsigned char;

constexpr std::size_t Size = 61440;
constexpr double TwiceAsFast = 0.50;
constexpr double AllowedTime = Size / 2.5; // nanoseconds, at 2.5 GB/s

class NoWrite final : public SWrite {
public:
    Byte4Type WriteData(char*, Byte4Type) override { return 0; }
};

// Kinds of data, by the next word from the last one.
using Kind = std::uint32_t (*)(std::uint32_t, std::mt19937&);

// One word of 16 is not zero.
std::uint32_t Sparse(std::uint32_t, std::mt19937& cRandom) {
    return cRandom() % 16 == 0 ? static_cast<std::uint32_t>(cRandom()) : 0;
}

// Runs of 8 words on average.
std::uint32_t Runs(std::uint32_t uLast, std::mt19937& cRandom) {
    return cRandom() % 8 == 0 ? static_cast<std::uint32_t>(cRandom()) : uLast;
}

// A reading that wanders: one of three samples differs from the last by a little.
std::uint32_t Sensor(std::uint32_t uLast, std::mt19937& cRandom) {
    return cRandom() % 3 == 0 ? uLast + static_cast<std::uint32_t>(cRandom() % 5) - 2 : uLast;
}

struct Data {
    Data(Kind pNext, bool bIsBackward)
        : bBackward(bIsBackward), cSource(Size), cCoded(Size), cResult(2 * Size) {
        std::mt19937 cRandom(1);
        std::uint32_t uWord = 0x8000;
        for (std::size_t u = 0; u < Size; u += sizeof uWord) {
            uWord = pNext(uWord, cRandom);
            std::memcpy(cSource.data() + u, &uWord, sizeof uWord);
        }
        cCoded.resize(cPlainBlockCoder.pCompress(cCoded.data(), cSource.data(), Size, bBackward));
    }

    bool bBackward;
    std::vector<Byte> cSource;
    std::vector<Byte> cCoded;
    std::vector<Byte> cResult;
};

using Shared = std::shared_ptr<Data>;

// The work returns the bytes it made; other than uExpected is an error.
template <class Work>
Measured Loop(std::size_t uExpected, Work cWork) {
    return [uExpected, cWork](benchmark::State& cState) {
        for (auto _ : cState) {
            if (static_cast<std::size_t>(cWork()) != uExpected) {
                cState.SkipWithError("the result is of a wrong length");
                return;
            }
            benchmark::ClobberMemory();
        }
    };
}

#ifdef BENCH_LZ4

char* Characters(std::vector<Byte>& cBytes) {
    return reinterpret_cast<char*>(cBytes.data());
}

void AddLz4Rows(const std::string& Name, const Shared& p) {
    const unsigned char bFlag = p->bBackward ? 2 : 0;
    const auto pPacked = std::make_shared<std::vector<Byte>>(2 * Size);
    const int iPacked =
        LZ4_compress_default(Characters(p->cSource), Characters(*pPacked), static_cast<int>(Size), 2 * Size);
    AddRow("compress " + Name + ", LZ4", TwiceAsFast,
           Loop(p->cCoded.size(),
                [p, bFlag] { return NoWrite().Compress(p->cResult.data(), p->cSource.data(), Size, bFlag); }),
           Loop(static_cast<std::size_t>(iPacked), [p] {
               return LZ4_compress_default(Characters(p->cSource), Characters(p->cResult),
                                           static_cast<int>(Size), 2 * Size);
           }));
    AddRow("expand " + Name + ", LZ4", TwiceAsFast,
           Loop(Size,
                [p, bFlag] {
                    return SRead::Decompress(p->cResult.data(), Size, p->cCoded.data(),
                                             static_cast<Byte4Type>(p->cCoded.size()), bFlag);
                }),
           Loop(Size, [p, pPacked, iPacked] {
               return LZ4_decompress_safe(Characters(*pPacked), Characters(p->cResult), iPacked,
                                          static_cast<int>(Size));
           }));
}

#else

void AddLz4Rows(const std::string&, const Shared&) {}

#endif

void AddPlainRows(const std::string& Name, const Shared& p) {
    AddTimedRow("compress " + Name + " plainly, 2.5 GB/s", AllowedTime, Loop(p->cCoded.size(), [p] {
                    return cPlainBlockCoder.pCompress(p->cResult.data(), p->cSource.data(), Size,
                                                      p->bBackward);
                }));
    AddTimedRow("expand " + Name + " plainly, 2.5 GB/s", AllowedTime, Loop(Size, [p] {
                    return cPlainBlockCoder.pExpand(p->cResult.data(), Size, p->cCoded.data(),
                                                    p->cCoded.size(), p->bBackward);
                }));
}

} // namespace

void AddCompressorRows() {
    const struct {
        const char* pchName;
        Kind pNext;
    } acKinds[] = {{"sparse", Sparse}, {"runs", Runs}, {"sensor", Sensor}};
    for (const auto& cKind : acKinds) {
        for (const bool bBackward : {false, true}) {
            const auto p = std::make_shared<Data>(cKind.pNext, bBackward);
            const std::string Name = cKind.pchName + std::string(bBackward ? " backward" : "");
            AddLz4Rows(Name, p);
            AddPlainRows(Name, p);
        }
    }
}
