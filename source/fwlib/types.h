// SPDX-License-Identifier: MIT
// The integer types of all interfaces, and declarations of the classes.
#ifndef FWLIB_TYPES_H
#define FWLIB_TYPES_H

#include <climits>
#include <type_traits>

namespace KESTRAN {
class IComponent; // a parameter type of FRAMEWORK::GetDataRecorderComponentPortal; never defined
}

namespace VESK {

using Byte4Type = unsigned int;   // 32 bits
using Byte2Type = unsigned short; // 16 bits: counts and indexes of pads, properties, plugins, connections

// A byte as a number from -128 to 127: char where char is signed, otherwise signed char.
using SignedByte = std::conditional<(CHAR_MIN < 0), char, signed char>::type;

static_assert(sizeof(Byte4Type) == 4 && sizeof(Byte2Type) == 2, "fixed widths are part of the interface");

class EObject;
class Factory;
class FRAMEWORK;
class PLUGIN;
class PROPERTIES;
class QObject;
class SINKPAD;
class SOURCEPAD;
class SRead;
class SWrite;

} // namespace VESK

#endif
