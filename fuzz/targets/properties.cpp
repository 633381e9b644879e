// SPDX-License-Identifier: MIT
// Input: operations on three data objects, byte by byte; texts stand in it up to a zero byte. In the end each
// object's list holds what a map holds to which the same was done.
#include "../listmodel.h"
#include "../targets.h"

void fuzz::Properties(Input& in) {
    ListModel models[3];
    for (int operations = 0; !in.Empty() && operations < 64; ++operations) {
        const unsigned int byte = in.Byte(), operation = byte & 7;
        ListModel &one = models[(byte >> 3) % 3], &other = models[(byte >> 5) % 3];
        const ExactText section(byte & 128 ? in.UpTo(0) : "Standard"), text(operation < 6 ? in.UpTo(0) : "");
        switch (operation) {
        case 0:
        case 1:
            one.Set(section.Chars(), text.Chars(), in.UpTo(0));
            if (operation == 1) {
                one.PutByHand(section.Chars(), text.Chars());
            }
            break;
        case 2:
        case 3:
            one.SetNumber(section.Chars(), text.Chars(), static_cast<short>(in.Short()), operation == 3);
            break;
        case 4:
            one.SetPair(section.Chars(), text.Chars());
            break;
        case 5:
            one.Get(section.Chars(), text.Chars(), in.Byte() + 1);
            break;
        case 6:
            one.CopyOf(other);
            break;
        default:
            byte & 128 ? one.Reset() : one.DuplicateOf(other);
        }
    }
    for (const ListModel& model : models) {
        model.Check();
    }
}
