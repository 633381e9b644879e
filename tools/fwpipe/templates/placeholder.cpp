// The plugin libplaceholder.so, with one element type. "fwpipe inspect build/libplaceholder.so EPlaceholder" shows what
// is declared here.
#include <fwlib/fwlib.h>

class EPlaceholder : public VESK::Element<EPlaceholder> {
public:
    static constexpr const char* TypeName = "EPlaceholder";
    static constexpr const char* Meaning = "delivers one of several objects and drops the others";

    static void Declare(VESK::Declaration<EPlaceholder>& cDeclare) {
        cDeclare.SinkPads(1);
        cDeclare.SourcePads(1);
        cDeclare.Number("Every", &EPlaceholder::m_uEvery, 2, 1, 1000000, "objects",
                        "one object of so many is delivered");
    }

    // The object is lent: Push sends it on, and a copy that has to last is made by Duplicate.
    int DataArrived(VESK::QObject* pObject, VESK::Byte2Type /*b2Index*/) override {
        if (++m_uDropped < m_uEvery) {
            return 1;
        }
        m_uDropped = 0;
        return Push(pObject);
    }

private:
    unsigned int m_uEvery = 0;
    unsigned int m_uDropped = 0; // since the last object that was delivered
};

FWLIB_PLUGIN(EPlaceholder)
