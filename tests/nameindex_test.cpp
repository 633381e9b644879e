// SPDX-License-Identifier: MIT
// Large pipelines find their elements by an index, which must find what a linear search finds.
#include "support/support.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <memory>
#include <random>
#include <utility>

using namespace VESK;

namespace {

// Whether the element of that name is found that a walk finds, or none.
bool Agrees(EPipeline& pipe, const std::string& name) {
    int walked = 0;
    for (char own[256]; walked < pipe.m_iElementCount; ++walked) {
        if (pipe.m_ppElements[walked]->m_cProperties.GetProperty(Key::Name, own, sizeof own, nullptr,
                                                                 Section::Standard) &&
            name == own) {
            break;
        }
    }
    Byte2Type index;
    return (pipe.FindElement(Text(name.c_str()), &index) ? index : pipe.m_iElementCount) == walked;
}

std::mt19937 cRandom(3);

int Pick(int count) {
    return static_cast<int>(cRandom() % static_cast<unsigned int>(count));
}

// Few names for many elements: short, long, cut, numbers, and texts that differ in one place only.
std::string Name() {
    const std::string number = std::to_string(Pick(60)), row(Pick(2) ? 250 : 10, 'r');
    return Pick(4) ? number : Pick(2) ? row + number + row : Pick(9) ? "e" + number : "";
}

// The ways in which an element comes to another name.
void Rename(PROPERTIES& list, const std::string& fresh, PROPERTIES& other) {
    std::string pair = "Name=" + fresh;
    const int way = Pick(8);
    if (way == 0) {
        list.Reset(); // and sometimes it stays without a name
    }
    if (way < 2 && Pick(20)) {
        Set(list, "Name", fresh);
    } else if (way == 2) {
        list.SetProperty(Key::Name, std::atoi(fresh.c_str()), Section::Standard);
    } else if (way == 3) {
        list.AddKeyValuePair(Section::Standard, pair.data());
    } else if (way == 4) {
        list.Copy(&other);
    }
}

TEST(NameIndex, AnswersAsAWalkWhateverHappensToNames) {
    EPipeline pipes[2];
    for (int step = 0; step < 8000; ++step) {
        EPipeline& pipe = pipes[step / 50 % 2]; // they take turns
        const std::string fresh = Name();
        if (step > 700 && Pick(9) == 0) { // one goes, from the end or before it
            EObject** const end = pipe.m_ppElements + --pipe.m_iElementCount;
            EObject** const gone = Pick(2) ? end : pipe.m_ppElements + Pick(pipe.m_iElementCount);
            delete *gone;
            std::copy(gone + 1, end + 1, gone);
        } else if (step % 1000 < 300) {
            ASSERT_EQ(pipe.AddElement(Pick(600) ? new Probe(fresh.c_str()) : new Probe), 1);
        } else {
            Rename(pipe.m_ppElements[Pick(pipe.m_iElementCount)]->m_cProperties, fresh,
                   pipe.m_ppElements[0]->m_cProperties);
        }
        for (const std::string& sought : {fresh, Name(), Name()}) {
            ASSERT_TRUE(Agrees(pipe, sought)) << "step " << step << ": " << sought;
        }
        if (step % 2500 == 2460) { // another pipeline at the same place
            pipe.~EPipeline();
            new (&pipe) EPipeline;
            for (int i = 0; i < 600; ++i) {
                pipe.AddElement(new Probe(Name().c_str()));
            }
            for (int i = 0; i < 60; ++i) {
                ASSERT_TRUE(Agrees(pipe, std::to_string(i)));
            }
        }
    }
}

// What a walk would look at first is not there.
TEST(NameIndex, IsAskedBeforeAnyWalk) {
    const std::string name(252, 'n');
    EPipeline pipe;
    for (int i = 100; i < 400; ++i) {
        pipe.AddElement(new Probe((name + std::to_string(i) + "cut").c_str()));
    }
    pipe.AddElement(new Probe); // the one without a name
    EXPECT_TRUE(Agrees(pipe, name + "398") && Agrees(pipe, name + "397"));
    for (int i = 400; i < 500; ++i) {
        pipe.AddElement(new Probe((name + std::to_string(i)).c_str()));
    }
    EObject* const first = std::exchange(pipe.m_ppElements[0], nullptr);
    Byte2Type index = 0;
    EXPECT_TRUE(pipe.FindElement(Text((name + "399").c_str()), &index) && index == 299);
    EXPECT_TRUE(pipe.FindElement(Text((name + "499").c_str()), &index) && index == 400);
    pipe.m_ppElements[0] = first;
    Set(pipe.m_ppElements[300]->m_cProperties, "Name", name + "499");
    EXPECT_TRUE(pipe.FindElement(Text((name + "499").c_str()), &index) && index == 300);
}

// Searches on its way out, when all the others are still there.
struct Asking : Probe {
    explicit Asking(EPipeline* own) : Probe("n0"), pipe(own) {}
    ~Asking() override {
        for (int i = 0; i < 3; ++i) {
            EXPECT_TRUE(Agrees(*pipe, "n50"));
        }
    }
    EPipeline* pipe;
};

TEST(NameIndex, KnowsNothingOfAPipelineThatStoodThereOrOfElementsTakenAway) {
    EPipeline pipe;
    pipe.AddElement(new Asking(&pipe));
    for (int i = 1; i < 70; ++i) {
        pipe.AddElement(new Probe(("n" + std::to_string(i)).c_str()));
    }
    pipe.~EPipeline();
    new (&pipe) EPipeline;
    for (int i = 0; i < 80; ++i) {
        pipe.AddElement(new Probe(("n" + std::to_string(i == 3 ? 50 : i)).c_str()));
    }
    EXPECT_TRUE(Agrees(pipe, "n50") && Agrees(pipe, "n79"));
    delete pipe.m_ppElements[--pipe.m_iElementCount];
    EXPECT_TRUE(Agrees(pipe, "n79") && Agrees(pipe, "n78"));
    for (const char* name : {"n1", "n78", "n78"}) { // two go and three come
        delete pipe.m_ppElements[--pipe.m_iElementCount];
        pipe.AddElement(new Probe(name));
        pipe.AddElement(new Probe("n78"));
        EXPECT_TRUE(Agrees(pipe, "n78"));
    }
    pipe.AddElement(new Probe("last"));
    EXPECT_TRUE(Agrees(pipe, "last") && Agrees(pipe, "last"));
    std::unique_ptr<EObject> taken[2]; // not destroyed yet
    for (auto& element : taken) {
        element.reset(pipe.m_ppElements[--pipe.m_iElementCount]);
    }
    for (int i = 0; i < 2; ++i) { // both with the name that the last one had
        pipe.AddElement(new Probe("last"));
    }
    EXPECT_TRUE(Agrees(pipe, "last") && Agrees(pipe, "last"));
}

} // namespace
