// SPDX-License-Identifier: MIT
// What a whole object in a stream looks like, line by line: a type line of at most 31 characters, the count line,
// and that many lines with a "=". Every line ends with its newline and holds no zero byte.
#ifndef FWLIB_INTERNAL_OBJECTLINES_H
#define FWLIB_INTERNAL_OBJECTLINES_H

#include "fwlib/internal/growth.h"
#include "fwlib/internal/texts.h"

#include <cstdlib>

#pragma GCC visibility push(hidden)

namespace VESK {

constexpr const char* CountKey = "m_b2PropertyCount";

// The object's lines, taken one after the other from the first.
class ObjectLines {
public:
    enum State { TypeNext, CountNext, PropertyNext, Whole, Broken };

    State Now() const { return m_State; }
    const char* Reason() const { return m_pchReason; } // why it is broken

    // The next line begins an object; after a broken one, nothing does.
    void Restart() { m_State = m_State == Broken ? Broken : TypeNext; }

    // The next line, as it was read: uLength characters, of which the last may be a newline, and a terminator. A line
    // behind the property list is a class's own.
    void Take(const char* pchLine, std::size_t uLength) {
        if (uLength == 0 || pchLine[uLength - 1] != '\n') {
            Break("its last line is cut");
        } else if (std::strlen(pchLine) != uLength) {
            Break("a line holds a zero byte");
        } else if (m_State == TypeNext) {
            m_State = CountNext;
            if (uLength > TypeTextSize) {
                Break("a type line is longer than 31 characters");
            }
        } else if (m_State == CountNext) {
            TakeCount(pchLine);
        } else if (m_State == PropertyNext && !std::strchr(pchLine, '=')) {
            Break("a property line holds no \"=\"");
        } else if (m_State == PropertyNext && --m_uAwaited == 0) {
            m_State = Whole;
        }
    }

    // The stream is over: an object that has begun is broken.
    void End() {
        if (m_State == CountNext || m_State == PropertyNext) {
            Break("its last lines are missing");
        }
    }

    void Break(const char* pchReason) {
        m_State = Broken;
        m_pchReason = pchReason;
    }

private:
    void TakeCount(const char* pchLine) {
        const std::size_t uKey = std::strlen(CountKey);
        const char* const pchDigits = pchLine + uKey + 1;
        if (std::strncmp(pchLine, CountKey, uKey) != 0 || pchLine[uKey] != '=' || *pchDigits < '0' ||
            *pchDigits > '9') {
            Break("a count line is not one");
            return;
        }
        char* pchEnd;
        const unsigned long ulCount = std::strtoul(pchDigits, &pchEnd, 10);
        if (*pchEnd != '\n' || ulCount > LargestCapacity) {
            Break("a count line holds no number that a list may have");
            return;
        }
        m_uAwaited = ulCount;
        m_State = ulCount > 0 ? PropertyNext : Whole;
    }

    State m_State = TypeNext;
    unsigned long m_uAwaited = 0; // property lines that are to come
    const char* m_pchReason = nullptr;
};

} // namespace VESK

#pragma GCC visibility pop

#endif
