// SPDX-License-Identifier: MIT
// The uses of the library while the system fails: each of its calls in turn, the disk at each byte, the process at
// each write.
#include "failures/scenarios.h"

#include <csignal>
#include <gtest/gtest.h>
#include <sys/mman.h>
#include <sys/wait.h>

namespace {

// Runs an act, with what it prints and reports in memory.
template <class Act>
Told Performed(const Calls& calls, Act act) {
    Told told;
    std::FILE* const apSaved[] = {stdout, stderr};
    char* apchText[2];
    std::size_t auLength[2];
    stdout = open_memstream(&apchText[0], &auLength[0]);
    stderr = open_memstream(&apchText[1], &auLength[1]);
    now = calls;
    act(told);
    const char* const failed = now.failed;
    now = {};
    now.failed = failed;
    std::fclose(std::exchange(stdout, apSaved[0]));
    std::fclose(std::exchange(stderr, apSaved[1]));
    told.printed = std::unique_ptr<char, decltype(&std::free)>(apchText[0], std::free).get();
    told.reported = std::unique_ptr<char, decltype(&std::free)>(apchText[1], std::free).get();
    return told;
}

class EachCall : public testing::TestWithParam<std::size_t> {};

int LowestDescriptor() {
    const int iFree = dup(STDIN_FILENO);
    close(iFree);
    return iFree;
}

} // namespace

// Nothing is kept, nothing is released twice, and what the answers promise is there, or a loss is reported.
TEST_P(EachCall, FailsInTurn) {
    const Scenario& scenario = Scenarios[GetParam()];
    Place place;
    const auto act = [&](Told& told) { scenario.act(told, place); };
    const Told whole = Performed({true}, act);
    ASSERT_EQ(whole.answers.find("01"), std::string::npos) << whole.answers; // a replay ends with a 0
    ASSERT_EQ(whole.broken + whole.reported, "");
    const int iDescriptor = LowestDescriptor();
    for (const bool bLasting : {false, true}) {
        int iNth = 0;
        do {
            std::filesystem::remove(place.recording);
            std::filesystem::remove(place.saved);
            const Told told = Performed({true, ++iNth, bLasting}, act);
            SCOPED_TRACE(testing::Message() << "call " << iNth << (bLasting ? " and all later ones, " : ", ")
                                            << (now.failed ? now.failed : "none") << ": " << told.reported);
            ASSERT_EQ(told.broken, "");
            ASSERT_EQ(Held(), 0) << "not given back";
            ASSERT_EQ(LowestDescriptor(), iDescriptor);
            ASSERT_LE(Occurrences(told.reported, "Unable to store"), 1U);
            if (scenario.tells && told.answers == whole.answers && told.reported.empty()) {
                ASSERT_EQ(told.result, whole.result);
                ASSERT_EQ(told.printed, whole.printed);
            }
        } while (now.failed);
        EXPECT_GT(iNth, 3);
    }
}
INSTANTIATE_TEST_SUITE_P(, EachCall, testing::Range(std::size_t{0}, std::size(Scenarios)),
                         [](const auto& c) { return Scenarios[c.param].name; });

// A recording holds all before the byte where the disk was full, a strict one the objects before it, and they
// alone were answered 1. The loss is reported once.
template <int Strict>
void RecordUpToEachByte() {
    Place place;
    std::size_t whole = 0, end = 0;
    for (std::size_t room = 0; room <= place.all.size(); ++room) {
        SCOPED_TRACE(testing::Message() << "strict " << Strict << ", room " << room);
        if (whole < Place::Most && room == end + place.texts[whole].size()) {
            end += place.texts[whole++].size();
        }
        const std::size_t tried = std::min(whole + 4, Place::Most);
        const Told told = Performed({false, 0, false, nullptr, static_cast<long>(room)},
                                    [&](Told& act) { Record<Strict>(act, place, tried); });
        ASSERT_EQ(told.answers, std::string(2 + whole, '1') + std::string(tried - whole, Strict ? '0' : '1'));
        ASSERT_EQ(told.result, place.all.substr(0, Strict ? end : room));
        const std::string report = "ERROR: ESerialize - it: Unable to store an object in " + place.recording +
                                   ": No space left on device: QObjectType = QObject\n";
        ASSERT_EQ(told.reported, room < place.all.size() ? report : "");
    }
}
TEST(DiskFull, ARecordingIsTheFrontOfAll) {
    RecordUpToEachByte<0>();
}
TEST(DiskFull, AStrictRecordingHoldsWhatWasAnswered) {
    RecordUpToEachByte<1>();
}
TEST(DiskFull, ASavedConfigurationIsToldToBeCut) {
    Place place;
    for (std::size_t room = 0; room <= place.settingsText.size(); ++room) {
        const Told told = Performed({false, 0, false, nullptr, static_cast<long>(room)},
                                    [&](Told& act) { SaveConfig(act, place); });
        ASSERT_EQ(told.answers, room < place.settingsText.size() ? "0" : "1") << room;
        ASSERT_EQ(told.result, place.settingsText.substr(0, room));
    }
}

// Calls check after the death of a process before, within and behind each of its writes.
template <class Act, class Check>
void DieAtEachWrite(Act act, Check check) {
    for (const int moment : {0, 1, 2}) {
        int iStatus = 1;
        for (int iNth = 1; iStatus != 0; ++iNth) {
            SCOPED_TRACE(testing::Message() << "write " << iNth << ", moment " << moment);
            const pid_t child = fork();
            if (child == 0) {
                Performed({false, 0, false, nullptr, -1, iNth, moment}, act);
                _exit(0);
            }
            waitpid(child, &iStatus, 0);
            ASSERT_TRUE(iStatus == 0 || (WIFSIGNALED(iStatus) && WTERMSIG(iStatus) == SIGKILL)) << iStatus;
            check();
        }
    }
}

// The recording is whole objects, at least those that were answered 1, and a part of one; a strict replay agrees.
template <int Strict>
void DieWhileRecording() {
    Place place;
    auto* const pAnswered = static_cast<volatile std::size_t*>(
        mmap(nullptr, sizeof(std::size_t), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0));
    place.Write("recording", "");
    DieAtEachWrite([&](Told& act) { *pAnswered = 0, Record<Strict>(act, place, Place::Few, pAnswered); },
                   [&] {
                       const std::string file = FileText(place.recording);
                       ASSERT_EQ(file, place.all.substr(0, file.size()));
                       const Told told = Performed({}, [&](Told& act) { Replay<1>(act, place, "again1"); });
                       const std::size_t whole = Occurrences(told.result, "\n");
                       std::size_t end = 0;
                       for (std::size_t n = 0; n < whole; ++n) {
                           end += place.texts[n].size();
                       }
                       ASSERT_GE(whole, *pAnswered);
                       ASSERT_LT(file.size(), end + place.texts[whole].size())
                           << "a whole object is not replayed";
                       ASSERT_EQ(told.reported.empty(), file.size() == end) << told.reported;
                   });
}
TEST(Kill, ARecordingHoldsWhatWasAnswered) {
    DieWhileRecording<0>();
    DieWhileRecording<1>();
}
TEST(Kill, ASavedConfigurationIsTheFrontOfAll) {
    Place place;
    DieAtEachWrite([&](Told& act) { SaveConfig(act, place); },
                   [&] {
                       const std::string file = FileText(place.saved);
                       ASSERT_EQ(file, place.settingsText.substr(0, file.size()));
                   });
}
