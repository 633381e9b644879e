// SPDX-License-Identifier: MIT
// Every public header of the library. See writing-elements.md in the documentation for a first element.
#ifndef FWLIB_FWLIB_H
#define FWLIB_FWLIB_H

#include "fwlib/builtin/edeserialize.h"
#include "fwlib/builtin/edevnull.h"
#include "fwlib/builtin/epassthrough.h"
#include "fwlib/builtin/eserialize.h"
#include "fwlib/builtin/esink.h"
#include "fwlib/builtin/esource.h"
#include "fwlib/builtin/etee.h"
#include "fwlib/builtin/factories.h"
#include "fwlib/colortable/mfcolortable.h"
#include "fwlib/elements/eobject.h"
#include "fwlib/elements/pad.h"
#include "fwlib/elements/qobject.h"
#include "fwlib/export.h"
#include "fwlib/framework/entry.h"
#include "fwlib/framework/factory.h"
#include "fwlib/framework/framework.h"
#include "fwlib/framework/plugin.h"
#include "fwlib/pipeline/epipeline.h"
#include "fwlib/properties/properties.h"
#include "fwlib/stdc/stdc/byteorder.h"
#include "fwlib/stdc/stdc/fwstdcstring.h"
#include "fwlib/streams/objectlines.h"
#include "fwlib/streams/sfileread.h"
#include "fwlib/streams/sfilewrite.h"
#include "fwlib/streams/sread.h"
#include "fwlib/streams/swrite.h"
#include "fwlib/text.h"
#include "fwlib/types.h"

#endif
