// SPDX-License-Identifier: MIT
// Harness: tests one element. It delivers objects to the element's sink pads, collects the objects from its source pads
// and the lines that it reports, and prints nothing. It works with any test framework or without one.
//
//   Harness cTest(new EFilter);
//   cTest.Set("Key", "Celsius");
//   cTest.Set("Minimum", 20);
//   assert(cTest.Initialize() == 1);                 // connects every source pad
//   cTest.Push({{"Celsius", 19.5}});                 // a QObject with these values
//   cTest.Push<QReading>({{"Celsius", 21.5}});       // an object of that class
//   assert(cTest.Values("Celsius") == "21.5");
//
// A call for a pad or element that does not exist returns 0 or an empty result, and adds a line to Messages. fwlib.h does
// not include this header. When there is not enough memory, the program ends. One thread at a time.
#ifndef FWLIB_TESTING_HARNESS_H
#define FWLIB_TESTING_HARNESS_H

#include "fwlib/elements/eobject.h"
#include "fwlib/elements/pad.h"
#include "fwlib/elements/qobject.h"
#include "fwlib/framework/framework.h"
#include "fwlib/framework/messages.h"
#include "fwlib/pipeline/epipeline.h"
#include "fwlib/properties/values.h"
#include "fwlib/text.h"
#include "fwlib/types.h"

#include <cstddef>
#include <initializer_list>
#include <memory>
#include <string>
#include <vector>

namespace VESK {

class Harness {
public:
    // A key and its value, of any type that SetValue stores.
    class Field {
    public:
        template <class Value>
        Field(const char* pchKey, const Value& cValue) {
            SetValue(m_cList, pchKey, cValue);
        }

    private:
        friend class Harness;

        mutable PROPERTIES m_cList;
    };

    // The objects that one source pad delivered, in order. They are copies made by Duplicate; the harness owns them.
    class Objects {
    public:
        using Iterator = std::vector<std::unique_ptr<QObject>>::const_iterator;

        std::size_t size() const { return m_cObjects.size(); }
        bool empty() const { return m_cObjects.empty(); }
        Iterator begin() const { return m_cObjects.begin(); }
        Iterator end() const { return m_cObjects.end(); }

        // Beyond the last one: an object without properties.
        QObject& operator[](std::size_t uIndex) const {
            return uIndex < m_cObjects.size() ? *m_cObjects[uIndex] : m_cNone;
        }

    private:
        friend class Harness;

        std::vector<std::unique_ptr<QObject>> m_cObjects;
        mutable QObject m_cNone;
    };

    // Takes ownership of the element, which has not been initialized.
    explicit Harness(EObject* pElement) : m_pPipeline(new EPipeline) { Hold(pElement); }

    // Creates the element from a plugin: a path with a slash, or "libfwlib.so".
    Harness(const char* pchType, const char* pchPlugin) : m_pPipeline(new EPipeline) {
        Hold(nullptr);
        if (m_cFramework.AddPlugin(Text(pchPlugin))) {
            Hold(m_cFramework.CreateElement(Text(pchType)));
        }
    }

    // Sets a property. Returns what SetValue returns.
    template <class Value>
    int Set(const char* pchKey, const Value& cValue) {
        return m_pElement ? SetValue(*m_pElement, pchKey, cValue) : Missing("element");
    }

    // Initializes the element and connects its source pads to the harness. May be called once.
    int Initialize() {
        if (!m_pElement || m_bInitialized) {
            return m_pElement ? Missing("second Initialize") : Missing("element");
        }
        m_bInitialized = true;
        const int iResult = m_pPipeline->Initialize();
        for (Byte2Type b2 = 0; b2 < m_pElement->GetSourcePadCount(); ++b2) {
            m_cReceivers.emplace_back(new Receiver(&m_cFramework, b2));
            Connect(b2, true);
        }
        return iResult;
    }

    // Delivers an object to the sink pad at that position. Returns the element's result, which Results lists too.
    int Push(QObject* pObject, Byte2Type b2Pad = 0) {
        SOURCEPAD cSource(nullptr);
        cSource.m_pSinkPad = m_pElement ? m_pElement->GetSinkPad(b2Pad) : nullptr;
        return Result(cSource.m_pSinkPad ? cSource.Push(pObject) : Missing("sink pad", b2Pad));
    }
    int Push(QObject& cObject, Byte2Type b2Pad = 0) { return Push(&cObject, b2Pad); }
    template <class Object = QObject>
    int Push(std::initializer_list<Field> Fields, Byte2Type b2Pad = 0) {
        Object cObject;
        for (const Field& cField : Fields) {
            cObject.m_cProperties.Copy(&cField.m_cList);
        }
        return Push(&cObject, b2Pad);
    }

    // Calls the element's Run. Returns its result, which Results lists too.
    int Run() { return Result(m_pElement ? m_pElement->Run() : Missing("element")); }

    // Calls the element's function for the end of the runs and returns its result; 1 if there is none.
    int EndRuns() { return m_pElement ? m_pPipeline->EndRuns() : Missing("element"); }

    // Destroys the element, so that what its destructor does can be tested. What was collected remains.
    void Destroy() {
        m_pPipeline.reset();
        m_pElement = nullptr;
    }

    // Call these after Initialize. Refuse: deliveries through the source pad return 0, and these objects are not collected.
    // Disconnect: the source pad is not connected. False reverts this. Return 1, or 0 if there is no such pad.
    int Refuse(Byte2Type b2Pad = 0, bool bRefuse = true) {
        if (b2Pad >= m_cReceivers.size()) {
            return Missing("source pad", b2Pad);
        }
        m_cReceivers[b2Pad]->m_bRefuse = bRefuse;
        return 1;
    }
    int Disconnect(Byte2Type b2Pad = 0, bool bDisconnect = true) {
        if (b2Pad >= m_cReceivers.size() || !m_pElement) {
            return Missing("source pad", b2Pad);
        }
        Connect(b2Pad, !bDisconnect);
        return 1;
    }

    const Objects& Received(Byte2Type b2Pad = 0) {
        if (b2Pad >= m_cReceivers.size()) {
            Missing("source pad", b2Pad);
            return m_cNone;
        }
        return m_cReceivers[b2Pad]->m_cObjects;
    }

    // The values of one key in the objects received, with a space between two; "-" for an object without the key.
    std::string Values(const char* pchKey, Byte2Type b2Pad = 0) {
        std::string cValues;
        for (const std::unique_ptr<QObject>& pObject : Received(b2Pad)) {
            const char* const pchValue = FindValue(pObject->m_cProperties, pchKey);
            cValues += (cValues.empty() ? "" : " ") + std::string(pchValue ? pchValue : "-");
        }
        return cValues;
    }

    const std::vector<int>& Results() const { return m_cResults; } // of Push and Run, in order

    // The lines that would have been printed, in order, without their newlines.
    const std::vector<std::string>& Messages() const { return m_cMessages; }
    bool HasMessage(const char* pchPart) const {
        for (const std::string& cMessage : m_cMessages) {
            if (cMessage.find(pchPart) != std::string::npos) {
                return true;
            }
        }
        return false;
    }

    EObject* GetElement() { return m_pElement; } // lent; null when there is none
    FRAMEWORK& GetFramework() { return m_cFramework; }

private:
    class Receiver : public EObject {
    public:
        Receiver(FRAMEWORK* pFramework, Byte2Type b2Pad) : m_cPad(this, b2Pad) {
            m_pFramework = pFramework;
            m_cProperties.SetProperty(Key::EObjectType, Text("Harness"), Section::Standard);
            SetValue(*this, "Name", b2Pad);
        }
        int DataArrived(QObject* pObject, Byte2Type b2Index) override {
            if (!pObject) {
                ErrorMessage("DataArrived(%d): QObject pointer is NULL\n", b2Index);
            }
            if (!pObject || m_bRefuse) {
                return 0;
            }
            std::unique_ptr<QObject> pCopy(pObject->Duplicate());
            if (pCopy) {
                m_cObjects.m_cObjects.push_back(std::move(pCopy));
                return 1;
            }
            ErrorMessage("DataArrived(%d): Unable to copy the object\n", b2Index);
            return 0;
        }

        SINKPAD m_cPad;
        bool m_bRefuse = false;
        Objects m_cObjects;
    };

    static void Collect(void* pContext, const MessageLine& cLine) {
        static_cast<Harness*>(pContext)->m_cMessages.push_back(cLine.pchText);
    }

    void Hold(EObject* pElement) {
        m_cFramework.SetMessageHandler(&Collect, this);
        m_pPipeline->m_pFramework = &m_cFramework;
        if (pElement && m_pPipeline->AddElement(pElement)) {
            pElement->m_pFramework = &m_cFramework;
            m_pElement = pElement;
        }
    }

    void Connect(Byte2Type b2Pad, bool bConnect) {
        if (SOURCEPAD* const pPad = m_pElement->GetSourcePad(b2Pad)) {
            pPad->m_pSinkPad = bConnect ? &m_cReceivers[b2Pad]->m_cPad : nullptr;
        }
    }

    int Result(int iResult) {
        m_cResults.push_back(iResult);
        return iResult;
    }

    int Missing(const char* pchWhat) {
        m_cMessages.push_back(std::string("Harness: no ") + pchWhat);
        return 0;
    }
    int Missing(const char* pchWhat, Byte2Type b2Pad) {
        return Missing((pchWhat + (" " + std::to_string(b2Pad))).c_str());
    }

    // Destroyed from the last to the first: the element while everything that it may use exists.
    std::vector<std::string> m_cMessages;
    std::vector<int> m_cResults;
    FRAMEWORK m_cFramework;
    Objects m_cNone;
    std::vector<std::unique_ptr<Receiver>> m_cReceivers;
    std::unique_ptr<EPipeline> m_pPipeline; // owns the element
    EObject* m_pElement = nullptr;
    bool m_bInitialized = false;
};

} // namespace VESK

#endif
