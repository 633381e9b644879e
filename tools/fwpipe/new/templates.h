// SPDX-License-Identifier: MIT
// The files in tools/fwpipe/templates, which are embedded at build time.
#ifndef FWPIPE_NEW_TEMPLATES_H
#define FWPIPE_NEW_TEMPLATES_H

namespace FwPipe {

struct Template {
    const char* pchFile; // null after the last one
    const char* pchText;
};

extern const Template PluginTemplates[];

} // namespace FwPipe

#endif
