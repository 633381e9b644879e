// SPDX-License-Identifier: MIT
// The lines of a complete object in a stream, for programs that check recordings: a type line of at most 31 characters,
// the count line, and that many lines with a '='. Every line ends with its newline and contains no zero byte. The class
// allocates no memory and does not keep the lines.
#ifndef FWLIB_STREAMS_OBJECTLINES_H
#define FWLIB_STREAMS_OBJECTLINES_H

#include <cstddef>
#include <cstdlib>
#include <cstring>

namespace VESK {

// Checks the lines of one object after the other, in the order of the stream. One thread at a time.
class ObjectLines {
public:
    enum State { TypeNext, CountNext, PropertyNext, Whole, Broken };

    static constexpr std::size_t LongestType = 31;         // characters
    static constexpr unsigned long MostProperties = 65520; // of one list
    static const char* CountKey() { return "m_b2PropertyCount"; }

    State Now() const { return m_State; }
    const char* Reason() const { return m_pchReason; } // why it is broken: a constant; null if it is not

    // Call this before the first line of each object but the first. A broken stream stays broken.
    void Restart() { m_State = m_State == Broken ? Broken : TypeNext; }

    // Return why the line is not valid, as a constant text, or null. Call LineFault first, for every line, then the one
    // for a type line, a count line or a property line. A line is uLength characters, its newline included, and a
    // terminator. CountFault stores the number of properties when it returns null; otherwise *pulCount may be
    // unchanged.
    static const char* LineFault(const char* pchLine, std::size_t uLength) {
        return uLength == 0 || pchLine[uLength - 1] != '\n' ? "the last line is truncated"
               : std::strlen(pchLine) != uLength            ? "a line contains a zero byte"
                                                            : nullptr;
    }
    static const char* TypeFault(std::size_t uLength) {
        return uLength > LongestType + 1 ? "a type line is longer than 31 characters" : nullptr;
    }
    static const char* CountFault(const char* pchLine, unsigned long* pulCount) {
        const std::size_t uKey = std::strlen(CountKey());
        const char* const pchDigits = pchLine + uKey + 1;
        if (std::strncmp(pchLine, CountKey(), uKey) != 0 || pchLine[uKey] != '=' || *pchDigits < '0' ||
            *pchDigits > '9') {
            return "expected m_b2PropertyCount=N";
        }
        char* pchEnd;
        *pulCount = std::strtoul(pchDigits, &pchEnd, 10);
        return *pchEnd != '\n' || *pulCount > MostProperties
                   ? "the property count is not a number from 0 to 65,520"
                   : nullptr;
    }
    static const char* PropertyFault(const char* pchLine) {
        return std::strchr(pchLine, '=') ? nullptr : "a property line has no '='";
    }

    // The reason when the stream ends within the object.
    static const char* EndFault() { return "the last lines are missing"; }

    // Checks the next line, as it was read. Lines after the property list belong to the object's class: only LineFault
    // checks them.
    void Take(const char* pchLine, std::size_t uLength) {
        const char* pchFault = LineFault(pchLine, uLength);
        if (!pchFault && m_State == TypeNext) {
            m_State = CountNext;
            pchFault = TypeFault(uLength);
        } else if (!pchFault && m_State == CountNext) {
            pchFault = CountFault(pchLine, &m_ulAwaited);
            m_State = m_ulAwaited > 0 ? PropertyNext : Whole;
        } else if (!pchFault && m_State == PropertyNext) {
            pchFault = PropertyFault(pchLine);
            m_State = --m_ulAwaited == 0 ? Whole : PropertyNext;
        }
        if (pchFault) {
            Break(pchFault);
        }
    }

    // Call this at the end of the stream: an incomplete object is then broken.
    void End() {
        if (m_State == CountNext || m_State == PropertyNext) {
            Break(EndFault());
        }
    }

    // Marks the object as broken. The reason is lent and must outlive this object.
    void Break(const char* pchReason) {
        m_State = Broken;
        m_pchReason = pchReason;
    }

private:
    State m_State = TypeNext;
    unsigned long m_ulAwaited = 0; // property lines that are still missing
    const char* m_pchReason = nullptr;
};

} // namespace VESK

#endif
