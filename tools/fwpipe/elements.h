// SPDX-License-Identifier: MIT
// The elements of a built pipeline: which class they are of, what they are called, and which one originates the data.
//
// A class is recognized by the operations that an element has from it, so subclasses count too. Asking the compiler's
// type information instead would crash on elements of a plugin that was compiled without it.
#ifndef FWPIPE_ELEMENTS_H
#define FWPIPE_ELEMENTS_H

#include <functional>
#include <string>

namespace VESK {
class EDeserialize;
class EObject;
class EPipeline;
} // namespace VESK

namespace FwPipe {

// The element as that class, or null. A subclass that overrides Initialize as well as Run is not recognized.
VESK::EPipeline* AsPipeline(VESK::EObject* pElement);
VESK::EDeserialize* AsReplay(VESK::EObject* pElement);

// An ESerialize, a subclass of it, or what calls itself ESerialize.
bool IsRecorder(VESK::EObject& cElement);

// The element's property of section "Standard", lent until the element changes; null when it is missing.
const char* Setting(VESK::EObject& cElement, const char* pchKey);

// The element's name in quotation marks, or its type when it has none.
std::string Shown(VESK::EObject& cElement);

// Calls for each element of the pipeline in their order, and for those of a nested pipeline in its place.
void ForEach(VESK::EPipeline& cPipeline, const std::function<void(VESK::EObject&)>& cCall);

// Whether the pipeline, or one nested in it, still has the element, which is not touched.
bool Has(const VESK::EPipeline& cPipeline, const VESK::EObject* pElement);

// The element whose Run the pipeline's Run comes down to, through nested pipelines; null when there is none.
VESK::EObject* Originator(VESK::EPipeline& cPipeline);

} // namespace FwPipe

#endif
