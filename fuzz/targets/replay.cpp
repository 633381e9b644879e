// SPDX-License-Identifier: MIT
// Input: an object stream. A strict replay sends as many objects as begin it whole. What a recorder makes of a
// replay, strict or not, reads back as it is written.
#include "../deck.h"
#include "../models.h"
#include "../targets.h"

void fuzz::Replay(Input& in) {
    static Deck plain("0"), strict("1");
    files["given"] = in.Rest();
    CLAIM(strict.Copy("given", "strict") == WholeObjects(files["given"], MostObjects));
    const int objects = plain.Copy("given", "copy");
    CLAIM(strict.Copy("copy", "again") == objects && files["again"] == files["copy"]);
}
