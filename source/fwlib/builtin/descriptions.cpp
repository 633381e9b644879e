// SPDX-License-Identifier: MIT
#include "fwlib/builtin/descriptions.h"

#include "fwlib/text.h"
#include "fwlib/version.h"

namespace VESK {

namespace {

constexpr const char* MostPads = "65520";

constexpr PropertyDescription Optional(const char* pchKey, PropertyKind Kind, const char* pchDefault,
                                       const char* pchMeaning) {
    return {pchKey, Byte4Type{Kind}, 0, pchDefault, nullptr, nullptr, nullptr, nullptr, pchMeaning};
}

constexpr PropertyDescription Pads(const char* pchKey, const char* pchDefault, const char* pchMeaning) {
    return {pchKey, Byte4Type{NumberProperty}, 0, pchDefault, "0", MostPads, nullptr, "pads", pchMeaning};
}

constexpr PadsDescription None = {0, nullptr};
constexpr PadsDescription One = {1, nullptr};

constexpr PropertyDescription TeePads = Pads(Key::TotalSourcePads, "2", "source pads");
constexpr PropertyDescription SourcePads =
    Pads(Key::TotalSourcePads, "1", "source pads; objects are sent through the first one only");
constexpr PropertyDescription Passthrough =
    Pads(Key::Passthrough, "0", "source pads, each of which gets every object that was written");
constexpr PropertyDescription Written =
    Optional(Key::Filename, FileToWriteProperty, nullptr,
             "the file, at most 255 characters; standard output if absent");
constexpr PropertyDescription Read = Optional(Key::Filename, FileToReadProperty, nullptr,
                                              "the file, at most 255 characters; standard input if absent");
constexpr PropertyDescription Existing = {
    Key::Existing,
    Byte4Type{ChoiceProperty},
    0,
    "replace",
    nullptr,
    nullptr,
    "replace|append|refuse",
    nullptr,
    "what happens to a file that exists: emptied, continued after its last complete object, or a failure"};
constexpr PropertyDescription Shared =
    Optional(Key::Shared, NumberProperty, "0",
             "not 0: the file may be one that another element of the process has open");
constexpr PropertyDescription WriteStrict =
    Optional(Key::Strict, NumberProperty, "0",
             "not 0: an object that is not stored, or would be read back differently, is a failure");
constexpr PropertyDescription ReadStrict =
    Optional(Key::Strict, NumberProperty, "0", "not 0: reading ends at an object that is not complete");
constexpr PropertyDescription SinkElement =
    Optional(Key::SinkElement, TextProperty, nullptr,
             "the inner element that Run runs and whose sink pads are the pipeline's");
constexpr PropertyDescription SourceElement = Optional(
    Key::SourceElement, TextProperty, nullptr, "the inner element whose source pads are the pipeline's");

constexpr const PropertyDescription* NoProperties[] = {nullptr};
constexpr const PropertyDescription* OfTee[] = {&TeePads, nullptr};
constexpr const PropertyDescription* OfSource[] = {&SourcePads, nullptr};
constexpr const PropertyDescription* OfSerialize[] = {&Written,     &Existing,    &Shared,
                                                      &WriteStrict, &Passthrough, nullptr};
constexpr const PropertyDescription* OfDeserialize[] = {&Read, &ReadStrict, nullptr};
constexpr const PropertyDescription* OfPipeline[] = {&SinkElement, &SourceElement, nullptr};

constexpr ElementDescription Nowhere = {Type::EDevNull, "accepts every object and ignores it", 0, One, None,
                                        NoProperties};
constexpr ElementDescription Passing = {
    Type::EPassthrough, "delivers every object to its source pad", 0, One, One, NoProperties};
constexpr ElementDescription Tee = {
    Type::ETee, "delivers every object to each of its source pads", 0, One, {2, Key::TotalSourcePads}, OfTee};
constexpr ElementDescription Source = {
    Type::ESource, "sends 1,000 objects whose Count is 0 to 999", 1, None, {1, Key::TotalSourcePads},
    OfSource};
constexpr ElementDescription Sink = {
    Type::ESink, "prints the type of every object on standard output", 0, One, None, NoProperties};
constexpr ElementDescription Serialize = {
    Type::ESerialize, "writes every object to a file", 0, One, {0, Key::Passthrough}, OfSerialize};
constexpr ElementDescription Deserialize = {
    Type::EDeserialize, "reads an object from a file at each Run and sends it", 1, None, One, OfDeserialize};
constexpr ElementDescription Pipeline = {Type::EPipeline,
                                         "contains other elements, such as those of a nested pipe file",
                                         1,
                                         {0, Key::SinkElement},
                                         {0, Key::SourceElement},
                                         OfPipeline};

constexpr const ElementDescription* Elements[] = {&Nowhere,   &Passing,     &Tee,      &Source, &Sink,
                                                  &Serialize, &Deserialize, &Pipeline, nullptr};

constexpr ObjectDescription Plain = {Type::QObject, "a data object whose content is its properties"};
constexpr ObjectDescription End = {"QEOF", "tells that no objects follow; in streams it is a QObject"};
constexpr const ObjectDescription* Objects[] = {&Plain, &End, nullptr};

} // namespace

const PluginDescription BuiltinDescription = {PluginDescription::CurrentVersion, FWLIB_VERSION, Elements,
                                              Objects};

} // namespace VESK
