// SPDX-License-Identifier: MIT
// The known word that a misspelt one probably means.
#ifndef FWPIPE_NEAREST_H
#define FWPIPE_NEAREST_H

#include <string>
#include <vector>

namespace FwPipe {

// The candidate with the fewest single mistakes (a character left out, added or replaced, two neighbours exchanged; the
// case of a letter counts little), if these are few for the word's length. Empty for none; the first of equals.
std::string Nearest(const std::string& cWord, const std::vector<std::string>& cCandidates);

// The end of a message: "; did you mean "X"?", or nothing for an empty text.
std::string DidYouMean(const std::string& cHint);

} // namespace FwPipe

#endif
