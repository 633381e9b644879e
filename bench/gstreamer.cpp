// SPDX-License-Identifier: MIT
// Beside GStreamer: buffers pushed from pad to pad, structures, and pipelines from a text.
#include "peers.h"

#include <gst/gst.h>

#include <memory>
#include <string>
#include <vector>

namespace {

GstPadTemplate* Template(GstPadDirection eDirection) {
    return gst_pad_template_new(eDirection == GST_PAD_SRC ? "src" : "sink", eDirection, GST_PAD_ALWAYS,
                                GST_CAPS_ANY);
}

GstPad* PadOf(GstPadDirection eDirection) {
    GstPadTemplate* const pTemplate = Template(eDirection);
    GstPad* const pPad = gst_pad_new_from_template(pTemplate, pTemplate->name_template);
    gst_object_unref(pTemplate);
    return pPad;
}

// Passes on to the source pad that its own pad holds.
GstFlowReturn Forward(GstPad* pPad, GstObject*, GstBuffer* pBuffer) {
    return gst_pad_push(static_cast<GstPad*>(gst_pad_get_element_private(pPad)), pBuffer);
}

GstFlowReturn Swallow(GstPad*, GstObject*, GstBuffer* pBuffer) {
    gst_buffer_unref(pBuffer);
    return GST_FLOW_OK;
}

// Pads that belong to no element: the least that a buffer has to pass.
class Chain {
public:
    Chain(int iLength, bool bIdentity) : m_pFirst(PadOf(GST_PAD_SRC)) {
        GstPad* pFrom = m_pFirst;
        for (int i = 1; i < iLength; ++i) {
            pFrom = bIdentity ? AddIdentity(pFrom) : AddForwarder(pFrom);
        }
        GstPad* const pLast = PadOf(GST_PAD_SINK);
        gst_pad_set_chain_function(pLast, Swallow);
        Link(pFrom, pLast);
        gst_pad_set_active(m_pFirst, TRUE);
        gst_pad_push_event(m_pFirst, gst_event_new_stream_start("bench"));
        GstSegment cSegment;
        gst_segment_init(&cSegment, GST_FORMAT_TIME);
        gst_pad_push_event(m_pFirst, gst_event_new_segment(&cSegment));
    }
    // The pads last as long as the process: they are few.
    GstPad* First() const { return m_pFirst; }

private:
    static void Link(GstPad* pFrom, GstPad* pTo) {
        gst_pad_set_active(pTo, TRUE);
        gst_pad_link_full(pFrom, pTo, GST_PAD_LINK_CHECK_NOTHING);
    }
    static GstPad* AddForwarder(GstPad* pFrom) {
        GstPad* const pSink = PadOf(GST_PAD_SINK);
        GstPad* const pSource = PadOf(GST_PAD_SRC);
        gst_pad_set_element_private(pSink, pSource);
        gst_pad_set_chain_function(pSink, Forward);
        gst_pad_set_event_function(pSink, [](GstPad* pPad, GstObject*, GstEvent* pEvent) {
            return gst_pad_push_event(static_cast<GstPad*>(gst_pad_get_element_private(pPad)), pEvent);
        });
        gst_pad_set_active(pSource, TRUE);
        Link(pFrom, pSink);
        return pSource;
    }
    static GstPad* AddIdentity(GstPad* pFrom) {
        GstElement* const pIdentity = gst_element_factory_make("identity", nullptr);
        g_object_set(pIdentity, "signal-handoffs", FALSE, "silent", TRUE, nullptr);
        gst_element_set_state(pIdentity, GST_STATE_PLAYING);
        Link(pFrom, gst_element_get_static_pad(pIdentity, "sink"));
        return gst_element_get_static_pad(pIdentity, "src");
    }

    GstPad* m_pFirst;
};

Measured Pushing(int iLength, bool bIdentity) {
    return [iLength, bIdentity](benchmark::State& cState) {
        const Chain cChain(iLength, bIdentity);
        GstBuffer* const pBuffer = gst_buffer_new();
        for (auto _ : cState) {
            if (gst_pad_push(cChain.First(), gst_buffer_ref(pBuffer)) != GST_FLOW_OK) {
                cState.SkipWithError("the buffer did not arrive");
                return;
            }
        }
        gst_buffer_unref(pBuffer);
    };
}

constexpr int Fields = 16;

struct Structure {
    Structure() : p(gst_structure_new_empty("bench")) {
        for (int i = 0; i < Fields; ++i) {
            Last = "A" + std::to_string(i);
            gst_structure_set(p, Last.c_str(), G_TYPE_STRING, "100000", nullptr);
        }
    }
    ~Structure() { gst_structure_free(p); }
    Structure(const Structure&) = delete;
    Structure& operator=(const Structure&) = delete;

    GstStructure* p;
    std::string Last;
};

void Get(benchmark::State& cState) {
    const Structure cStructure;
    char achText[32];
    for (auto _ : cState) {
        g_strlcpy(achText, gst_structure_get_string(cStructure.p, cStructure.Last.c_str()), sizeof achText);
        benchmark::DoNotOptimize(&achText);
        benchmark::ClobberMemory();
    }
}

void Set(benchmark::State& cState) {
    const Structure cStructure;
    for (auto _ : cState) {
        gst_structure_set(cStructure.p, cStructure.Last.c_str(), G_TYPE_STRING, "123456", nullptr);
    }
}

void Copy(benchmark::State& cState) {
    const Structure cStructure;
    for (auto _ : cState) {
        gst_structure_free(gst_structure_copy(cStructure.p));
    }
}

void Build(benchmark::State& cState) {
    std::string Text = "identity name=e0";
    for (int i = 1; i < 1000; ++i) {
        Text += " ! identity name=e" + std::to_string(i);
    }
    for (auto _ : cState) {
        GstElement* const pPipeline = gst_parse_launch(Text.c_str(), nullptr);
        cState.PauseTiming();
        gst_object_unref(pPipeline);
        cState.ResumeTiming();
    }
}

} // namespace

void AddGStreamerRows() {
    gst_init(nullptr, nullptr);
    for (const int iLength : {1, 3, 16}) {
        const std::string Name = "chain of " + std::to_string(iLength) + ", GStreamer ";
        AddRow(Name + "pads", iLength == 3 ? 1.0 / 55 : 1.0, LibraryChainOf(iLength),
               Pushing(iLength, false));
        if (iLength > 1) {
            AddRow(Name + "identity", iLength == 3 ? 1.0 / 80 : 1.0, LibraryTapsOf(iLength),
                   Pushing(iLength, true));
        }
    }
    AddRow("text got, last of 16, GStreamer", 1.0, LibraryGet(), Get);
    AddRow("text set, last of 16, GStreamer", 1.0, LibrarySetText(), Set);
    AddRow("16 properties copied, GStreamer", 1.0, LibraryCopy(), Copy);
    AddRow("pipe of 1000, GStreamer", 1.0, LibraryBuilding(), Build);
}
