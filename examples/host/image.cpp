// SPDX-License-Identifier: MIT
// A program that writes an image to a text stream and reads it back. Width and height are typed records; the compressed
// pixels are a block record. sum.cpp explains how to build it.
//
// Run: build/host/image
// Output:
//   24 x 10 pixels, 240 bytes, stored in 120.
//   ........................
//   .......##########.......
//   .....##############.....
//   ....################....
//   ...##################...
//   ...##################...
//   ....################....
//   .....##############.....
//   .......##########.......
//   ........................
#include <fwlib/fwlib.h>

#include <cstdio>
#include <vector>

namespace {

char* const FileName = VESK::Text("build/image.txt");

// Grey pixels, row by row.
struct Image {
    int iWidth = 0;
    int iHeight = 0;
    std::vector<unsigned char> Pixels;
};

Image DrawDisc(int iWidth, int iHeight) {
    Image cImage{iWidth, iHeight, {}};
    for (int iY = 0; iY < iHeight; ++iY) {
        for (int iX = 0; iX < iWidth; ++iX) {
            const int iRight = 2 * iX + 1 - iWidth;
            const int iDown = 2 * (2 * iY + 1 - iHeight); // a character is twice as high as wide
            cImage.Pixels.push_back(iRight * iRight + iDown * iDown < 300 ? 255 : 0);
        }
    }
    return cImage;
}

// Writes the records Width, Height and Coded, then the compressed pixels. Coded is their size, which the reader must
// know before it reads the block. Returns Coded, or 0 if the image cannot be compressed.
int Send(VESK::SWrite& cWriter, Image& cImage) {
    const std::size_t uSize = cImage.Pixels.size(); // a multiple of 120; Compress omits a rest
    std::vector<unsigned char> Coded(uSize);
    const int iCoded =
        cWriter.Compress(Coded.data(), cImage.Pixels.data(), static_cast<VESK::Byte2Type>(uSize), 0);
    cWriter.Serialize(VESK::Text("Width"), cImage.iWidth);
    cWriter.Serialize(VESK::Text("Height"), cImage.iHeight);
    cWriter.Serialize(VESK::Text("Coded"), iCoded);
    cWriter.SerializeBlock(VESK::Text("Pixels"), Coded.data(), iCoded);
    return iCoded;
}

bool Receive(VESK::SRead& cReader, Image& cImage) {
    constexpr int Most = 60000; // bytes; a damaged stream cannot make the program allocate more
    int iCoded = 0;
    if (!cReader.Deserialize(&cImage.iWidth) || !cReader.Deserialize(&cImage.iHeight) ||
        !cReader.Deserialize(&iCoded) || cImage.iWidth < 1 || cImage.iHeight < 1 ||
        cImage.iWidth > Most / cImage.iHeight || iCoded < 1 || iCoded > Most) {
        return false;
    }
    std::vector<unsigned char> Coded(static_cast<std::size_t>(iCoded));
    cImage.Pixels.resize(static_cast<std::size_t>(cImage.iWidth * cImage.iHeight));
    const auto b4Size = static_cast<VESK::Byte4Type>(cImage.Pixels.size());
    return cReader.DeserializeBlock(Coded.data(), iCoded) &&
           VESK::SRead::Decompress(cImage.Pixels.data(), b4Size, Coded.data(),
                                   static_cast<VESK::Byte4Type>(iCoded), 0) == b4Size;
}

void Show(const Image& cImage) {
    for (std::size_t u = 0; u < cImage.Pixels.size(); ++u) {
        std::putchar(cImage.Pixels[u] ? '#' : '.');
        if ((u + 1) % static_cast<std::size_t>(cImage.iWidth) == 0) {
            std::putchar('\n');
        }
    }
}

} // namespace

int main() {
    Image cSent = DrawDisc(24, 10);
    int iCoded;
    {
        VESK::SFileWrite cWriter(FileName, 0);
        iCoded = Send(cWriter, cSent);
    }
    Image cReceived;
    VESK::SFileRead cReader(FileName);
    if (!Receive(cReader, cReceived) || cReceived.Pixels != cSent.Pixels) {
        std::fprintf(stderr, "image: %s does not contain the image\n", FileName);
        return 1;
    }
    std::printf("%d x %d pixels, %zu bytes, stored in %d.\n", cReceived.iWidth, cReceived.iHeight,
                cReceived.Pixels.size(), iCoded);
    Show(cReceived);
    return 0;
}
