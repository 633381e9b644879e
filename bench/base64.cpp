// SPDX-License-Identifier: MIT
#include "coders.h"

#ifdef BENCH_MODP
#include <modp_b64.h>
#endif
#ifdef BENCH_OPENSSL
#include <openssl/evp.h>
#endif
#ifdef BENCH_B64
extern "C" {
#include <b64/cdecode.h>
#include <b64/cencode.h>
}
#endif
#ifdef BENCH_GLIB
#include <glib.h>
#endif

namespace {

[[maybe_unused]] char* Characters(Byte* p) {
    return reinterpret_cast<char*>(p);
}
[[maybe_unused]] const char* Characters(const Byte* p) {
    return reinterpret_cast<const char*>(p);
}

#ifdef BENCH_MODP
std::size_t EncodeModp(Byte* pText, const Byte* pData, std::size_t uBytes) {
    return modp_b64_encode(Characters(pText), Characters(pData), uBytes);
}
void DecodeModp(Byte* pData, const Byte* pText, std::size_t uCharacters) {
    modp_b64_decode(Characters(pData), Characters(pText), uCharacters);
}
#endif

#ifdef BENCH_OPENSSL
std::size_t EncodeOpenSsl(Byte* pText, const Byte* pData, std::size_t uBytes) {
    return static_cast<std::size_t>(EVP_EncodeBlock(pText, pData, static_cast<int>(uBytes)));
}
void DecodeOpenSsl(Byte* pData, const Byte* pText, std::size_t uCharacters) {
    EVP_DecodeBlock(pData, pText, static_cast<int>(uCharacters));
}
#endif

#ifdef BENCH_B64
std::size_t EncodeB64(Byte* pText, const Byte* pData, std::size_t uBytes) {
    base64_encodestate cState;
    base64_init_encodestate(&cState);
    return static_cast<std::size_t>(
        base64_encode_block(Characters(pData), static_cast<int>(uBytes), Characters(pText), &cState));
}
void DecodeB64(Byte* pData, const Byte* pText, std::size_t uCharacters) {
    base64_decodestate cState;
    base64_init_decodestate(&cState);
    base64_decode_block(Characters(pText), static_cast<int>(uCharacters), Characters(pData), &cState);
}
#endif

#ifdef BENCH_GLIB
std::size_t EncodeGlib(Byte* pText, const Byte* pData, std::size_t uBytes) {
    gint iState = 0;
    gint iSaved = 0;
    return g_base64_encode_step(pData, uBytes, FALSE, Characters(pText), &iState, &iSaved);
}
void DecodeGlib(Byte* pData, const Byte* pText, std::size_t uCharacters) {
    gint iState = 0;
    guint uSaved = 0;
    g_base64_decode_step(Characters(pText), uCharacters, pData, &iState, &uSaved);
}
#endif

} // namespace

std::vector<Base64Coder> Base64Coders() {
    return {
#ifdef BENCH_MODP
        {"libmodpbase64", EncodeModp, DecodeModp},
#endif
#ifdef BENCH_OPENSSL
        {"OpenSSL", EncodeOpenSsl, DecodeOpenSsl},
#endif
#ifdef BENCH_GLIB
        {"GLib", EncodeGlib, DecodeGlib},
#endif
#ifdef BENCH_B64
        {"libb64", EncodeB64, DecodeB64},
#endif
    };
}
