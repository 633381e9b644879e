// SPDX-License-Identifier: MIT
// How fwpipe reads calls and jumps, in code that is not executed.
#include "machinecode.h"

#include <gtest/gtest.h>

using namespace FwPipe;

#ifdef __x86_64__
#define SLOT "0x18"
#else
#define SLOT "0x0c"
#endif

// In the order in which they lie in memory, so that some distances are known.
#define CODES(CODE)                                                                                          \
    CODE(target, "nop; nop")                                                                                 \
    CODE(to_next, ".byte 0xeb, 2; nop; nop")                                                                 \
    CODE(next, "nop; nop")                                                                                   \
    CODE(into_next, ".byte 0xeb, 1")                                                                         \
    CODE(next_too, "nop; nop")                                                                               \
    CODE(jump, ".byte 0xe9; .long code_target - . - 4")                                                      \
    CODE(jump_if, ".byte 0x0f, 0x85; .long code_target - . - 4")                                             \
    CODE(two_jumps, ".byte 0xe9; .long code_jump - . - 4")                                                   \
    CODE(three_jumps, ".byte 0xe9; .long code_two_jumps - . - 4")                                            \
    CODE(cut_short, ".byte 0xeb")                                                                            \
    CODE(behind_short, ".byte 0xff, 0x90")                                                                   \
    CODE(cut, ".byte 0xe9, 1, 0, 0")                                                                         \
    CODE(behind, ".byte 0, 0x90, 0x90, 0x90")                                                                \
    CODE(cut_if, ".byte 0x0f, 0x84, 1, 0, 0")                                                                \
    CODE(behind_if, ".byte 0, 0x90, 0x90, 0x90")                                                             \
    CODE(register_jump, ".byte 0xff, 0xe3")                                                                  \
    CODE(table_jump, ".byte 0xff, 0x63, 8")                                                                  \
    CODE(cut_register, ".byte 0xff")                                                                         \
    CODE(behind_register, ".byte 0xe3, 0x90, 0x90, 0x90, 0x90, 0x90, 0x90")                                  \
    CODE(register_call, ".byte 0xff, 0xd3")                                                                  \
    CODE(delivery, ".byte 0xff, 0x53, " SLOT)                                                                \
    CODE(other_slot, ".byte 0xff, 0x53, 0x7f")                                                               \
    CODE(call, ".byte 0xe8; .long code_target - . - 4")                                                      \
    CODE(bare_call, ".byte 0xe8; .long code_bare - . - 4")
// clang-format off
#define CODES_OF_64_BITS(CODE)                                                                               \
    CODE(link, "jmp *code_slot(%rip)")                                                                       \
    CODE(marked_link, ".byte 0xf3, 0x0f, 0x1e, 0xfa, 0xf2; jmp *code_slot(%rip)")                            \
    CODE(link_jump, ".byte 0xe9; .long code_link - . - 4")                                                   \
    CODE(link_call, ".byte 0xe8; .long code_marked_link - . - 4")                                            \
    CODE(slot_call, "nop; call *code_slot(%rip)")
// clang-format on
#define DECLARED(name, text) extern "C" const char code_##name[] __attribute__((visibility("hidden")));
#define ASSEMBLED(name, text)                                                                                \
    ".globl code_" #name "; .hidden code_" #name "; code_" #name ": .cfi_startproc; " text "; "              \
    ".cfi_endproc\n"

CODES(DECLARED)
CODES_OF_64_BITS(DECLARED)
DECLARED(bare, )
asm(".text\n" CODES(ASSEMBLED) ".globl code_bare; .hidden code_bare; code_bare: nop; nop\n");
#ifdef __x86_64__
asm(CODES_OF_64_BITS(ASSEMBLED) ".data\n.balign 8\ncode_slot: .quad code_target\n.text\n");
#endif

namespace {

Address At(const char* pchCode) {
    return reinterpret_cast<Address>(pchCode);
}
Code Of(const char* pchCode) {
    return CodeAt(At(pchCode));
}
Address End(const char* pchCode) {
    return Of(pchCode).uEnd;
}

} // namespace

TEST(MachineCode, JumpsLeadToOtherFunctions) {
    EXPECT_EQ(End(code_to_next) - At(code_to_next), 4u);
    const struct {
        const char *pchFrom, *pchTo;
        bool bContinues, bLeaves;
    } aRows[] = {
        {code_target, code_target, true, false},
        {code_target, code_jump, false, false},
        {code_to_next, code_next, true, true},
        {code_into_next, code_next_too, false, false},
        {code_jump, code_target, true, true},
        {code_jump_if, code_target, true, true},
        {code_two_jumps, code_target, true, true},
        {code_three_jumps, code_target, false, true},
        {code_cut_short, code_behind_short, false, false},
        {code_cut, code_behind, false, false},
        {code_cut_if, code_behind_if, false, false},
        {code_register_jump, code_target, false, true},
        {code_table_jump, code_target, false, true},
        {code_cut_register, code_target, false, false},
        {code_register_call, code_target, false, false},
    };
    for (const auto& row : aRows) {
        SCOPED_TRACE(&row - aRows);
        EXPECT_EQ(Continues(Of(row.pchFrom), Of(row.pchTo)), row.bContinues);
        EXPECT_EQ(MayLeave(Of(row.pchFrom)), row.bLeaves);
    }
    EXPECT_FALSE(Continues({}, {}));
    EXPECT_EQ(Of(code_bare).uBegin, 0u);
}

TEST(MachineCode, CallsAreKnownByTheirLastBytes) {
    EXPECT_EQ(CallBefore(End(code_behind_register)), Call::Other);
    EXPECT_EQ(CallBefore(End(code_register_call)), Call::Delivery);
    EXPECT_EQ(CallBefore(End(code_delivery)), Call::Delivery);
    EXPECT_EQ(CallBefore(End(code_other_slot)), Call::Other);
    EXPECT_EQ(CallBefore(End(code_call)), Call::Direct);
    EXPECT_EQ(TargetOf(End(code_call)), At(code_target));
    EXPECT_EQ(TargetOf(End(code_bare_call)), At(code_bare));
#ifdef __x86_64__
    EXPECT_TRUE(Continues(Of(code_link_jump), Of(code_target)));
    EXPECT_EQ(TargetOf(End(code_link_call)), At(code_target));
    EXPECT_EQ(CallBefore(End(code_slot_call)), Call::Direct);
    EXPECT_EQ(TargetOf(End(code_slot_call)), At(code_target));
#endif
}
