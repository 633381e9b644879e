// SPDX-License-Identifier: MIT
// Input: a property list as it stands in an object stream, read into a list. It holds what a reader of the
// description takes, and reads back as it is written.
#include "../models.h"
#include "../targets.h"

void fuzz::Objects(Input& in) {
    const std::string text = in.Rest();
    VESK::PROPERTIES list, again;
    Entries expected;
    const bool whole = ExpectedList(text, expected);
    Reader reader(text);
    CLAIM(list.Deserialize(&reader) == whole);
    CLAIM(Holds(list, expected));
    Writer writer;
    CLAIM(list.Serialize(&writer) == 1);
    Reader written(writer.text);
    CLAIM(again.Deserialize(&written) == 1 && written.at == writer.text.size());
    CLAIM(Holds(again, expected));
}
