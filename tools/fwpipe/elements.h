// SPDX-License-Identifier: MIT
// The elements of a pipeline: their classes, their names in messages, and the element that originates the data.
//
// A class is recognized by the virtual operations that an element inherits from it, so subclasses are recognized too.
// dynamic_cast would crash on elements of a plugin that was compiled without type information.
#ifndef FWPIPE_ELEMENTS_H
#define FWPIPE_ELEMENTS_H

#include <functional>
#include <string>
#include <vector>

namespace VESK {
class EDeserialize;
class EObject;
class EPipeline;
} // namespace VESK

namespace FwPipe {

// The element as an EDeserialize, or null. A subclass that overrides both Initialize and Run is not recognized.
VESK::EDeserialize* AsReplay(VESK::EObject* pElement);

// Whether the element's class overrides Run, and so originates data.
bool Originates(VESK::EObject& cElement);

// Whether the element is an ESerialize, a subclass of it, or has the type name ESerialize.
bool IsRecorder(VESK::EObject& cElement);

// The element's property of section "Standard", lent until the element changes; null when it is missing.
const char* Setting(VESK::EObject& cElement, const char* pchKey);

// The element's name in quotation marks, or its type if it has no name.
std::string Shown(VESK::EObject& cElement);

// The first element with that name, or OUTER/INNER for one in a nested pipeline; null for none.
VESK::EObject* FindElementByPath(const VESK::EPipeline& cPipeline, const std::string& cPath);

// The names of all elements that have one, those of nested pipelines as OUTER/INNER.
std::vector<std::string> ElementPaths(const VESK::EPipeline& cPipeline);

// Calls cCall for each element of the pipeline in order, and after a nested pipeline for its elements.
void ForEach(VESK::EPipeline& cPipeline, const std::function<void(VESK::EObject&)>& cCall);

// Whether the pipeline, or one nested in it, still contains the element, which is not accessed.
bool Has(const VESK::EPipeline& cPipeline, const VESK::EObject* pElement);

// The element whose Run is called by the pipeline's Run, also through nested pipelines; null if there is none.
VESK::EObject* Originator(VESK::EPipeline& cPipeline);

} // namespace FwPipe

#endif
