#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# Usage: layout.sh INCLUDE_DIR COMPILER [FLAG...]
# Where the fields and the virtual operations of the public classes lie, and how much these take: programs and plugins
# that were built before depend on it.
set -euo pipefail
include=$1
program=$(mktemp)
trap 'rm -f "$program"' EXIT
shift

# Each line: a class, its size, and its fields with their offsets. A pair is of 64 and of 32 bits, a single number of
# both, and "-" is not looked at.
layout='
PROPERTIES    32/16    m_b2PropertyCapacity=0 m_b2PropertyCount=2 m_pachSections=8/4 m_pachKeys=16/8 m_pachValues=24/12
FRAMEWORK     48/28    m_bError=32/16 m_b2PluginCapacity=36/20 m_b2PluginCount=38/22 m_ppPlugins=40/24
EObject       80/44    m_cProperties=8/4 m_pFramework=40/20 m_iDebug=48/24
EObject       80/44    m_b2SinkPadCapacity=52/28 m_b2SinkPadCount=54/30 m_ppSinkPads=56/32
EObject       80/44    m_b2SourcePadCapacity=64/36 m_b2SourcePadCount=66/38 m_ppSourcePads=72/40
EPipeline     120/68   m_ppElements=80/44 m_iElementCapacity=88/48 m_iElementCount=92/52
EPipeline     120/68   m_ppConnections=96/56 m_b2ConnectionCapacity=104/60 m_b2ConnectionCount=106/62
EPipeline     120/68   m_pSinkElement=112/64
CONNECTION    8        b2SourceElement=0 b2SourcePad=2 b2SinkElement=4 b2SinkPad=6
PAD           16/8     m_pElement=8/4
SINKPAD       24/12    m_b2Index=16/8
SOURCEPAD     24/12    m_pSinkPad=16/8
QObject       48/24    m_cProperties=8/4 m_b2Reserved=40/20
QEOF          48/24
PLUGIN        24/12    m_pFramework=8/4 m_pFactory=16/8
FWPLUGIN      288/272  m_achPath=24/12 m_pHandle=280/268
EPassthrough  -        m_pSourcePad=80/44 m_b4Debug=88/48
ESerialize    -        m_pWriter=80/44 m_b2Passthrough=88/48
EDeserialize  -        m_pReader=80/44
ETee          80/44
ESource       80/44
ESink         80/44
SFileWrite    272/264  m_achFileName=8/4 m_pFile=264/260
SFileRead     288/272  m_pFile=264/260 m_pchLineBuffer=272/264 m_b4LineBufferSize=280/268
MFColorTable  264/260
Factory       8/4
PluginFactory -        m_ppFactories=8/4
SWrite        8/4
SRead         8/4
'
# Each line: the slot of the first operation, where a destructor before it takes two; the class; the operations in slots
# one behind the other. An overload is told by what it takes.
slots='
0 Factory   CreateElement CreateQObject CreateObject Initialize
2 EObject   Initialize DataArrived Run GetSinkPadCount GetSinkPad GetSourcePadCount GetSourcePad
9 EPipeline SetElementProperty GetElementProperty(char*,char*,char*,Byte2Type) GetElementProperty(char*,char*,Byte2Type*)
12 EPipeline AddElement Connect
2 QObject   Duplicate Serialize Deserialize Write GetEOF
2 PLUGIN    Initialize
2 SWrite    WriteData
2 SRead     ReadLine
3 SFileRead ReadBlock OpenFile SetFile GetFileSize
'
{
    cat <<'END'
#include "fwlib/fwlib.h"
#include <cstddef>
#include <cstdio>
#include <cstring>
using namespace VESK;
// A pointer to a virtual operation begins with one more than the offset of its slot, others with an even address.
template <class Member> int Differs(const char* pchName, Member Operation, std::ptrdiff_t Slot) {
    std::ptrdiff_t First;
    std::memcpy(&First, &Operation, sizeof First);
    const bool bDiffers = First != Slot * static_cast<std::ptrdiff_t>(sizeof(void*)) + 1;
    return bDiffers ? std::printf("%s is not in slot %d\n", pchName, static_cast<int>(Slot)) : 0;
}
END
    awk '
        function claim(what, numbers,   pair) {
            if (numbers == "-") return
            if (split(numbers, pair, "/") == 1) pair[2] = pair[1]
            printf("static_assert(%s == (sizeof(void*) == 8 ? %d : %d), \"%s\");\n", what, pair[1], pair[2], what)
        }
        NF { claim("sizeof(" $1 ")", $2) }
        { for (i = 3; i <= NF; ++i) { split($i, field, "="); claim("offsetof(" $1 ", " field[1] ")", field[2]) } }
    ' <<<"$layout"
    echo 'int main() { int iDiffer = 0;'
    awk '{
        for (i = 3; i <= NF; ++i) {
            name = $i; sub(/\(.*/, "", name); type = substr($i, length(name) + 1); member = "&" $2 "::" name
            if (type != "") member = "static_cast<int (" $2 "::*)" type ">(" member ")"
            printf("iDiffer += Differs(\"%s::%s\", %s, %d);\n", $2, name, member, $1 + i - 3)
        }
    }' <<<"$slots"
    echo 'return iDiffer > 0; }'
} | "$@" -std=c++17 -Wno-invalid-offsetof "-I$include" -o "$program" -x c++ -
"$program"
