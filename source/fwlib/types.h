// SPDX-License-Identifier: MIT
// The integer types of all interfaces, and declarations of the classes.
#ifndef FWLIB_TYPES_H
#define FWLIB_TYPES_H

namespace KESTRAN {
class IComponent; // named by FRAMEWORK::GetDataRecorderComponentPortal, never used
}

namespace VESK {

using Byte4Type = unsigned int;   // 32 bits
using Byte2Type = unsigned short; // 16 bits: counts and indexes of pads, properties, plugins, connections

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
