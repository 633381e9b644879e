// SPDX-License-Identifier: MIT
// Input: a section's name, then the text of a configuration file. The list holds what the section does, and a file
// that it was saved to holds the same.
#include "../models.h"
#include "../targets.h"

void fuzz::Config(Input& in) {
    const ExactText section(in.Line());
    files["read"] = in.Rest();
    VESK::PROPERTIES read, again;
    Entries expected;
    const bool found = ExpectedSection(files["read"], section.Chars(), expected);
    CLAIM(read.ReadConfig(VESK::Text("read"), section.Chars()) == found);
    CLAIM(Holds(read, expected));

    const bool kept = !expected.empty() && section.Size() > 1; // the section without a name is left out
    CLAIM(read.SaveConfig(VESK::Text("saved"), nullptr) == kept);
    CLAIM(read.SaveConfig(VESK::Text("saved")) == !expected.empty());
    CLAIM(again.ReadConfig(VESK::Text("saved"), section.Chars()) == kept);
    CLAIM(!kept || Same(again, read));
}
